#pragma once

#include "core/Instant.h"
#include "folders/ImportOptions.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>

#include <memory>
#include <vector>

namespace orv {

class MySinglePic;

// One imported directory: it owns its items and holds the date offset that applies to them
// as a whole, its import options and its counts.
class MySingleFolder
{
public:
    enum EditMode : int { EditTogether = 1, EditSeparately = 2 };

    MySingleFolder(const QString &path, bool separateMode);
    ~MySingleFolder();

    MySingleFolder(const MySingleFolder &) = delete;
    MySingleFolder &operator=(const MySingleFolder &) = delete;

    QString sfFolder;
    QString sfFolderPath;
    int sfEditMode = EditTogether;
    double sfDateModificationsTimeInterval = 0.0;
    // The offset as the five controls show it, under the keys dmDirection ("+" or "-"), dmDays,
    // dmHours, dmMinutes and dmSeconds.
    QMap<QString, QString> sfDateModifications = zeroDateModifications();
    // The offset counts as negative, also when it is zero.
    bool hasChangedDirection = false;
    // Items with an offset of their own (separate mode).
    qint64 singlePicModeImages = 0;
    // Items whose last save failed.
    qint64 saveErrors = 0;
    // The system's own last change in the directory: any check of a file older than this is
    // repeated.
    OptionalDate lastLocalChange;
    int modifyImportBecauseOfCommand = 0;
    bool isEXIFIgnored() const { return modifyImportBecauseOfCommand >= 3; }
    bool isQuicktimeMDTADateEnabled = true;
    bool isQuicktimeMVHDTimezoneCorrectionEnabled = true;
    qint64 harmonizingRawJpgsType = -1;
    qint64 sortLPsByMovModifier = -1;
    bool globalSortLPsByMov = false;
    int fixedDates = 0;
    qint64 sfPics = -1;
    bool isAdvanced = false;
    ImportOptions perFolderImportOptions;
    QSet<QString> gpxAddedPaths;
    // Sidecars seen by the scan, matched to their items once the folder is read.
    QSet<QString> xmpSidecarPaths, aaeSidecarPaths;

    // Masters and ungrouped items, in import order. Dependents are reached through their master.
    QList<MySinglePic *> sfPicDetails_fullArray;

    bool sortFolderLPsByMov() const
    {
        return sortLPsByMovModifier == 0 ? globalSortLPsByMov : sortLPsByMovModifier != 1;
    }

    // Whether a still and a movie stamped at these UTC dates may still form one Live Photo:
    // within 300 s always, beyond 3900 s never, in between only across a daylight-saving shift.
    static bool isBundlingAllowedForUtcDates(Instant first, Instant second);
    static bool isDstExceptionForUtcDate(Instant first, Instant second);

    static QMap<QString, QString> zeroDateModifications();
    // Stores the five texts as they are and takes the interval they name.
    void setDirection(const QString &direction, const QString &days, const QString &hours,
                      const QString &minutes, const QString &seconds);
    // Takes the interval and writes the five texts for it; `direction` marks it negative.
    void setSfDateModificationsFromTimeInterval(double interval, bool direction);

    void addSinglePicModeImage() { ++singlePicModeImages; }
    void clearSinglePicModeImages() { singlePicModeImages = 0; }
    void addSaveError() { ++saveErrors; }

    // Takes ownership; a master or single item also joins the visible list.
    MySinglePic *adoptPic(std::unique_ptr<MySinglePic> pic, bool visible = true);

private:
    std::vector<std::unique_ptr<MySinglePic>> m_ownedPics;
};

} // namespace orv
