// One change, one result: the window (the owner's date changes and the window's save session)
// and orvelle-cli give byte-identical files for the same change and preferences, on copies of
// real camera files, for a shift, an alignment and a zone change.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "app/ZoneChangeCommand.h"
#include "folders/MySingleFolder.h"
#include "folders/MyDroppedFolders.h"
#include "support/CliRun.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"

#include <QAction>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSpinBox>
#include <QTableView>

using namespace orv;
using namespace orv::test;

namespace {

// Two folders as two cameras would leave them: stills with GPS times, offset tags, modify dates
// older and newer than the capture, a TIFF, a HEIC and an MP4.
const std::pair<const char *, const char *> shoot[] = {
    {"a", "exiftool-t/GPS.jpg"},
    {"a", "exiftool-t/Canon.jpg"},
    {"a", "exiftool-t/Apple.jpg"},
    {"a", "exiftool-t/Google.jpg"},
    {"a", "exiftool-t/ExifTool.tif"},
    {"b", "metadata-extractor-images/jpg/Nikon D5000.jpg"},
    {"b", "metadata-extractor-images/jpg/Apple iPhone 6 plus.jpg"},
    {"b", "metadata-extractor-images/heic/IMG_1034.heic"},
    {"b", "metadata-extractor-images/mp4/with-gps.mp4"},
};

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class OneResultTest : public WindowFixture
{
protected:
    // The same files under the window's folder and the tool's.
    void SetUp() override
    {
        ORV_SKIP_WITHOUT_CORPUS();
        for (const QString &root : {windowRoot(), cliRoot()})
            for (const auto &[folder, file] : shoot) {
                QDir(root).mkpath(QLatin1String(folder));
                const QString source = corpusFile(QLatin1String(file));
                QFile::copy(source, QDir(root).filePath(QString::fromLatin1(folder) + u'/' + QFileInfo(source).fileName()));
            }
        // The window shows what each save changes; here it is answered like the tool's.
        prefs.setBool(QStringLiteral("isPreSaveSummaryOnlyOnProblems"), false);
        ASSERT_TRUE(waitForImport([&] { window->importPaths(folders(windowRoot())); }));
    }

    QString windowRoot() const { return dir.filePath(QStringLiteral("window")); }
    QString cliRoot() const { return dir.filePath(QStringLiteral("cli")); }
    static QStringList folders(const QString &root) { return {root + QStringLiteral("/a"), root + QStringLiteral("/b")}; }

    void saveInWindow()
    {
        answers.answerNext(accept);
        QSignalSpy finished(window.get(), &MainWindow::saveFinished);
        window->save();
        ASSERT_TRUE(finished.wait(60000));
        EXPECT_EQ(answers.asked, QStringList{"orv::PreSaveSummaryDialog"});
    }

    void runCliWith(const QStringList &arguments)
    {
        const CliResult result = runCli(arguments + folders(cliRoot()), home.path());
        ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
    }

    // Every file of one side equals its twin byte for byte, and the save changed most of them.
    void expectSameFiles()
    {
        int changed = 0;
        QStringList paths;
        for (QDirIterator it(windowRoot(), QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
            const QString windowPath = it.next();
            const QString relative = QDir(windowRoot()).relativeFilePath(windowPath);
            const QString cliPath = QDir(cliRoot()).filePath(relative);
            const QByteArray written = bytesOf(windowPath);
            EXPECT_EQ(written, bytesOf(cliPath)) << relative.toStdString();
            const auto original = std::find_if(std::begin(shoot), std::end(shoot), [&](const auto &entry) {
                return relative == QString::fromLatin1(entry.first) + u'/' + QFileInfo(QString::fromLatin1(entry.second)).fileName();
            });
            if (original != std::end(shoot) && written != bytesOf(corpusFile(QLatin1String(original->second))))
                ++changed;
            paths << windowPath << cliPath;
        }
        EXPECT_GE(changed, 6) << "the change reached the files";
        // exiftool reads the same dates from both, as a check on the reading side.
        const std::map<QString, ExiftoolTags> tags = exiftoolTagsOfFiles(paths);
        for (qsizetype i = 0; i < paths.size(); i += 2)
            for (const char *key : {"EXIF:DateTimeOriginal", "EXIF:ModifyDate", "EXIF:GPSTimeStamp", "QuickTime:CreateDate"})
                EXPECT_EQ(tags.at(paths[i]).string(QLatin1String(key)), tags.at(paths[i + 1]).string(QLatin1String(key)))
                    << paths[i].toStdString() << " " << key;
    }

    QTemporaryDir home;
};

} // namespace

TEST_F(OneResultTest, AShiftInTheOffsetFieldsWritesWhatTheToolWrites)
{
    window->findChild<QSpinBox *>(QStringLiteral("offsetDays"))->setValue(10);
    window->findChild<QSpinBox *>(QStringLiteral("offsetHours"))->setValue(1);
    saveInWindow();
    runCliWith({"shift", "--by", "+10d1:00:00"});
    expectSameFiles();
}

TEST_F(OneResultTest, MatchingGapsFromTheEditMenuWritesWhatTheToolWrites)
{
    window->findChild<QAction *>(QStringLiteral("separateModeAction"))->trigger();
    window->findChild<QTableView *>()->selectAll();
    QAction *gaps = window->findChild<QAction *>(QStringLiteral("alignByMatchingGaps"));
    ASSERT_TRUE(gaps->isEnabled()) << gaps->toolTip().toStdString();
    gaps->trigger();
    saveInWindow();
    runCliWith({"align", "--by", "gaps"});
    expectSameFiles();
}

TEST_F(OneResultTest, AZoneChangeThroughTheOwnerWritesWhatTheToolWrites)
{
    QList<ZoneChangeCommand::FolderChange> changes;
    for (MySingleFolder *folder : window->controller().theDataSource().droppedFolders()) {
        ZoneChangeCommand::Zones after;
        after.source.defaultZone = QStringLiteral("Europe/Berlin");
        after.target.defaultZone = QStringLiteral("America/New_York");
        changes.append({folder, {folder->sourceTimeZones, folder->targetTimeZones}, after});
    }
    window->controller().dateChanges().changeTimeZones(changes, {});
    saveInWindow();
    runCliWith({"zone", "--source", "Europe/Berlin", "--target", "America/New_York"});
    expectSameFiles();
}
