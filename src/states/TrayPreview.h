#pragma once

#include "time/Instant.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace orv {

class MySingleFolder;

// What the tray shows of a kept state without opening it: counts, the span of dates and the
// user's title and note, kept in the package beside the folders (savedTrayPreviewData).
struct TrayPreview
{
    qint64 folderCount = 0;
    QString activeFolderName;
    QString altFolderName;   // the user's title
    QString additionalInfos; // the user's note
    qint64 images = 0;       // stills without a dependent of their own
    qint64 movies = 0;
    qint64 keepers = 0;
    qint64 rejects = 0; // a keeper is never counted here
    qint64 livePhotos = 0;
    qint64 rawPlusJpgs = 0;
    qint64 unsavedChanges = 0;
    OptionalDate fromDate, toDate;
    bool isUndeletedState = false; // brought back after a crash

    // activeFolder names the state when it has no title of its own; the first folder otherwise.
    static TrayPreview previewDataForCurrentState(const QList<MySingleFolder *> &folders,
                                                  const MySingleFolder *activeFolder = nullptr);

    QByteArray toCbor() const;
    struct ReadResult;
    // fileName names the file in a problem.
    static ReadResult fromCbor(const QByteArray &data, const QString &fileName);

    // The name a row is listed and sorted by: the title, else the folder's name, else fallback.
    QString sortName(const QString &fallback) const;
};

struct TrayPreview::ReadResult
{
    TrayPreview preview;
    QString problem; // empty when read
};

} // namespace orv
