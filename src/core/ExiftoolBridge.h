#pragma once

#include "core/ExiftoolSteps.h"
#include "core/SaveErrors.h"
#include "core/XtController.h"

#include <QMutex>
#include <QStringList>
#include <optional>

namespace orv {

class SaveQuestions;
struct SaveSettings;

// The save's exiftool steps, each one action of the run's one exiftool child. A step first
// proves it may touch the file (a writable file, a path the tool can take); after a change the
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

    bool completeFullExifDateTags(MySinglePic &pic) override;
    bool extendShortXmpDateTags(MySinglePic &pic,
                                const std::map<QString, QString> &supportStamps) override;
    bool saveLocationChange(MySinglePic &pic) override;
    bool mayAddDateTagsToFileDatedItems() override;
    bool addDateTagsForFileDate(MySinglePic &pic) override;

    // The argument lines of a location of the item for exiftool, as type 1 writes it to a photo
    // (`forXmp` false) or to an XMP sidecar (true).
    static QStringList locationArguments(const MySinglePic &pic, bool forXmp);

private:
    // One action on `path` (the item's file, or its sidecar). True when the tool changed it.
    bool act(ToolStep step, const QStringList &arguments, MySinglePic &pic, const QString &path);
    // The item's stored values, read again from the file the tool rewrote.
    bool refreshInternalData(MySinglePic &pic, ToolStep step);
    bool updateXmpLocationInSidecar(MySinglePic &pic);

    XtController &m_xt;
    SaveErrors &m_errors;
    const SaveSettings &m_settings;
    SaveQuestions &m_questions;
    QMutex m_questionMutex;
    std::optional<bool> m_mayAddDateTags;
};

} // namespace orv
