#pragma once

#include "folders/FolderTimeZones.h"
#include "folders/MySingleFolder.h"
#include "time/Instant.h"

#include <QList>
#include <QString>

namespace orv {

class MySinglePic;

// Several selected folders shown as one: sums, unions and merged values over its members, and
// changes applied to each. Short-lived and never stored; what it does not answer itself is its
// first folder's to answer (firstFolder()). Its members share edit mode and kind by construction.
class MyCompoundFolder
{
public:
    // Marks a compound folder wherever a colour index is read: above any real index.
    static constexpr quint16 compoundColorIndex = 16960;
    // What a date control shows where the members differ.
    static inline const QString differingValue = QStringLiteral("|");

    explicit MyCompoundFolder(QList<MySingleFolder *> folders) : m_folders(std::move(folders)) {}

    const QList<MySingleFolder *> &folders() const { return m_folders; }
    MySingleFolder &firstFolder() const { return *m_folders.first(); }
    qsizetype compoundFoldersCount() const { return m_folders.size(); }

    qint64 count() const;
    qint64 sfPics() const { return count(); }
    qint64 fullMediaCount() const;
    qint64 keepers() const;
    qint64 rejects() const;
    qint64 singlePicModeImages() const;
    qint64 locationMovedImages() const;
    qint64 ofWhichAddedByTrack() const;
    qint64 exifDateTimeAddedImages() const;
    QString sfFolder() const;
    // Earliest and latest over the members; without dates the far future and the far past.
    Instant sfFrom() const;
    Instant sfTill() const;
    int sfEditMode() const { return firstFolder().sfEditMode; }
    bool isEXIFIgnored() const { return firstFolder().isEXIFIgnored(); }
    int modifyImportBecauseOfCommand() const { return isEXIFIgnored() ? 3 : 0; }
    quint16 colorIndex() const { return compoundColorIndex; }
    // The items of all members in source order.
    QList<MySinglePic *> sfPicDetails_fullArray() const;

    bool isUnsavedFolder() const;
    bool isDisconnected() const;
    bool isAdvanced() const;
    bool isDateModified() const;
    bool isQuicktimeMVHDTimezoneCorrectionMixed() const;
    qint64 mediaTypesState() const;
    // 0 as soon as one member is unexamined, else the highest.
    qint64 hasDSTJumperType() const;

    // The first member with items gives the values; a key where another member with items
    // differs shows "|".
    DateModifications sfDateModifications() const;
    void cacheOldDateModifications();
    // Whether a member with items changed that key since cacheOldDateModifications.
    bool hasChangesOfType(const QString &key) const;
    void setDirection(const QString &direction, const QString &days, const QString &hours, const QString &minutes,
                      const QString &seconds);
    void setSfDateModificationsFromTimeInterval(double interval, bool direction);
    void recountKeepersAndRejects();

    // The members' dictionaries merged: sets united, the default the common one or "_MULTIPLE"
    // (a member without a default counts as "_SYSTEM").
    FolderTimeZones sourceTimeZones() const;
    FolderTimeZones targetTimeZones() const;

private:
    QList<MySingleFolder *> m_folders;
    QList<DateModifications> m_oldDateModifications;
};

} // namespace orv
