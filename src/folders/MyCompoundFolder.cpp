#include "folders/MyCompoundFolder.h"

#include "core/MySinglePic.h"

#include <QCoreApplication>

#include <algorithm>
#include <numeric>

namespace orv {

namespace {

template <typename Value>
qint64 sumOver(const QList<MySingleFolder *> &folders, Value value)
{
    return std::accumulate(folders.cbegin(), folders.cend(), qint64(0),
                           [&value](qint64 sum, const MySingleFolder *f) { return sum + qint64(value(*f)); });
}

template <typename Test>
bool anyOf(const QList<MySingleFolder *> &folders, Test test)
{
    return std::any_of(folders.cbegin(), folders.cend(), [&test](const MySingleFolder *f) { return test(*f); });
}

FolderTimeZones merged(const QList<MySingleFolder *> &folders, FolderTimeZones MySingleFolder::*dictionary)
{
    FolderTimeZones result;
    for (qsizetype i = 0; i < folders.size(); ++i) {
        const FolderTimeZones &zones = folders[i]->*dictionary;
        result.unite(zones);
        const QString name = zones.defaultZone.value_or(zoneName::system);
        if (i == 0)
            result.defaultZone = name;
        else if (result.defaultZone != name)
            result.defaultZone = zoneName::multiple;
    }
    return result;
}

} // namespace

qint64 MyCompoundFolder::count() const
{
    return sumOver(m_folders, [](const MySingleFolder &f) { return f.count(); });
}

qint64 MyCompoundFolder::fullMediaCount() const
{
    return sumOver(m_folders, [](const MySingleFolder &f) { return f.fullMediaCount(); });
}

qint64 MyCompoundFolder::keepers() const
{
    return sumOver(m_folders, [](const MySingleFolder &f) { return f.keepers; });
}

qint64 MyCompoundFolder::rejects() const
{
    return sumOver(m_folders, [](const MySingleFolder &f) { return f.rejects; });
}

qint64 MyCompoundFolder::singlePicModeImages() const
{
    return sumOver(m_folders, [](const MySingleFolder &f) { return f.singlePicModeImages; });
}

qint64 MyCompoundFolder::locationMovedImages() const
{
    return sumOver(m_folders, [](const MySingleFolder &f) { return f.locationMovedImages; });
}

qint64 MyCompoundFolder::ofWhichAddedByTrack() const
{
    return sumOver(m_folders, [](const MySingleFolder &f) { return f.ofWhichAddedByTrack; });
}

qint64 MyCompoundFolder::exifDateTimeAddedImages() const
{
    return sumOver(m_folders, [](const MySingleFolder &f) { return f.exifDateTimeAddedImages; });
}

QString MyCompoundFolder::sfFolder() const
{
    return QCoreApplication::translate("MyCompoundFolder", "Compound folder with %1 \"subfolders\"")
        .arg(m_folders.size());
}

Instant MyCompoundFolder::sfFrom() const
{
    Instant earliest = Instant::distantFuture();
    for (const MySingleFolder *f : m_folders)
        if (f->sfFrom && *f->sfFrom < earliest)
            earliest = *f->sfFrom;
    return earliest;
}

Instant MyCompoundFolder::sfTill() const
{
    Instant latest = Instant::distantPast();
    for (const MySingleFolder *f : m_folders)
        if (f->sfTill && *f->sfTill > latest)
            latest = *f->sfTill;
    return latest;
}

QList<MySinglePic *> MyCompoundFolder::sfPicDetails_fullArray() const
{
    QList<MySinglePic *> all;
    for (const MySingleFolder *f : m_folders)
        all.append(f->sfPicDetails_fullArray);
    std::stable_sort(all.begin(), all.end(), [](const MySinglePic *a, const MySinglePic *b) {
        return a->indexInSource_full < b->indexInSource_full;
    });
    return all;
}

bool MyCompoundFolder::isUnsavedFolder() const
{
    return anyOf(m_folders, [](const MySingleFolder &f) { return f.isUnsavedFolder(); });
}

bool MyCompoundFolder::isDisconnected() const
{
    return anyOf(m_folders, [](const MySingleFolder &f) { return f.isDisconnected; });
}

bool MyCompoundFolder::isAdvanced() const
{
    return anyOf(m_folders, [](const MySingleFolder &f) { return f.isAdvanced; });
}

bool MyCompoundFolder::isDateModified() const
{
    return anyOf(m_folders, [](const MySingleFolder &f) { return f.isDateModified(); });
}

bool MyCompoundFolder::isQuicktimeMVHDTimezoneCorrectionMixed() const
{
    const bool first = firstFolder().isQuicktimeMVHDTimezoneCorrectionEnabled;
    return anyOf(m_folders, [first](const MySingleFolder &f) { return f.isQuicktimeMVHDTimezoneCorrectionEnabled != first; });
}

qint64 MyCompoundFolder::mediaTypesState() const
{
    qint64 state = MySingleFolder::NoMedia;
    for (const MySingleFolder *f : m_folders)
        state |= f->mediaTypesState;
    return state;
}

qint64 MyCompoundFolder::hasDSTJumperType() const
{
    qint64 highest = 0;
    for (const MySingleFolder *f : m_folders) {
        if (f->hasDSTJumperType == 0)
            return 0;
        highest = std::max(highest, f->hasDSTJumperType);
    }
    return highest;
}

DateModifications MyCompoundFolder::sfDateModifications() const
{
    std::optional<DateModifications> result;
    for (const MySingleFolder *f : m_folders) {
        if (f->count() == 0)
            continue;
        if (!result) {
            result = f->sfDateModifications;
            continue;
        }
        for (auto it = result->begin(); it != result->end(); ++it)
            if (f->sfDateModifications.value(it.key()) != it.value())
                it.value() = differingValue;
    }
    return result.value_or(DateModifications());
}

void MyCompoundFolder::cacheOldDateModifications()
{
    m_oldDateModifications.clear();
    for (const MySingleFolder *f : m_folders)
        m_oldDateModifications.append(f->sfDateModifications);
}

bool MyCompoundFolder::hasChangesOfType(const QString &key) const
{
    for (qsizetype i = 0; i < m_folders.size() && i < m_oldDateModifications.size(); ++i)
        if (m_folders[i]->count() > 0 && m_folders[i]->sfDateModifications.value(key) != m_oldDateModifications[i].value(key))
            return true;
    return false;
}

void MyCompoundFolder::setDirection(const QString &direction, const QString &days, const QString &hours,
                                    const QString &minutes, const QString &seconds)
{
    for (MySingleFolder *f : m_folders)
        f->setDirection(direction, days, hours, minutes, seconds);
}

void MyCompoundFolder::setSfDateModificationsFromTimeInterval(double interval, bool direction)
{
    for (MySingleFolder *f : m_folders)
        f->setSfDateModificationsFromTimeInterval(interval, direction);
}

void MyCompoundFolder::recountKeepersAndRejects()
{
    for (MySingleFolder *f : m_folders)
        f->recountKeepersAndRejects();
}

FolderTimeZones MyCompoundFolder::sourceTimeZones() const
{
    return merged(m_folders, &MySingleFolder::sourceTimeZones);
}

FolderTimeZones MyCompoundFolder::targetTimeZones() const
{
    return merged(m_folders, &MySingleFolder::targetTimeZones);
}

} // namespace orv
