#include "core/PicScanner.h"
#include "core/StoredBytes.h"
#include "support/Corpus.h"
#include "support/Exiftool.h"
#include "support/SaveFixture.h"
#include "support/ScanOne.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orv;
using namespace orv::test;

namespace {

constexpr int copiesPerFile = 2;
// Larger files only slow exiftool down: their metadata is as small as anyone's.
constexpr qint64 largestSource = 512 * 1024;
constexpr int bytesDamaged = 4;
// Most of the metadata a save reads stands in a file's first blocks.
constexpr qint64 damagedSpan = 16384;

struct Copy
{
    QString path;
    QByteArray damaged;
    std::vector<std::pair<qint64, qint64>> readRanges; // where the scan read stored values
};

QByteArray damage(QByteArray bytes, QRandomGenerator &random)
{
    const qint64 span = std::min<qint64>(bytes.size(), damagedSpan);
    for (int i = 0; i < bytesDamaged && span > 0; ++i)
        bytes[random.bounded(qint64(0), span)] = char(random.bounded(256));
    return bytes;
}

bool insideReadRanges(qint64 offset, const std::vector<std::pair<qint64, qint64>> &ranges)
{
    return std::any_of(ranges.begin(), ranges.end(), [offset](const auto &range) {
        return offset >= range.first && offset < range.first + range.second;
    });
}

QStringList keysOf(const ExiftoolTags &tags)
{
    QStringList keys = tags.json.keys();
    keys.removeAll(QStringLiteral("SourceFile"));
    keys.sort();
    return keys;
}

// What exiftool reads of each file; a file it answers no JSON for is left out. A batch that
// fails is halved until the file that breaks it stands alone.
std::map<QString, ExiftoolTags> exiftoolReadable(const QStringList &paths)
{
    if (paths.isEmpty())
        return {};
    try {
        return exiftoolTagsOfFiles(paths);
    } catch (const std::runtime_error &) {
        if (paths.size() == 1)
            return {};
        std::map<QString, ExiftoolTags> readable = exiftoolReadable(paths.mid(0, paths.size() / 2));
        readable.merge(exiftoolReadable(paths.mid(paths.size() / 2)));
        return readable;
    }
}

} // namespace

// Damaged copies of real files, saved moved by an hour: each is left as it was or changed only
// inside the values its scan read, and exiftool reads it as well as before.
TEST(MutationSave, DamagedCorpusFilesChangeOnlyWhereTheirStampsWereRead)
{
    QStringList sources = corpusFiles({QStringLiteral("jpg"), QStringLiteral("jpeg"),
                                       QStringLiteral("tif"), QStringLiteral("tiff")});
    if (sources.isEmpty())
        GTEST_SKIP() << "no corpus";
    QTemporaryDir dir;
    QRandomGenerator random(17);
    MySingleFolder folder(dir.path(), false);
    ImportOptions fileDate;
    fileDate.withEmptyExifFixDate = ImportOptions::UseFileDate;
    FixedImportAnswers answers(fileDate);

    std::vector<Copy> copies;
    for (const QString &source : sources) {
        if (QFileInfo(source).size() > largestSource)
            continue;
        const QByteArray original = fileBytes(source);
        for (int i = 0; i < copiesPerFile; ++i) {
            Copy copy{dir.filePath(QStringLiteral("%1_%2_%3")
                                       .arg(copies.size())
                                       .arg(i)
                                       .arg(QFileInfo(source).fileName())),
                      damage(original, random),
                      {}};
            QFile file(copy.path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(copy.damaged);
            file.close();
            if (std::unique_ptr<MySinglePic> pic = scanFile(copy.path, folder, answers)) {
                for (const auto &[offset, bytes] :
                     StoredBytes::proof(pic->singlePicAttributes, copy.damaged.size()).ranges)
                    copy.readRanges.emplace_back(offset, bytes.size());
                folder.adoptPic(std::move(pic));
            }
            copies.push_back(std::move(copy));
        }
    }
    QStringList paths;
    for (const Copy &copy : copies)
        paths << copy.path;
    const std::map<QString, ExiftoolTags> before = exiftoolReadable(paths);

    folder.setSfDateModificationsFromTimeInterval(3600.0, false);
    SaveSettings settings;
    settings.options = NewDateOptions::cachedForRun({}, currentInstant());
    FixedSaveAnswers proceed(true, false);
    SaveRun(QList<MySingleFolder *>{&folder}, settings, proceed).run();

    const std::map<QString, ExiftoolTags> after = exiftoolReadable(paths);
    int changed = 0;
    for (const Copy &copy : copies) {
        const QByteArray now = fileBytes(copy.path);
        ASSERT_EQ(now.size(), copy.damaged.size()) << copy.path.toStdString();
        for (const qint64 offset : differingOffsets(copy.damaged, now))
            EXPECT_TRUE(insideReadRanges(offset, copy.readRanges))
                << copy.path.toStdString() << " changed at " << offset << ", outside what was read";
        changed += now != copy.damaged;
        const auto was = before.find(copy.path), is = after.find(copy.path);
        if (was == before.end())
            continue;
        ASSERT_TRUE(is != after.end()) << copy.path.toStdString() << ": exiftool reads it no more";
        EXPECT_EQ(keysOf(is->second), keysOf(was->second))
            << copy.path.toStdString() << ": exiftool reads other tags after the save";
        EXPECT_EQ(is->second.string(QStringLiteral("ExifTool:Warning")),
                  was->second.string(QStringLiteral("ExifTool:Warning")))
            << copy.path.toStdString();
    }
    EXPECT_GT(changed, int(copies.size()) / 2) << "most damaged copies still take the save";
}
