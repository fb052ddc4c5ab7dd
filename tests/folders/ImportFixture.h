#pragma once

#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/ImportQuestions.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "support/MediaFileBuilder.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace orv::test {

// The driver publishes through the event loop of its thread, so the tests need one.
inline void ensureApplication()
{
    static int argc = 1;
    static char name[] = "tests_folders";
    static char *argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
}

// Counts the questions and answers them with fixed choices.
class RecordingAnswers : public FixedImportAnswers
{
public:
    using FixedImportAnswers::FixedImportAnswers;
    ImportOptions emptyTagOptions(const MySingleFolder &folder) override
    {
        ++emptyTagQuestions;
        askedOnMainThread = QThread::currentThread() == QCoreApplication::instance()->thread();
        if (whileAsked)
            whileAsked();
        return FixedImportAnswers::emptyTagOptions(folder);
    }
    std::optional<TemporaryImportOptions> temporaryImportOptions(const TemporaryImportOptions &preset) override
    {
        sheetPresets.append(preset);
        return sheetAnswer ? sheetAnswer : std::optional<TemporaryImportOptions>(preset);
    }
    // Runs while the scan thread waits for the answer: a way to act in the middle of a scan.
    std::function<void()> whileAsked;
    int emptyTagQuestions = 0;
    bool askedOnMainThread = false;
    QList<TemporaryImportOptions> sheetPresets;
    std::optional<TemporaryImportOptions> sheetAnswer;
};

inline ImportOptions fileDateAnswer()
{
    ImportOptions o;
    o.withEmptyExifFixDate = ImportOptions::UseFileDate;
    return o;
}

// A temporary folder tree of real files, a store of preferences in memory, and a driver.
class ImportFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ensureApplication();
        ASSERT_TRUE(root.isValid());
    }

    // A JPEG with this original date in dir (relative to the root), created with its folders.
    QString photo(const QString &relativeDir, const QString &baseName, const char *stamp = "2024:05:01 10:00:00")
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text(stamp);
        return buildJpeg({.exif = tags}).write(folder(relativeDir), baseName);
    }
    // A JPEG whose original date tag is there but blank: the empty-tag options date it.
    QString blankPhoto(const QString &relativeDir, const QString &baseName)
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::blank();
        return buildJpeg({.exif = tags}).write(folder(relativeDir), baseName);
    }
    // count copies of one photo, named 001.jpg and up.
    void manyPhotos(const QString &relativeDir, int count)
    {
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        const QByteArray bytes = buildJpeg({.exif = tags}).bytes;
        const QDir dir(folder(relativeDir));
        for (int i = 1; i <= count; ++i) {
            QFile file(dir.filePath(QStringLiteral("%1.jpg").arg(i, 3, 10, QLatin1Char('0'))));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(bytes);
        }
    }
    QString folder(const QString &relativeDir)
    {
        const QString path = relativeDir.isEmpty() ? root.path() : root.filePath(relativeDir);
        QDir().mkpath(path);
        return path;
    }

    KeyStatesAtImport keys() const { return {}; }

    // Imports and waits until the scan thread is done.
    void importAndWait(const QStringList &paths, const KeyStatesAtImport &keyStates)
    {
        QList<DropEntry> entries;
        for (const QString &path : paths)
            if (std::optional<DropEntry> entry = DropEntry::pathAndBookmarkFromAccessable(path))
                entries.append(*entry);
        driver.processDroppedFolders(entries, nullptr, 0, keyStates);
        waitForImports();
    }
    void importAndWait(const QStringList &paths) { importAndWait(paths, keys()); }
    void waitForImports()
    {
        QEventLoop loop;
        QTimer timeout;
        timeout.setSingleShot(true);
        QObject::connect(&timeout, &QTimer::timeout, &loop, &QEventLoop::quit);
        QObject::connect(&driver, &MyDroppedFolders::importEnded, &loop, &QEventLoop::quit);
        timeout.start(120000);
        if (driver.isImportInProgress())
            loop.exec();
        ASSERT_FALSE(driver.isImportInProgress()) << "the import did not end in time";
    }

    QStringList itemNames(const MySingleFolder &f) const
    {
        QStringList names;
        for (const MySinglePic *pic : f.sfPicDetails_fullArray)
            names.append(pic->spName);
        return names;
    }
    QStringList folderNames() const
    {
        QStringList names;
        for (const MySingleFolder *f : driver.droppedFolders())
            names.append(f->sfFolder);
        return names;
    }

    QTemporaryDir root;
    Preferences prefs{QString()};
    RecordingAnswers answers{fileDateAnswer()};
    MyDroppedFolders driver{prefs, answers};
};

} // namespace orv::test
