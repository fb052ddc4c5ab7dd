#pragma once

#include "core/MySinglePic.h"
#include "folders/SaveRun.h"
#include "folders/ImportQuestions.h"
#include "folders/MySingleFolder.h"
#include "support/MediaFile.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace orv::test {

// A folder in a temporary directory whose files are imported as the scan does it, and saved by a
// real save run. Empty tags take the file date.
class SaveFixture : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    MySingleFolder folder{dir.path(), false};

    // The run's choices as registered, "now" fixed at the call.
    static SaveSettings defaultSettings();

    MySinglePic &import(const MediaFile &file, const QString &baseName = QStringLiteral("pic"));
    MySinglePic &importPath(const QString &path);
    // Sets the folder's offset and runs a save that proceeds past pre-save findings.
    SaveOutcome shift(double seconds, FileWriteAccess *disk = nullptr,
                      const SaveSettings &settings = defaultSettings(),
                      LogController *log = nullptr);
    const SaveErrors &errors() const { return m_run->errors(); }
    QList<int> errorIdsFor(const MySinglePic &pic) const { return errors().errorIdsFor(pic); }

private:
    FixedImportAnswers m_fileDate{fileDateOption()};
    // In place only: items dated by their file alone are not given tags here.
    FixedSaveAnswers m_proceed{true, false};
    std::unique_ptr<SaveRun> m_run;

    static ImportOptions fileDateOption();
};

QByteArray fileBytes(const QString &path);
// Gives the file an older modification time, as cp -p, rsync and card readers keep a camera's.
void setModificationTime(const QString &path, Instant time);

// The offsets at which two versions of a file differ; empty when they are equal. A different
// length shows as the offsets past the shorter one.
std::vector<qint64> differingOffsets(const QByteArray &a, const QByteArray &b);

} // namespace orv::test
