#pragma once

#include "time/Instant.h"

#include <QList>
#include <QMutex>
#include <QString>
#include <map>

namespace orv {

class MySinglePic;

// Error ids a save gives an item; the user reads them together at the end of the run.
namespace SaveErrorId {
constexpr int FileDatesNotSet = 0;
constexpr int SaveCannotOpen = 2;
constexpr int SaveChanged = 3;
constexpr int SaveMissing = 4;
constexpr int XmpInFileUnreadable = 6;
constexpr int XmpSidecarUnusable = 7;
constexpr int CheckCannotOpen = 10;
constexpr int CheckChanged = 11;
constexpr int CheckMissing = 12;
constexpr int XmpSidecarMissing = 15;
// Ids 3 and 11 of an item whose group holds an outdated reading.
constexpr int SaveChangedOutdatedGroup = 27;
constexpr int CheckChangedOutdatedGroup = 28;
// The item was saved, but a stamp whose offset tag does not read exactly was left as it was.
constexpr int DamagedTagLeft = 30;
// The new date lies outside the dates a file can hold; nothing of the item was written.
constexpr int DateOutOfRange = 31;
// The path is a pipe, a socket or a device: it was never opened.
constexpr int NotARegularFile = 32;
} // namespace SaveErrorId

// Steps of a save that could not be done. Those that change a file's structure go through
// exiftool and carry its error types.
enum class ToolStep : int {
    AddLocation = 1,
    AddLocationInSidecar = 2,
    UpdateLocation = 3,
    // A new sidecar's path is taken by a file already.
    SidecarExists = 5,
    AddExifDateTags = 6,
    ExtendShortXmpStamps = 7,
    // A movie date that does not fit its stamp in place.
    WriteMovieDates = 20,
    // A rating that the file's XMP packet has no room for in place.
    WriteRating = 21,
};

// The errors of one run: per error id the items that failed with it, and per step that could
// not be done the items it left unsaved. Safe to fill from the run's worker threads at once.
class SaveErrors
{
public:
    struct Entry
    {
        MySinglePic *pic = nullptr;
        QString path; // as it was when the error happened
    };

    // Counts the item's group once in its folder's saveErrors, turns ids 3 and 11 of a group
    // with an outdated reading into 27 and 28, and lists the item under its id.
    void addErrorID(int id, MySinglePic &pic);
    void addToolError(ToolStep step, MySinglePic &pic, const QString &reason);

    bool isEmpty() const;
    // The ids and steps under which the item is listed.
    QList<int> errorIdsFor(const MySinglePic &pic) const;
    QList<ToolStep> toolStepsFor(const MySinglePic &pic) const;
    // Why the step could not be done for the item, in words; empty when it was not listed.
    QString toolReasonFor(const MySinglePic &pic, ToolStep step) const;

    // What the error log gets: the date and a summary, then each list with its description and
    // one tab-indented path per line in path order, then the steps that could not be done.
    QString logText(Instant now) const;

    static QString descriptionForId(int id);
    // What went wrong with one item, in words, for a line that names the item.
    static QString reasonForId(int id);
    static QString descriptionForStep(ToolStep step);

private:
    struct ToolEntry
    {
        Entry entry;
        QString reason;
    };

    mutable QMutex m_mutex;
    std::map<int, QList<Entry>> m_lists;
    std::map<ToolStep, QList<ToolEntry>> m_toolErrors;
};

} // namespace orv
