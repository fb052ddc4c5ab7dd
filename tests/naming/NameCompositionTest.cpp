#include "core/Preferences.h"
#include "naming/NameGenerator.h"
#include "naming/RenameTemplate.h"
#include "naming/TextModifications.h"

#include <QCborValue>
#include <gtest/gtest.h>

using namespace orv;

namespace {

NameSettings settingsFor(const QString &plainText)
{
    const ParsedTemplate parsed = RenameTemplate::fromPlainText(plainText);
    EXPECT_TRUE(parsed.result) << parsed.problem.toStdString();
    NameSettings settings;
    settings.renameTemplate = parsed.result.value_or(RenameTemplate{});
    return settings;
}

NameValues valuesAt(const char *date)
{
    return {QString::fromLatin1(date), QStringLiteral("Trip 2024"), QStringLiteral("IMG_0042"), QStringLiteral("JPG"),
            QStringLiteral("Canon EOS 5D")};
}

TextModRow enabled(const char *id, QVariantMap settings)
{
    settings.insert(QStringLiteral("isEnabled"), true);
    return {QLatin1String(id), settings};
}

} // namespace

TEST(RenameTemplateText, ElementsAndOptionsRoundTrip)
{
    const QString text = QStringLiteral("{year2}{month1}{day}_{counter:4} {{x}} {text}-{text}{name}{camera}{folder}");
    const ParsedTemplate parsed = RenameTemplate::fromPlainText(text);
    ASSERT_TRUE(parsed.result) << parsed.problem.toStdString();
    EXPECT_EQ(parsed.result->option(RenameTemplate::yearOption), 0);
    EXPECT_EQ(parsed.result->option(RenameTemplate::monthOption), 0);
    EXPECT_EQ(parsed.result->option(RenameTemplate::counterOption), 3);
    EXPECT_EQ(parsed.result->uses(NameElement::AdditionalText), 2);
    EXPECT_EQ(parsed.result->stringParts.at(3), TemplatePart::text(QStringLiteral("_")));
    EXPECT_EQ(parsed.result->stringParts.at(4).textId, QStringLiteral("7.tif"));
    EXPECT_EQ(parsed.result->plainText(), text);
    // The dictionary and the editor's pasteboard carry the same template.
    EXPECT_EQ(RenameTemplate::fromDictionary(parsed.result->toDictionary()), *parsed.result);
    EXPECT_EQ(RenameTemplate::partsFromPasteboard(RenameTemplate::partsToPasteboard(parsed.result->stringParts)),
              parsed.result->stringParts);
}

TEST(RenameTemplateText, RefusesWhatIsNoTemplate)
{
    for (const char *bad : {"", "{year", "year}", "{yaer}", "{day}{day}", "{text}{text}{text}{text}", "{counter:0}",
                            "{counter:x}", "{day:2}"})
        EXPECT_FALSE(RenameTemplate::fromPlainText(QString::fromLatin1(bad)).result) << bad;
}

TEST(RenameTemplateEditor, StatusAvailabilityAndAddOns)
{
    EXPECT_EQ(settingsFor(QStringLiteral("holiday")).renameTemplate.status(), RenameTemplate::Status::NeverVaries);
    EXPECT_EQ(settingsFor(QStringLiteral("{day} {text}")).renameTemplate.status(), RenameTemplate::Status::MayCollide);
    EXPECT_EQ(settingsFor(QStringLiteral("{day}{name}")).renameTemplate.status(), RenameTemplate::Status::Fine);

    const RenameTemplate three = settingsFor(QStringLiteral("{text}{year}{text}{text}")).renameTemplate;
    EXPECT_FALSE(three.availableElements().contains(NameElement::AdditionalText));
    EXPECT_FALSE(three.availableElements().contains(NameElement::Year));
    EXPECT_EQ(three.availableElements().first(), NameElement::Month);
    EXPECT_EQ(three.currentlyUsedAddOns(), 4);
    EXPECT_TRUE(three.availabilityFlags().value(QStringLiteral("is3AdditionalTextAvailable")).toBool());
    EXPECT_FALSE(three.availabilityFlags().value(QStringLiteral("isAdditionalTextAvailable")).toBool());
    EXPECT_EQ(settingsFor(QStringLiteral("{day}")).renameTemplate.currentlyUsedAddOns(), 0);
}

TEST(RenameTemplateEditor, RegisteredDefaultsReadAsTheFiveTemplates)
{
    Preferences prefs{QString{}};
    const QList<RenameTemplate> templates =
        RenameTemplate::listFromArchive(prefs.archiveForKey(QStringLiteral("renameTemplates_7")));
    ASSERT_EQ(templates.size(), 5);
    EXPECT_EQ(templates[0].plainText(), QStringLiteral("P{month1}{day}{counter:4}"));
    EXPECT_EQ(templates[1].plainText(), QStringLiteral("DSC{counter:5}"));
    EXPECT_EQ(templates[4].plainText(), QStringLiteral("{year}_{month}_{day}_{counter:3}"));
}

TEST(NameGeneratorTest, DateElementsAndTheirOptions)
{
    const NameValues values = valuesAt("2024:11:05 09:08:07");
    EXPECT_EQ(NameGenerator::baseName(values, 1, settingsFor(QStringLiteral("{year2}"))), QStringLiteral("24"));
    EXPECT_EQ(NameGenerator::baseName(values, 1, settingsFor(QStringLiteral("{month1}"))), QStringLiteral("B"));
    EXPECT_EQ(NameGenerator::baseName(valuesAt("2024:09:05 09:08:07"), 1, settingsFor(QStringLiteral("{month1}"))),
              QStringLiteral("9"));
    EXPECT_EQ(NameGenerator::baseName(values, 7,
                                      settingsFor(QStringLiteral("{year}-{month}-{day} {hour}-{minute}-{second} "
                                                                 "{camera} {counter:3} {folder} {name}"))),
              QStringLiteral("2024-11-05 09-08-07 Canon EOS 5D 007 Trip 2024 IMG_0042"));
    EXPECT_EQ(NameGenerator::baseName({}, 1, settingsFor(QStringLiteral("{day}"))), QString()) << "no date, no name";
}

TEST(NameGeneratorTest, TextsEmptyNamesAndFrontDots)
{
    NameSettings settings = settingsFor(QStringLiteral("{text}"));
    EXPECT_EQ(NameGenerator::baseName(valuesAt("2024:11:05 09:08:07"), 1, settings), QStringLiteral("_"));
    settings = settingsFor(QStringLiteral("{text}/{text}"));
    settings.additionalTexts = {QStringLiteral("a/b"), QStringLiteral("c")};
    // A text never brings a folder separator into a name; the template's own literal is refused
    // by the run's check.
    EXPECT_EQ(NameGenerator::baseName(valuesAt("2024:11:05 09:08:07"), 1, settings), QStringLiteral("a_b/c"));

    settings = settingsFor(QStringLiteral("{name}"));
    settings.frontDotHandlingMode = 1;
    NameValues dotted = valuesAt("2024:11:05 09:08:07");
    dotted.sourceName = QStringLiteral("...ab");
    EXPECT_EQ(NameGenerator::baseName(dotted, 1, settings), QStringLiteral("ab"));
    dotted.sourceName = QStringLiteral(".a");
    EXPECT_EQ(NameGenerator::baseName(dotted, 1, settings), QStringLiteral(".a")) << "two characters stay";
    settings.frontDotHandlingMode = 2;
    EXPECT_TRUE(NameGenerator::hasFrontDot(NameGenerator::baseName(dotted, 1, settings)));
    EXPECT_EQ(NameGenerator::correctedExtension(QStringLiteral("Jpg"), 1), QStringLiteral("JPG"));
    EXPECT_EQ(NameGenerator::correctedExtension(QStringLiteral("Jpg"), 2), QStringLiteral("jpg"));
    EXPECT_EQ(NameGenerator::numbered(QStringLiteral("n"), 0), QStringLiteral("n"));
    EXPECT_EQ(NameGenerator::numbered(QStringLiteral("n"), 3), QStringLiteral("n 3"));
}

TEST(TextModificationsTest, EachRowOnNamesAsReadersCountThem)
{
    const auto apply = [](const char *text, const TextModRow &row) {
        return TextModifications::modifiedStringFromString(QString::fromUtf8(text), row).toStdString();
    };
    const auto charCount = [](int type, int direction, int value) {
        return enabled("CharCount", {{QStringLiteral("type"), type}, {QStringLiteral("direction"), direction},
                                     {QStringLiteral("value"), value}});
    };
    EXPECT_EQ(apply("IMG_0042", charCount(0, 0, 3)), "IMG");
    EXPECT_EQ(apply("IMG_0042", charCount(0, 1, 4)), "0042");
    EXPECT_EQ(apply("IMG_0042", charCount(1, 0, 4)), "0042");
    EXPECT_EQ(apply("IMG_0042", charCount(1, 1, 5)), "IMG");
    EXPECT_EQ(apply("A", charCount(1, 0, 1)), "A");
    EXPECT_EQ(apply("IMG", charCount(1, 0, 3)), "IMG") << "a count never empties a name";
    EXPECT_EQ(apply("", charCount(0, 0, 1)), "");
    // A family emoji is one character; so is an e with its combining accent.
    EXPECT_EQ(apply("\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7x", charCount(1, 0, 1)),
              "x");
    EXPECT_EQ(apply("e\xCC\x81tude", charCount(0, 0, 1)), "e\xCC\x81");

    const auto upTo = [](int type, int direction, int value, const char *needle) {
        return enabled("UpToString", {{QStringLiteral("type"), type}, {QStringLiteral("direction"), direction},
                                      {QStringLiteral("value"), value}, {QStringLiteral("value2"), QString::fromLatin1(needle)}});
    };
    EXPECT_EQ(apply("a_b_c_d", upTo(0, 0, 2, "_")), "a_b");
    EXPECT_EQ(apply("a_b_c_d", upTo(1, 1, 1, "_")), "d");
    EXPECT_EQ(apply("a_b_c_d", upTo(1, 0, 1, "_")), "b_c_d");
    EXPECT_EQ(apply("a_b", upTo(0, 0, 3, "_")), "a_b");

    const auto replace = [](const char *from, const char *to, int direction, int limit) {
        return enabled("ReplaceWith", {{QStringLiteral("value"), QString::fromLatin1(from)},
                                       {QStringLiteral("value2"), QString::fromLatin1(to)},
                                       {QStringLiteral("direction"), direction}, {QStringLiteral("value3"), limit}});
    };
    EXPECT_EQ(apply("a-b-c-d", replace("-", "+", 0, 0)), "a+b+c+d");
    EXPECT_EQ(apply("a-b-c-d", replace("-", "--", 0, 2)), "a--b--c-d");
    EXPECT_EQ(apply("a-b-c-d", replace("-", "", 1, 1)), "a-b-cd");
    EXPECT_EQ(apply("a-b", replace("", "x", 0, 0)), "a-b");

    const auto changeCase = [](int value, int position, int direction) {
        return enabled("ChangeCase", {{QStringLiteral("value"), value}, {QStringLiteral("position"), position},
                                      {QStringLiteral("direction"), direction}});
    };
    EXPECT_EQ(apply("img_0042 new york", changeCase(1, 0, 0)), "IMG_0042 NEW YORK");
    EXPECT_EQ(apply("IMG_0042", changeCase(2, 3, 0)), "img_0042");
    EXPECT_EQ(apply("new YORK", changeCase(0, 0, 0)), "New York");
    EXPECT_EQ(apply("abc", changeCase(1, 1, 1)), "abC");
}

TEST(TextModificationsTest, ListsApplyInOrderAndDisabledRowsDoNothing)
{
    const QList<TextModRow> defaults = TextModifications::defaultSource();
    ASSERT_EQ(defaults.size(), 4);
    EXPECT_EQ(TextModifications::modifiedStringFromString(QStringLiteral("IMG_0042"), defaults), QStringLiteral("IMG_0042"));
    const QList<TextModRow> rows = {
        enabled("ReplaceWith", {{QStringLiteral("value"), QStringLiteral("IMG_")}, {QStringLiteral("value2"), QStringLiteral("photo ")}}),
        enabled("ChangeCase", {{QStringLiteral("value"), 0}})};
    EXPECT_EQ(TextModifications::modifiedStringFromString(QStringLiteral("IMG_0042"), rows), QStringLiteral("Photo 0042"));
    EXPECT_EQ(TextModRow::fromDictionary(rows[0].toDictionary()).defaults, rows[0].defaults);
}
