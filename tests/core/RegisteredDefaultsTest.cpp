#include "core/RegisteredDefaults.h"

#include "core/Preferences.h"

#include <QCborArray>
#include <QCborMap>
#include <gtest/gtest.h>

namespace orv {
namespace {

QSet<QString> keysOfType(const QVariantHash &table, QMetaType::Type type)
{
    QSet<QString> keys;
    for (auto it = table.cbegin(); it != table.cend(); ++it) {
        if (it->typeId() == type)
            keys.insert(it.key());
    }
    return keys;
}

TEST(RegisteredDefaults, EveryKeyIsRegisteredInItsForm)
{
    const QVariantHash table = registeredDefaults();
    EXPECT_EQ(table.size(), 198);
    EXPECT_EQ(keysOfType(table, QMetaType::Bool), QSet<QString>{"fixFinderDateOnImport"});
    EXPECT_EQ(
        keysOfType(table, QMetaType::Double),
        (QSet<QString>{"mainWindowDividerPos_STD", "mainWindowDividerPos_FUS",
                       "mainWindowDividerPos9_STD", "mainWindowDividerPos9_FUS",
                       "vqsThumbSizeTargetValueSelection", "vqsThumbSizeTargetValueSelection_STD",
                       "vqsThumbSizeTargetValueFSP", "vqsThumbSizeTargetValueFSP_STD"}));
    EXPECT_EQ(keysOfType(table, QMetaType::QByteArray),
              (QSet<QString>{"specValues_7", "specValues2", "folderColors_7", "advancedBookmarks_7",
                             "renameTemplates_7", "filterTemplates"}));

    const QSet<QString> textKeys{"additionalText", "additionalText2", "additionalText3",
                                 "tioFilterValues", "stateTraySubfolderPath"};
    const QSet<QString> decimalKeys = keysOfType(table, QMetaType::QString) - textKeys;
    EXPECT_EQ(decimalKeys.size(), 198 - 1 - 8 - 6 - 5);
    for (const QString &key : decimalKeys) {
        bool isDecimal = false;
        table.value(key).toString().toInt(&isDecimal);
        EXPECT_TRUE(isDecimal) << key.toStdString();
    }
}

TEST(RegisteredDefaults, EveryDefaultReadsThroughAnEmptyStore)
{
    const Preferences prefs{QString()};
    const QVariantHash table = registeredDefaults();
    for (auto it = table.cbegin(); it != table.cend(); ++it)
        EXPECT_EQ(prefs.valueForKey(it.key()), it.value()) << it.key().toStdString();
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("dateComparisonThresold")), 3);
}

TEST(RegisteredDefaults, CameraChoicesColoursAndEmptyLists)
{
    const Preferences prefs{QString()};
    const QCborArray choices = prefs.archiveForKey(QStringLiteral("specValues_7")).toArray();
    ASSERT_EQ(choices.size(), 3);
    EXPECT_EQ(choices[0].toMap(),
              (QCborMap{{QStringLiteral("cam"), QStringLiteral("Apple iPhone 4S")},
                        {QStringLiteral("extension"), QStringLiteral("JPG")},
                        {QStringLiteral("tag"), QStringLiteral("2")}}));
    EXPECT_EQ(choices[2]["cam"].toString(), QStringLiteral("Olympus Imaging Corp. XZ-1"));

    const QCborArray colors = prefs.archiveForKey(QStringLiteral("folderColors_7")).toArray();
    ASSERT_EQ(colors.size(), 8);
    EXPECT_EQ(colors[0].toArray(), (QCborArray{0.83, 0.193, 0.232, 1.0}));
    EXPECT_EQ(colors[7].toArray(), (QCborArray{0.15, 0.51, 0.54, 1.0}));

    for (const char *key : {"specValues2", "advancedBookmarks_7"})
        EXPECT_EQ(prefs.archiveForKey(QString::fromLatin1(key)), QCborArray()) << key;
}

// A template as text: literals as themselves, elements by their number, joined by "|".
QString templateParts(const QCborValue &renameTemplate)
{
    QStringList parts;
    for (const QCborValue &part : renameTemplate["stringParts"].toArray()) {
        const QString id = part["textId"].toString();
        parts << (part["kind"].toString() == QLatin1String("graphic") ? id.chopped(4) : id);
    }
    return parts.join(QLatin1Char('|'));
}

TEST(RegisteredDefaults, FiveRenameTemplates)
{
    const Preferences prefs{QString()};
    const QCborArray templates = prefs.archiveForKey(QStringLiteral("renameTemplates_7")).toArray();
    ASSERT_EQ(templates.size(), 5);
    const char *const parts[] = {"P|2|3|7", "DSC|7", "IMG|_|7", "9|_|7", "1|_|2|_|3|_|7"};
    const int options[][3] = {{1, 0, 3}, {1, 1, 4}, {1, 1, 3}, {1, 1, 2}, {1, 1, 2}};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(templateParts(templates[i]), QString::fromLatin1(parts[i])) << i;
        EXPECT_EQ(templates[i]["options"].toMap(),
                  (QCborMap{{QStringLiteral("1.tif"), options[i][0]},
                            {QStringLiteral("2.tif"), options[i][1]},
                            {QStringLiteral("7.tif"), options[i][2]}}))
            << i;
    }
}

TEST(RegisteredDefaults, FourFilterTemplatesEachAnAndOfOnePredicate)
{
    const Preferences prefs{QString()};
    const QCborArray filters = prefs.archiveForKey(QStringLiteral("filterTemplates")).toArray();
    ASSERT_EQ(filters.size(), 4);
    const char *const predicates[] = {"filter_rating !=[cd] -1", "filter_rating ==[cd] 1",
                                      "filter_miscState ==[cd] 6", "filter_mediaType ==[cd] 1"};
    for (int i = 0; i < 4; ++i) {
        const QCborValue filter = filters[i];
        EXPECT_EQ(filter["key"].toString(), QString::number(i + 1));
        EXPECT_FALSE(filter["name"].toString().isEmpty());
        EXPECT_EQ(filter["predicate"]["compound"].toString(), QStringLiteral("AND"));
        EXPECT_EQ(filter["predicate"]["subpredicates"].toArray(),
                  QCborArray{QString::fromLatin1(predicates[i])});
    }
}

} // namespace
} // namespace orv
