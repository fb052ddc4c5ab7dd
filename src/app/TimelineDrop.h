#pragma once

#include "app/DateChanges.h"
#include "time/TimeZone.h"

#include <QList>
#include <QString>

#include <optional>

namespace orv {

class MySingleFolder;
class MySinglePic;
class PicSource;

// Where a dragged item lands: a place between or on thumbnails, never a time of its own. The date
// follows from the neighbours of the place.
enum class DropType : int {
    None = 0,
    LeftGap = 1,     // halfway between the left neighbour and the target
    LeftHalf = 2,    // one second before the target
    RightHalf = 3,   // one second after the target
    RightGap = 4,    // halfway between the target and the right neighbour
    Spread = 5,      // every dragged item evenly between the target and its right neighbour
    SpreadRight = 6, // entered on the right side; becomes Spread once the place is found
};

// The four zones of a thumbnail's frame, left to right, that the pointer can be over.
enum class DropZone { LeftMargin, LeftHalf, RightHalf, RightMargin };

struct DropPlace
{
    qsizetype index = -2; // -2: no valid place
    DropType type = DropType::None;
    // Nothing beyond the target on the side of the gap: the outer-edge gap value counts.
    bool atOuterEdge = false;
    // Target and neighbour stand at different heights (two folders in single mode).
    bool needsDoubleHeightArrows = false;
    // A gap that cannot take the dragged items fell onto the target's half beside it.
    bool isCollapsed = false;
    bool isLeftOneUp = false;
    // The gap's two items when a keyboard move found them among the items not moving; the items
    // at index and index + 1 otherwise.
    const MySinglePic *gapLeft = nullptr;
    const MySinglePic *gapRight = nullptr;

    bool isValid() const { return type != DropType::None; }
};

// Why the pointer's place takes no drop, for the user; None where it does or nothing is under it.
enum class DropRefusal { None, OwnFolder, OwnSelection, NoDates, NoRoomToSpread };
QString dropRefusalText(DropRefusal refusal);

// What one drag moves: the main item, the items moving with it in timeline order, and the folders
// a drop in folder mode gives an offset (the main item's own; a caller may name a compound
// folder's members, which then keep their distances). `raised` are the folders standing raised on
// the strip (none: all of them), which only decides where items stand.
struct TimelineDrag
{
    MySinglePic *main = nullptr;
    QList<MySinglePic *> moving;
    QList<MySingleFolder *> folders;
    QList<const MySingleFolder *> raised;

    // In folder mode every visible item of the main item's folder moves, so that in a view of
    // several folders an item dropped on another folder's item moves its own folder; in single
    // mode the multi-selection when it has two or more items, else the main item.
    static TimelineDrag of(const QList<MySinglePic *> &source, MySinglePic *main,
                           const QList<MySinglePic *> &multiSelection, const QList<const MySingleFolder *> &raised);

    bool isFolderMode() const;
    bool isMoving(const MySinglePic *pic) const { return isFolderMode() ? isOfMovingFolder(pic) : moving.contains(pic); }
    bool isOfMovingFolder(const MySinglePic *pic) const;
    // Raised on the strip: the upper row.
    bool isRaised(const MySinglePic *pic) const;
    // Spreading needs single mode and two or more items.
    bool canSpread() const { return !isFolderMode() && moving.size() >= 2; }
};

// The measures of a strip that place its thumbnails, in the strip's coordinates (y down): item i
// stands at x = left + i * (thumbSize + margin), at raisedTop or loweredTop.
struct StripMetrics
{
    double left = 0.0;
    double thumbSize = 0.0;
    double margin = 0.0;
    double raisedTop = 0.0;
    double loweredTop = 0.0;
};

// The thumbnail under a dragging pointer and the zone of its frame; none off the strip.
struct DropHit
{
    qsizetype index = -1;
    DropZone zone = DropZone::LeftMargin;
    // Hit only in the full height between the two rows: a place only for double-height arrows.
    bool onlyIfDoubleHeight = false;

    bool isHit() const { return index >= 0; }
};

// Each thumbnail's frame reaches half a margin to each side and half a thumbnail and 8 points
// more above and below; left of the first item counts for it, and the last item's area is doubled.
DropHit dropHitAt(const StripMetrics &metrics, const QList<MySinglePic *> &source, const TimelineDrag &drag,
                  double x, double y);

// The neighbour tests of a drag over the strip: which place the pointer's thumbnail and zone give,
// with the collapse onto the target when the gap cannot hold the dragged items. Spreading, asked
// for by the keys, counts only where the drag can spread.
// refusal, when given, tells why a hit thumbnail gives no place.
DropPlace findDropPlace(const QList<MySinglePic *> &source, const TimelineDrag &drag, qsizetype hitIndex,
                        DropZone zone, bool spreading, bool onlyIfDoubleHeight = false,
                        DropRefusal *refusal = nullptr);

// What a strip shows while a place is previewed: the moving items at their temporary dates among
// the items around the place, in timeline order, and where the main item stands among them.
struct DropPreview
{
    QList<MySinglePic *> order;
    qsizetype mainIndex = -1;
};

// A drop's arithmetic over the source the strip shows, in whole seconds, and its change through
// the date change owner: the folder offset in folder mode, the same difference for every moving
// item in single mode, spreading for type 5. Main thread only, like the items it reads.
class TimelineDrop
{
public:
    // outerEdgeGap: the seconds a drop beyond the first or last item keeps from it.
    TimelineDrop(const QList<MySinglePic *> &source, const TimelineDrag &drag, double outerEdgeGap)
        : m_source(source), m_drag(drag), m_outerEdgeGap(outerEdgeGap)
    {
    }

    // The whole second the main item takes at the place; none for spreading or a place without
    // dates.
    std::optional<double> mainSecondAt(const DropPlace &place) const;
    // What every moving item's date moves by in a preview of the place.
    std::optional<double> previewDifference(const DropPlace &place) const;
    DateChangeResult perform(DateChanges &changes, const DropPlace &place, const QString &mergeKey = {}) const;

    // Gives every moving item the temporary date the place would give it (nothing else of the
    // item changes) and the order to show: the moving items, and on each side of the place the
    // items up to the first one two seconds or more from the target and half of visibleCount
    // beyond it. The preview's own sort by its dates; an empty preview without a place.
    DropPreview preview(const DropPlace &place, const PicSource &sorter, qsizetype visibleCount) const;
    // The whole strip as the place would order it: the moving items at their temporary dates
    // among all others (the strip's temporary source). Empty without a place.
    QList<MySinglePic *> previewStrip(const DropPlace &place, const PicSource &sorter) const;
    // The same for a date typed for the main item (the date popover).
    QList<MySinglePic *> previewStripForSecond(double second, const PicSource &sorter) const;
    // The moving items lose their temporary dates.
    void endPreview() const;

    // The main item takes the whole second; the others follow as a drop moves them. A compound
    // folder's members keep their distances. Also the date popover's way to accept a date.
    static DateChangeResult moveMainTo(DateChanges &changes, const TimelineDrag &drag, double second,
                                       const QString &mergeKey = {});

private:
    const MySinglePic *at(qsizetype index) const;
    // Gives the moving items the temporary dates of the place; false without a place.
    bool setPreviewDates(const DropPlace &place) const;
    void setPreviewDatesByDifference(double difference) const;

    const QList<MySinglePic *> &m_source;
    const TimelineDrag &m_drag;
    double m_outerEdgeGap;
};

// The seconds a drop beyond the first or last item keeps from it, by the preference
// dragGapOuterEdges (an index, clamped to the 15 values).
inline constexpr qint64 dragGapOuterEdgesCount = 15;
double dragGapOuterEdgesSeconds(qint64 index);

// The floor of the second an item stands at on the timeline; none without a date.
std::optional<double> timelineSecond(const MySinglePic *pic);

// What a drop at a place means, for the label at the pointer: the main item's new date, the
// change it makes (the folder's new offset in folder mode, the items' move in single mode) and
// how the place gives the date.
struct DropOutcome
{
    enum class Rule { BeforeTarget, AfterTarget, Halfway, BeyondFirst, BeyondLast, Spread };
    Instant newDate;
    double change = 0.0;
    bool isFolderOffset = false;
    Rule rule = Rule::AfterTarget;
    double outerEdgeGap = 0.0;
    const MySinglePic *target = nullptr;
    // The other item of a gap: the date is halfway to it.
    const MySinglePic *neighbour = nullptr;
    qsizetype spreadCount = 0;
};
// The zone an item's dates are shown and typed in: its folder's target zone for it, else the
// computer's.
TimeZone dateZoneOf(const MySinglePic &pic);

std::optional<DropOutcome> dropOutcome(const QList<MySinglePic *> &source, const TimelineDrag &drag,
                                       const DropPlace &place, double outerEdgeGap);

} // namespace orv
