// The scan's hand-written JSON against QJsonDocument's compact form of the same values: the
// output of scan --json is a contract, and it must stay byte for byte what a document gave.

#include "cli/CompactJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace orv;

namespace {

TEST(CompactJson, WritesWhatQJsonDocumentWritesForTheSameValues)
{
    const QString texts[] = {
        "",
        "plain",
        "quote \" backslash \\ slash /",
        QString::fromLatin1("controls \b\f\n\r\t\x01\x1f\x7f"),
        QString::fromUtf8("Ünïcödé € ∑ 日本"),
        QString::fromUtf8("outside the basic plane 😀"),
        QString(QChar(0xD800)) + "lone high",
        "lone low " + QString(QChar(0xDC00)),
    };
    const double numbers[] = {0.0,
                              -0.0,
                              -1.0,
                              48.8566,
                              1.2333333333333334,
                              1e-7,
                              1e21,
                              9007199254740992.0,
                              9007199254740994.0,
                              -1e300,
                              std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity()};
    QByteArray everyByte;
    for (int c = 0; c < 256; ++c)
        everyByte += char(c);

    CompactJson::Object ours;
    QJsonObject theirs;
    // Inserted out of order, with keys whose order differs from their numbers'.
    for (int i = int(std::size(texts)) - 1; i >= 0; --i) {
        const QByteArray key = "text" + QByteArray::number(i);
        ours.insert(key, texts[i]);
        theirs.insert(QLatin1String(key), texts[i]);
    }
    for (int i = int(std::size(numbers)) - 1; i >= 0; --i) {
        const QByteArray key = "number" + QByteArray::number(i);
        ours.insert(key, numbers[i]);
        theirs.insert(QLatin1String(key), numbers[i]);
    }
    ours.insertLatin1("bytes", everyByte);
    theirs.insert(QLatin1String("bytes"), QString::fromLatin1(everyByte));
    ours.insert("Upper", qint64(-9007199254740993));
    theirs.insert(QLatin1String("Upper"), qint64(-9007199254740993));
    ours.insert("_int", 42);
    theirs.insert(QLatin1String("_int"), 42);
    ours.insert("yes", true);
    theirs.insert(QLatin1String("yes"), true);
    ours.insert("nothing", nullptr);
    theirs.insert(QLatin1String("nothing"), QJsonValue::Null);
    ours.insert("list", QStringList{"xmp", texts[3]});
    theirs.insert(QLatin1String("list"), QJsonArray::fromStringList({"xmp", texts[3]}));

    CompactJson::Object inner;
    inner.insert("b", false);
    inner.insert("a", 1.5);
    std::vector<CompactJson::Object> objects(2);
    objects[1].insert("z", texts[4]);
    ours.insert("inner", inner);
    ours.insert("objects", objects);
    ours.insert("none", std::vector<CompactJson::Object>{});
    theirs.insert(QLatin1String("inner"), QJsonObject{{"b", false}, {"a", 1.5}});
    theirs.insert(QLatin1String("objects"), QJsonArray{QJsonObject{}, QJsonObject{{"z", texts[4]}}});
    theirs.insert(QLatin1String("none"), QJsonArray{});

    std::string written = "[";
    ours.writeTo(written);
    EXPECT_EQ(QByteArray::fromStdString(written),
              "[" + QJsonDocument(theirs).toJson(QJsonDocument::Compact));
}

} // namespace
