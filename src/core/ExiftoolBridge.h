#pragma once

#include "core/ExiftoolSteps.h"
#include "core/SaveErrors.h"
#include "core/XtController.h"

#include <QMutex>
#include <QStringList>
#include <optional>

namespace orv {

class SaveJournal;
class SaveQuestions;
struct SaveSettings;

// The save's exiftool steps, each one action of the run's one exiftool child. A step first
// proves it may touch the file (a writable file, a path the tool can take) and has the run's
// journal keep the file as it is; after a change the
// file's own dates return to what they were and the item reads its stored values afresh, since
// the tool rewrote the file. A step that changed nothing fails its item under the step's type.
// Called from the save's worker threads; the child serves them one after the other.
class ExiftoolBridge : public ExiftoolSteps
{
public:
    ExiftoolBridge(XtController &xt, SaveErrors &errors, const SaveSettings &settings,
                   SaveQuestions &questions)
        : m_xt(xt), m_errors(errors), m_settings(settings), m_questions(questions)
    {
    }

    // Before each action the file is kept in `journal`, so that the run's undo restores it.
    void keepOriginalsIn(SaveJournal *journal) { m_journal = journal; }

    bool completeFullExifDateTags(MySinglePic &pic) override;
    bool extendShortXmpDateTags(MySinglePic &pic,
                                const std::map<QString, QString> &supportStamps) override;
    bool saveLocationChange(MySinglePic &pic, bool exifInPlace) override;
    bool saveRatingChange(MySinglePic &pic, int rating) override;
    bool mayAddDateTagsToFileDatedItems() override;
    bool addDateTagsForFileDate(MySinglePic &pic) override;

    // Which of a file's location tags an action writes.
    enum class LocationType : int {
        New = 1,           // a place the file did not have, in the tags exiftool prefers
        Exif = 2,          // EXIF GPS tags, where the file has them
        Xmp = 3,           // the XMP location, where the file has one
        Existing = 4,      // EXIF and XMP, each only where it exists
        XmpAccuracy = 5,   // the XMP positioning error, where it exists
        ExifAccuracy = 6,  // the EXIF positioning error, where it exists
    };
    struct LocationArguments
    {
        QStringList lines;
        // Types 2 and 3 leave the positioning error to a run of type 6 or 5 of its own, so that
        // a file without that tag still takes the place.
        bool needsSeparateHaccRun = false;
    };
    // The argument lines of an action of `type` that writes the location of `source`.
    static LocationArguments updateLocationArguments(LocationType type, const MySinglePic &source,
                                                     bool zeroAccuracyOnChange);
    // The altitude and positioning error the user gave, as EXIF tags, as far as given.
    static QStringList extendExifLocationArguments(const MySinglePic &pic);
    // The file holds no place yet: a new one is added rather than one moved.
    static bool willAddNewLocation(const MySinglePic &pic);

private:
    enum class Acted { Changed, Unchanged, Refused };
    // One action on `path` (the item's file, or its sidecar). Refused: the action could not be
    // asked, and the item's error is filed. Unchanged: nothing is filed; `why` holds the tool's
    // error or its time-out, and stays empty where the tool only found nothing to change.
    Acted tryAct(ToolStep step, const QStringList &arguments, MySinglePic &pic, const QString &path,
                 QString &why);
    // The same, where no change fails the item. True when the tool changed the file.
    bool act(ToolStep step, const QStringList &arguments, MySinglePic &pic, const QString &path);
    // An action of `type` on the item's file, followed by the positioning error's own run when
    // it asks for one. Changed when either changed the file.
    Acted updateLocation(LocationType type, MySinglePic &pic, QString &why);
    // The GPS tags take the place in place: only the parts they lack and the XMP twin are left.
    bool completeInPlaceLocation(MySinglePic &pic);
    // A photo whose place stands elsewhere than in GPS tags the save can write in place.
    bool updateFileLocation(MySinglePic &pic);
    // The item's stored values, read again from the file the tool rewrote.
    bool refreshInternalData(MySinglePic &pic, ToolStep step);
    bool updateXmpLocationInSidecar(MySinglePic &pic, bool isNewLocation);
    // The item's XMP sidecar, or the path of the one a first write makes; empty, with the
    // item's error filed, when a file of that name that is no sidecar of the item stands there.
    QString sidecarToWrite(MySinglePic &pic, bool &isNew);

    XtController &m_xt;
    SaveErrors &m_errors;
    const SaveSettings &m_settings;
    SaveQuestions &m_questions;
    SaveJournal *m_journal = nullptr;
    QMutex m_questionMutex;
    std::optional<bool> m_mayAddDateTags;
};

} // namespace orv
