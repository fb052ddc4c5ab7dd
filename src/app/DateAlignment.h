#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace orv {

class MySinglePic;
struct NewDateOptions;

// Seconds to add to one item's own offset.
struct PicDifference
{
    MySinglePic *thumb = nullptr;
    double dateDifference = 0.0;
};

// The alignment commands by their menu tags. Tags 6 to 13 copy another date of the same file.
enum class AlignTag : int {
    MatchingGaps = 1,
    MinimizingGaps = 2,
    Filename = 3,
    Reversing = 4,
    ReversingIntervals = 5,
    ExifDigitizedOld = 6,
    ExifDigitizedNew = 7,
    TiffDateTimeOld = 8,
    TiffDateTimeNew = 9,
    FileCreationOld = 10,
    FileCreationNew = 11,
    FileModificationOld = 12,
    FileModificationNew = 13,
};
constexpr bool isCopyOtherFileDate(AlignTag tag) { return int(tag) >= 6 && int(tag) <= 13; }

// Rules that rewrite the dates of a selection so several cameras and colliding bursts line up.
// Each answers one difference per item, in whole seconds computed on the floored dates in force
// (so a fraction in a stored date survives); the items themselves are left alone. The lists
// hold unmoved items too (difference 0): they take part in the undo step and its selection.
// An empty list means there is nothing to do.
namespace DateAlignment {

// The items in timeline order: by date in force, stable for equal dates.
QList<MySinglePic *> sortedThumbsArray(QList<MySinglePic *> pics);

// Inner items spread evenly between the first and the last; needs three items.
QList<PicDifference> alignByMatchingGaps(const QList<MySinglePic *> &sorted);
// One-second steps around the main item, which stays; the first item when main is not among them.
QList<PicDifference> alignByMinimizingGaps(const QList<MySinglePic *> &sorted, const MySinglePic *main);
// The dates stay, the items take them in file name order; nothing when that is the time order.
QList<PicDifference> alignByFilename(const QList<MySinglePic *> &sorted);
// The dates stay, the order turns over.
QList<PicDifference> alignByReversing(const QList<MySinglePic *> &sorted);
// The run turns over as a whole: the gaps between neighbours stay, in reverse order.
QList<PicDifference> alignByReversingAlt(const QList<MySinglePic *> &sorted);
// Each item takes that other date of its own file; items without it are left out. The NEW
// forms are calculated with options first.
QList<PicDifference> alignByCopyingOtherFileDate(const QList<MySinglePic *> &selected, AlignTag source,
                                                 const NewDateOptions &options);

// Two neighbours share a floored date: minimizing then separates colliding stamps.
bool areThereIdenticalTimesIn(const QList<MySinglePic *> &sorted);
// The sources of tags 6 to 13 that at least one selected item offers: a clean date that is
// neither its original nor its date in force (and, for a NEW form, not its offered OLD form).
QList<AlignTag> validateForAlignByCopyingOtherFileDate(const QList<MySinglePic *> &selected,
                                                       const NewDateOptions &options);

// Why a rule cannot run on this selection now, in words for the user; empty when it can. The
// rules act on items that change one by one, in folders whose dates come from the files, and
// never while a save owns the items (changesBlocked).
QString whyNotAlign(AlignTag tag, const QList<MySinglePic *> &selection, const MySinglePic *main,
                    bool changesBlocked);
// Why no rule at all can run; empty when one can.
QString whyAlignIsOff(const QList<MySinglePic *> &selection, const MySinglePic *main, bool changesBlocked);

// The command of a tag on a selection (sorted in time order; main for minimizing).
QList<PicDifference> differencesFor(AlignTag tag, const QList<MySinglePic *> &sorted, const MySinglePic *main,
                                    const NewDateOptions &options);

} // namespace DateAlignment

} // namespace orv
