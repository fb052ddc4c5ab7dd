#include "core/SaveErrors.h"

#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "time/TimeZone.h"

#include <QCoreApplication>
#include <algorithm>

namespace orv {

namespace {

// The group an id's text adds a note to: the files of a group act as one.
bool isGroupNoteId(int id)
{
    return (id >= 2 && id <= 5) || (id >= 10 && id <= 12) || id == 19 || (id >= 25 && id <= 29);
}

bool isInGroup(const MySinglePic *pic)
{
    return pic && (pic->bundleDependentImage || pic->bundleMasterImage);
}

} // namespace

QString SaveErrors::descriptionForStep(ToolStep step)
{
    switch (step) {
    case ToolStep::AddLocation:
        return QCoreApplication::translate("SaveErrors",
                                           "A location could not be added to these files:");
    case ToolStep::AddLocationInSidecar:
        return QCoreApplication::translate(
            "SaveErrors", "A location could not be added to the XMP sidecars of these files:");
    case ToolStep::SidecarExists:
        return QCoreApplication::translate(
            "SaveErrors", "A new XMP sidecar was not written because a file of its name exists:");
    case ToolStep::UpdateLocation:
        return QCoreApplication::translate("SaveErrors",
                                           "The location of these files could not be updated:");
    case ToolStep::AddExifDateTags:
        return QCoreApplication::translate("SaveErrors",
                                           "Date tags could not be added to these files:");
    case ToolStep::ExtendShortXmpStamps:
        return QCoreApplication::translate(
            "SaveErrors", "XMP dates without seconds could not be extended in these files:");
    case ToolStep::WriteMovieDates:
        return QCoreApplication::translate("SaveErrors",
                                           "The dates of these movies could not be written:");
    case ToolStep::WriteRating:
        return QCoreApplication::translate("SaveErrors",
                                           "The rating of these files could not be written as xmp:Rating:");
    }
    return {};
}

namespace {

QString localStamp(Instant now)
{
    const Instant::Civil c = TimeZone::systemZone().localCivil(now);
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month, c.day, c.hour,
                             c.minute, c.second);
}

} // namespace

QString SaveErrors::descriptionForId(int id)
{
    switch (id) {
    case SaveErrorId::FileDatesNotSet:
        return QCoreApplication::translate("SaveErrors", "The file dates could not be set:");
    case SaveErrorId::SaveCannotOpen:
        return QCoreApplication::translate("SaveErrors",
                                           "These files could not be opened for writing:");
    case SaveErrorId::SaveChanged:
        return QCoreApplication::translate(
            "SaveErrors",
            "These files were changed by another program since the import and were not saved:");
    case SaveErrorId::SaveMissing:
        return QCoreApplication::translate("SaveErrors",
                                           "These files were not found and were not saved:");
    case SaveErrorId::XmpInFileUnreadable:
        return QCoreApplication::translate("SaveErrors",
                                           "The XMP data in these files could not be read:");
    case SaveErrorId::XmpSidecarUnusable:
        return QCoreApplication::translate("SaveErrors",
                                           "These XMP sidecars could not be read or written:");
    case SaveErrorId::CheckCannotOpen:
        return QCoreApplication::translate("SaveErrors", "These files could not be opened:");
    case SaveErrorId::CheckChanged:
        return QCoreApplication::translate(
            "SaveErrors", "These files were changed by another program since the import:");
    case SaveErrorId::CheckMissing:
        return QCoreApplication::translate("SaveErrors", "These files were not found:");
    case SaveErrorId::XmpSidecarMissing:
        return QCoreApplication::translate("SaveErrors", "These XMP sidecars are missing:");
    case SaveErrorId::SaveChangedOutdatedGroup:
        return QCoreApplication::translate(
            "SaveErrors", "These groups need a new import before they can be saved:");
    case SaveErrorId::CheckChangedOutdatedGroup:
        return QCoreApplication::translate("SaveErrors", "These groups need a new import:");
    case SaveErrorId::DamagedTagLeft:
        return QCoreApplication::translate(
            "SaveErrors", "A date of these files, or its offset tag, does not read exactly; "
                          "that date and its tag were left as they were, the others saved:");
    case SaveErrorId::DateOutOfRange:
        return QCoreApplication::translate(
            "SaveErrors", "The new date of these files lies outside 0001-01-02 00:00:00 to "
                          "4999-12-31 23:59:59 UTC; they were not saved:");
    case SaveErrorId::NotARegularFile:
        return QCoreApplication::translate(
            "SaveErrors", "These paths are not regular files (a pipe, a socket or a device) and "
                          "were not opened:");
    default:
        return QCoreApplication::translate("SaveErrors", "Error %1:").arg(id);
    }
}

QString SaveErrors::reasonForId(int id)
{
    const auto translated = [](const char *text) {
        return QCoreApplication::translate("SaveErrors", text);
    };
    switch (id) {
    case SaveErrorId::FileDatesNotSet:
        return translated(QT_TRANSLATE_NOOP("SaveErrors", "the file dates could not be set"));
    case SaveErrorId::SaveCannotOpen:
        return translated(QT_TRANSLATE_NOOP(
            "SaveErrors", "cannot be opened for writing (permission denied, or read-only)"));
    case SaveErrorId::SaveChanged:
    case SaveErrorId::SaveChangedOutdatedGroup:
        return translated(QT_TRANSLATE_NOOP(
            "SaveErrors", "changed by another program since the import; not saved"));
    case SaveErrorId::SaveMissing:
        return translated(QT_TRANSLATE_NOOP("SaveErrors", "not found; not saved"));
    case SaveErrorId::XmpInFileUnreadable:
        return translated(QT_TRANSLATE_NOOP("SaveErrors", "its XMP data could not be read"));
    case SaveErrorId::XmpSidecarUnusable:
        return translated(
            QT_TRANSLATE_NOOP("SaveErrors", "its XMP sidecar could not be read or written"));
    case SaveErrorId::CheckCannotOpen:
        return translated(QT_TRANSLATE_NOOP("SaveErrors", "cannot be opened"));
    case SaveErrorId::CheckChanged:
    case SaveErrorId::CheckChangedOutdatedGroup:
        return translated(
            QT_TRANSLATE_NOOP("SaveErrors", "changed by another program since the import"));
    case SaveErrorId::CheckMissing:
        return translated(QT_TRANSLATE_NOOP("SaveErrors", "not found"));
    case SaveErrorId::XmpSidecarMissing:
        return translated(QT_TRANSLATE_NOOP("SaveErrors", "its XMP sidecar is missing"));
    case SaveErrorId::DamagedTagLeft:
        return translated(QT_TRANSLATE_NOOP(
            "SaveErrors",
            "a date or its offset tag does not read exactly; that date and its tag were "
            "left as they were, the other dates saved"));
    case SaveErrorId::DateOutOfRange:
        return translated(QT_TRANSLATE_NOOP(
            "SaveErrors",
            "the new date lies outside 0001-01-02 00:00:00 to 4999-12-31 23:59:59 UTC; "
            "not saved"));
    case SaveErrorId::NotARegularFile:
        return translated(QT_TRANSLATE_NOOP(
            "SaveErrors", "not a regular file (a pipe, a socket or a device); never opened"));
    default:
        return translated(QT_TRANSLATE_NOOP("SaveErrors", "error %1")).arg(id);
    }
}

bool SaveErrors::isEmpty() const
{
    const QMutexLocker lock(&m_mutex);
    return m_lists.empty() && m_toolErrors.empty();
}

void SaveErrors::addErrorID(int id, MySinglePic &pic)
{
    const QMutexLocker lock(&m_mutex);
    MySinglePic &master = pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    const bool groupHasError =
        master.hasSaveError() ||
        (master.bundleDependentImage && master.bundleDependentImage->hasSaveError());
    if (!groupHasError && master.spSingleFolder)
        ++master.spSingleFolder->saveErrors;
    if (master.bundleUnchangedState() == 5) {
        if (id == SaveErrorId::SaveChanged)
            id = SaveErrorId::SaveChangedOutdatedGroup;
        else if (id == SaveErrorId::CheckChanged)
            id = SaveErrorId::CheckChangedOutdatedGroup;
    }
    m_lists[id].append({&pic, pic.spPath()});
}

void SaveErrors::addToolError(ToolStep step, MySinglePic &pic, const QString &reason)
{
    const QMutexLocker lock(&m_mutex);
    m_toolErrors[step].append({{&pic, pic.spPath()}, reason});
}

QList<int> SaveErrors::errorIdsFor(const MySinglePic &pic) const
{
    const QMutexLocker lock(&m_mutex);
    QList<int> ids;
    for (const auto &[id, entries] : m_lists) {
        if (std::any_of(entries.begin(), entries.end(),
                        [&pic](const Entry &e) { return e.pic == &pic; }))
            ids.append(id);
    }
    return ids;
}

QList<ToolStep> SaveErrors::toolStepsFor(const MySinglePic &pic) const
{
    const QMutexLocker lock(&m_mutex);
    QList<ToolStep> steps;
    for (const auto &[step, entries] : m_toolErrors) {
        if (std::any_of(entries.begin(), entries.end(),
                        [&pic](const ToolEntry &e) { return e.entry.pic == &pic; }))
            steps.append(step);
    }
    return steps;
}

QString SaveErrors::toolReasonFor(const MySinglePic &pic, ToolStep step) const
{
    const QMutexLocker lock(&m_mutex);
    const auto list = m_toolErrors.find(step);
    if (list == m_toolErrors.end())
        return {};
    const auto entry = std::find_if(list->second.begin(), list->second.end(),
                                    [&pic](const ToolEntry &e) { return e.entry.pic == &pic; });
    return entry == list->second.end() ? QString() : entry->reason;
}

QString SaveErrors::logText(Instant now) const
{
    const QMutexLocker lock(&m_mutex);
    qsizetype count = 0;
    for (const auto &[id, entries] : m_lists)
        count += entries.size();
    for (const auto &[step, entries] : m_toolErrors)
        count += entries.size();
    QString text =
        localStamp(now) + QLatin1String(" - ") +
        (count == 1 ? QCoreApplication::translate("SaveErrors", "Saving: 1 problem")
                    : QCoreApplication::translate("SaveErrors", "Saving: %1 problems").arg(count)) +
        QLatin1Char('\n');
    for (const auto &[id, list] : m_lists) {
        QList<Entry> entries = list;
        std::sort(entries.begin(), entries.end(),
                  [](const Entry &a, const Entry &b) { return a.path < b.path; });
        text += descriptionForId(id) + QLatin1Char('\n');
        for (const Entry &entry : entries)
            text += QLatin1Char('\t') + entry.path + QLatin1Char('\n');
        const bool touchesGroup = std::any_of(entries.begin(), entries.end(),
                                              [](const Entry &e) { return isInGroup(e.pic); });
        if (touchesGroup && isGroupNoteId(id))
            text += QLatin1Char('(') +
                    QCoreApplication::translate("SaveErrors",
                                                "Files of a group are saved together: when one "
                                                "fails, the group keeps its changes.") +
                    QLatin1String(")\n");
    }
    for (const auto &[step, list] : m_toolErrors) {
        QList<ToolEntry> entries = list;
        std::sort(entries.begin(), entries.end(), [](const ToolEntry &a, const ToolEntry &b) {
            return a.entry.path < b.entry.path;
        });
        text += descriptionForStep(step) + QLatin1String("\n\n");
        for (const ToolEntry &e : entries)
            text += QLatin1Char('\t') + e.entry.path + QLatin1String(" (") + e.reason +
                    QLatin1String(")\n");
    }
    return text;
}

} // namespace orv
