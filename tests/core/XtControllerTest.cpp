#include "core/XtController.h"

#include "support/Exiftool.h"
#include "support/MediaFileBuilder.h"
#include "support/QtPrinters.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

// A stand-in for exiftool that follows the argument file as the real one does and answers by the
// path of each action: "split" changes the file in an answer of two reads, "silent" never
// answers, "error" reports an error and no change, "die" ends the tool. Each start is counted.
const char *const fakeTool = R"(#!/bin/sh
echo started >> "$(dirname "$0")/starts"
previous=
tail -n +1 -f --pid=$$ "$4" | while IFS= read -r line; do
  case "$line" in
    false) kill $$ ;;
    -execute)
      case "$previous" in
        *split*) printf '    1 image files upd'; sleep 0.3; printf 'ated\n{ready}\n' ;;
        *error*) printf 'Error: Not a valid JPG - %s\n    0 image files updated\n{ready}\n' "$previous" ;;
        *die*) kill $$ ;;
      esac ;;
  esac
  previous=$line
done
)";

class XtControllerTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;

    QString fakeToolPath()
    {
        const QString path = dir.filePath(QStringLiteral("fake-exiftool"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(fakeTool);
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    int starts()
    {
        QFile file(dir.filePath(QStringLiteral("starts")));
        return file.open(QIODevice::ReadOnly) ? int(file.readAll().count('\n')) : 0;
    }

    static XtController::Action action(const QString &path,
                                       ToolStep type = ToolStep::AddExifDateTags)
    {
        return {type, {QStringLiteral("-ExifIFD:DateTimeOriginal=2024:05:01 10:00:00")}, path, false};
    }
};

} // namespace

TEST_F(XtControllerTest, OneChildAnswersSplitReadsTimesOutIsRestartedAndFilesErrorsByType)
{
    XtController xt(dir.path(), fakeToolPath(), 1500);

    const XtController::Outcome split = xt.run(action(QStringLiteral("/photos/split.jpg")));
    EXPECT_TRUE(split.didChangeOnLastAction) << "the prompt came in the second read";
    EXPECT_TRUE(xt.run(action(QStringLiteral("/photos/split2.jpg"))).didChangeOnLastAction);
    EXPECT_EQ(starts(), 1) << "one child serves consecutive actions";

    const XtController::Outcome silent = xt.run(action(QStringLiteral("/photos/silent.jpg")));
    EXPECT_TRUE(silent.timedOut);
    EXPECT_FALSE(silent.didChangeOnLastAction);
    EXPECT_EQ(xt.errorCollectorCount(), 0) << "a time-out files no error";

    const XtController::Outcome error = xt.run(
        action(QStringLiteral("/photos/error.jpg"), ToolStep::ExtendShortXmpStamps));
    EXPECT_EQ(starts(), 2) << "the ended child is replaced";
    EXPECT_FALSE(error.didChangeOnLastAction);
    EXPECT_EQ(error.error, "Error: Not a valid JPG - /photos/error.jpg");

    const XtController::Outcome died = xt.run(action(QStringLiteral("/photos/die.jpg")));
    EXPECT_FALSE(died.didChangeOnLastAction);
    EXPECT_FALSE(died.error.isEmpty());
    EXPECT_TRUE(xt.run(action(QStringLiteral("/photos/split3.jpg"))).didChangeOnLastAction);
    EXPECT_EQ(starts(), 3) << "a child that died is started again";

    EXPECT_EQ(xt.errorCollectorCount(), 2);
    const QString summary = xt.errorsSummaryString();
    const qsizetype dateTags =
        summary.indexOf(SaveErrors::descriptionForStep(ToolStep::AddExifDateTags));
    const qsizetype shortStamps = summary.indexOf(
        SaveErrors::descriptionForStep(ToolStep::ExtendShortXmpStamps));
    EXPECT_GE(dateTags, 0);
    EXPECT_GT(shortStamps, dateTags) << "types in their order:\n" << summary.toStdString();
    EXPECT_TRUE(summary.contains("\n\n\tError: Not a valid JPG - /photos/error.jpg\n"));

    xt.cleanup();
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral(".args.txt"))));
}

TEST_F(XtControllerTest, PathsWithLineBreaksAndAMissingToolAreRefusedWithAReason)
{
    XtController fake(dir.path(), fakeToolPath(), 1500);
    const XtController::Outcome refused = fake.run(action(QStringLiteral("/photos/a\n-execute.jpg")));
    EXPECT_FALSE(refused.didChangeOnLastAction);
    EXPECT_TRUE(refused.error.contains("line break"));
    EXPECT_EQ(starts(), 0) << "nothing reached the tool";

    XtController missing(dir.path(), dir.filePath(QStringLiteral("no-such-exiftool")));
    const XtController::Outcome outcome = missing.run(action(QStringLiteral("/photos/a.jpg")));
    EXPECT_FALSE(outcome.didChangeOnLastAction);
    EXPECT_TRUE(outcome.error.contains("PATH")) << outcome.error.toStdString();
}

TEST_F(XtControllerTest, RealExiftoolWritesAndReportsNoChangeWhenAConditionFails)
{
    const QString path = buildJpeg({}).write(dir.path(), QStringLiteral("plain"));
    XtController xt(dir.path());

    EXPECT_TRUE(xt.run(action(path)).didChangeOnLastAction);
    EXPECT_EQ(exiftoolTags(path, ExiftoolGroups::Family1).string("ExifIFD:DateTimeOriginal"),
              "2024:05:01 10:00:00");

    const XtController::Outcome skipped =
        xt.run({ToolStep::AddLocation,
                {QStringLiteral("-if"), QStringLiteral("$FileType eq \"PNG\""),
                 QStringLiteral("-GPSLatitude=1")},
                path,
                false});
    EXPECT_FALSE(skipped.didChangeOnLastAction);
    EXPECT_TRUE(skipped.error.isEmpty());
    EXPECT_EQ(xt.errorCollectorCount(), 0);
}
