#include "formats/InPlaceWriter.h"

#include "core/FileAttributes.h"
#include "support/FailingDisk.h"
#include "support/ReadOnlyFile.h"
#include "support/SaveFixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace orv;
using namespace orv::test;

namespace {

const QByteArray original = "0123456789abcdefghij";

QString writeFile(const QTemporaryDir &dir, const QString &name, const QByteArray &bytes = original)
{
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString());
    return path;
}

} // namespace

TEST(InPlaceWriter, WritesExactBytesAtExactOffsetsAndKeepsTheLength)
{
    QTemporaryDir dir;
    const QString path = writeFile(dir, "a.bin");
    const auto writer = InPlaceFile::open(path);
    ASSERT_TRUE(writer);
    EXPECT_TRUE(writer->apply({{2, "XY", "23"}, {18, "ZZ", "ij"}}));
    EXPECT_TRUE(writer->synchronize());
    EXPECT_EQ(fileBytes(path), QByteArray("01XY456789abcdefghZZ"));
}

TEST(InPlaceWriter, AnEditPastTheEndIsRefusedAndUndoesTheEditsBeforeIt)
{
    QTemporaryDir dir;
    const QString path = writeFile(dir, "a.bin");
    const auto writer = InPlaceFile::open(path);
    ASSERT_TRUE(writer);
    EXPECT_TRUE(writer->apply({{0, "AB", "01"}}));
    EXPECT_FALSE(writer->apply({{5, "CD", "56"}, {19, "EF", "j"}}));
    EXPECT_EQ(fileBytes(path), original) << "the file never grows and is left as it was";
}

TEST(InPlaceWriter, NeverCreatesTruncatesOrOpensWhatIsNoWritableFile)
{
    QTemporaryDir dir;
    EXPECT_FALSE(InPlaceFile::open(dir.filePath("missing.jpg")));
    EXPECT_FALSE(QFile::exists(dir.filePath("missing.jpg")));
    ASSERT_TRUE(QDir(dir.path()).mkdir("folder.jpg"));
    EXPECT_FALSE(InPlaceFile::open(dir.filePath("folder.jpg")));
    // A pipe would block the open forever; a device is no file to patch.
    ASSERT_EQ(::mkfifo(QFile::encodeName(dir.filePath("pipe.jpg")).constData(), 0600), 0);
    EXPECT_FALSE(InPlaceFile::open(dir.filePath("pipe.jpg")));
    EXPECT_FALSE(InPlaceFile::open(QStringLiteral("/dev/null")));
    const QString kept = writeFile(dir, "kept.jpg");
    EXPECT_EQ(InPlaceFile::open(kept)->length(), original.size());
    EXPECT_EQ(fileBytes(kept), original);

    const QString locked = writeFile(dir, "locked.jpg");
    const ReadOnlyFile lock(locked);
    if (!lock.isLocked())
        GTEST_SKIP() << "this file system lets the process write any file";
    EXPECT_FALSE(InPlaceFile::open(locked));
}

TEST(InPlaceWriter, ModificationDateIsSetToTheMillisecond)
{
    QTemporaryDir dir;
    const QString path = writeFile(dir, "a.bin");
    const Instant date = Instant::fromUtc(2021, 6, 30, 12, 0, 5.25);
    const auto writer = InPlaceFile::open(path);
    ASSERT_TRUE(writer->setModificationDate(date));
    ASSERT_TRUE(writer->synchronize());
    EXPECT_NEAR(FileAttributes::read(path)->modificationDate.secondsSinceEpoch(),
                date.secondsSinceEpoch(), 0.001);
}

TEST(InPlaceWriter, AFailingDiskLeavesTheFileAsItWas)
{
    QTemporaryDir dir;
    const QString path = writeFile(dir, "a.bin");
    FailingDisk disk;
    disk.failingName = "a.bin";
    disk.writesBeforeFailure = 2;
    const auto writer = disk.openForUpdate(path);
    EXPECT_TRUE(writer->apply({{0, "AB", "01"}, {4, "CD", "45"}}));
    EXPECT_FALSE(writer->apply({{8, "EF", "89"}}));
    EXPECT_EQ(fileBytes(path), original);

    FailingDisk neverSyncs;
    neverSyncs.failingName = "a.bin";
    neverSyncs.failsSync = true;
    const auto unsynced = neverSyncs.openForUpdate(path);
    EXPECT_TRUE(unsynced->apply({{0, "AB", "01"}}));
    EXPECT_FALSE(unsynced->synchronize());
    EXPECT_EQ(fileBytes(path), original) << "what never reached the disk is put back";
}
