#include "support/Corpus.h"

#include "support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <optional>

using namespace orv::test;

namespace {

// Points ORV_CORPUS_DIR somewhere for one test and puts back what was there.
class CorpusDirOverride
{
public:
    explicit CorpusDirOverride(const QString &path)
    {
        if (qEnvironmentVariableIsSet(kName))
            m_previous = qgetenv(kName);
        qputenv(kName, path.toUtf8());
    }
    ~CorpusDirOverride()
    {
        if (m_previous)
            qputenv(kName, *m_previous);
        else
            qunsetenv(kName);
    }
    CorpusDirOverride(const CorpusDirOverride &) = delete;
    CorpusDirOverride &operator=(const CorpusDirOverride &) = delete;

private:
    static constexpr const char *kName = "ORV_CORPUS_DIR";
    std::optional<QByteArray> m_previous;
};

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

TEST(Corpus, SharedCorpusLiesBesideTheSources)
{
    ORV_SKIP_WITHOUT_CORPUS();
    const QStringList jpegs = corpusFiles({"jpg"});
    EXPECT_TRUE(jpegs.contains(corpusFile("exiftool-t/Canon.jpg")));
    for (const QString &path : jpegs)
        EXPECT_TRUE(path.endsWith(".jpg", Qt::CaseInsensitive)) << path.toStdString();
    EXPECT_TRUE(corpusFiles({"heic"}).contains(corpusFile("exiftool-t/QuickTime.heic")));
}

TEST(Corpus, EnvironmentChoosesTheFolderAndSuffixesMatchInAnyCase)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("phone/IMG_1.HEIC"), "a");
    writeFile(dir.filePath("camera/deep/DSC_2.heic"), "b");
    writeFile(dir.filePath("camera/DSC_2.xmp"), "c");
    const CorpusDirOverride corpus(dir.path());

    EXPECT_TRUE(corpusAvailable());
    EXPECT_EQ(corpusFiles({"heic"}), QStringList({dir.filePath("camera/deep/DSC_2.heic"),
                                                  dir.filePath("phone/IMG_1.HEIC")}));
    EXPECT_EQ(corpusFiles().size(), 3);
    EXPECT_EQ(corpusFile("camera/DSC_2.xmp"), dir.filePath("camera/DSC_2.xmp"));
}

TEST(Corpus, AbsentFolderHasNoFiles)
{
    QTemporaryDir dir;
    const CorpusDirOverride corpus(dir.filePath("missing"));
    EXPECT_FALSE(corpusAvailable());
    EXPECT_EQ(corpusFiles(), QStringList());
}

TEST(Corpus, CopyOfAReadOnlyFileIsWritable)
{
    QTemporaryDir source;
    const QString original = source.filePath("DSC_3.jpg");
    writeFile(original, "\xFF\xD8\xFF\xD9");
    QFile::setPermissions(original, QFile::ReadOwner);

    QTemporaryDir target;
    const QString copy = copyToTemporary(original, target);
    EXPECT_EQ(copy, target.filePath("DSC_3.jpg"));
    EXPECT_TRUE(QFile::permissions(copy) & QFile::WriteOwner);
    QFile file(copy);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "\xFF\xD8\xFF\xD9");
}
