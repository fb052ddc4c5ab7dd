#include "formats/InPlaceWriter.h"
#include "formats/NoReplaceRename.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>

using namespace orv;

namespace {

QByteArray contentOf(const QDir &folder, const char *name)
{
    QFile file(folder.filePath(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
}

} // namespace

TEST(NoReplaceRename, NeverReplacesAFileAndStopsWithTheWriters)
{
    QTemporaryDir dir;
    const QDir folder(dir.path());
    for (const char *name : {"a.jpg", "b.jpg"}) {
        QFile file(folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(name);
    }
    EXPECT_EQ(renameWithoutReplacing(dir.path(), QStringLiteral("a.jpg"), QStringLiteral("b.jpg")), EEXIST);
    EXPECT_EQ(contentOf(folder, "a.jpg"), "a.jpg");
    EXPECT_EQ(contentOf(folder, "b.jpg"), "b.jpg");
    EXPECT_EQ(renameFailureText(EEXIST, QStringLiteral("b.jpg")), QStringLiteral("the name b.jpg is taken"));

    InPlaceWriter::stopDeadAfterWrites(0);
    EXPECT_EQ(renameWithoutReplacing(dir.path(), QStringLiteral("a.jpg"), QStringLiteral("c.jpg")), EIO);
    InPlaceWriter::stopDeadAfterWrites(-1);
    EXPECT_EQ(contentOf(folder, "a.jpg"), "a.jpg");

    EXPECT_EQ(renameWithoutReplacing(dir.path(), QStringLiteral("a.jpg"), QStringLiteral("c.jpg")), 0);
    EXPECT_EQ(folder.entryList(QDir::Files), (QStringList{QStringLiteral("b.jpg"), QStringLiteral("c.jpg")}));
    EXPECT_EQ(renameWithoutReplacing(dir.path(), QStringLiteral("gone.jpg"), QStringLiteral("d.jpg")), ENOENT);
}
