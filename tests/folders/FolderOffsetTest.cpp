#include "folders/MySingleFolder.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

QStringList texts(const MySingleFolder &folder)
{
    const QMap<QString, QString> &m = folder.sfDateModifications;
    return {m.value(QStringLiteral("dmDirection")), m.value(QStringLiteral("dmDays")),
            m.value(QStringLiteral("dmHours")), m.value(QStringLiteral("dmMinutes")),
            m.value(QStringLiteral("dmSeconds"))};
}

} // namespace

TEST(FolderOffset, TextsAndIntervalNameTheSameOffsetBothWays)
{
    struct Case
    {
        double interval;
        bool direction;
        QStringList texts;
    };
    const Case cases[] = {
        {0.0, false, {"+", "0", "0", "0", "0"}},
        {3600.0, false, {"+", "0", "1", "0", "0"}},
        {-1800.0, true, {"-", "0", "0", "30", "0"}},
        {2 * 86400.0 + 3 * 3600.0 + 4 * 60.0 + 5.0, false, {"+", "2", "3", "4", "5"}},
        {0.0, true, {"-", "0", "0", "0", "0"}},
    };
    for (const Case &c : cases) {
        MySingleFolder folder(QStringLiteral("/tmp/trip"), false);
        folder.setSfDateModificationsFromTimeInterval(c.interval, c.direction);
        EXPECT_EQ(texts(folder), c.texts) << c.interval;
        EXPECT_EQ(folder.hasChangedDirection, c.direction);

        MySingleFolder reread(QStringLiteral("/tmp/trip"), false);
        reread.setDirection(c.texts[0], c.texts[1], c.texts[2], c.texts[3], c.texts[4]);
        EXPECT_EQ(reread.sfDateModificationsTimeInterval, c.interval) << c.interval;
        EXPECT_EQ(reread.hasChangedDirection, c.direction);
    }
}

TEST(FolderOffset, AFreshFolderAndAResetShowPlusAndFourZeros)
{
    MySingleFolder folder(QStringLiteral("/tmp/trip"), false);
    const QStringList zero{"+", "0", "0", "0", "0"};
    EXPECT_EQ(texts(folder), zero);
    folder.setDirection(QStringLiteral("-"), QStringLiteral("1"), QStringLiteral("2"),
                        QStringLiteral("3"), QStringLiteral("4"));
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, -(86400.0 + 7200.0 + 180.0 + 4.0));
    folder.setDirection(QStringLiteral("+"), QStringLiteral("0"), QStringLiteral("0"),
                        QStringLiteral("0"), QStringLiteral("0"));
    EXPECT_EQ(texts(folder), zero);
    EXPECT_EQ(folder.sfDateModificationsTimeInterval, 0.0);
    EXPECT_FALSE(folder.hasChangedDirection);
}
