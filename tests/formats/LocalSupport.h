#pragma once

// Stand-in for the shared test support until it lands: the corpus and exiftool's reading.

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace orv::test {

struct ExiftoolTags
{
    QJsonObject json{};
    bool has(const QString &key) const { return json.contains(key); }
    QString string(const QString &key) const;
    double number(const QString &key) const;
};

// exiftool -j -n -G1 on path.
ExiftoolTags exiftoolTags(const QString &path);

QString corpusLocation();
bool corpusAvailable();
QStringList corpusFiles(const QStringList &suffixes = {});
QString corpusFile(const QString &relativePath);

} // namespace orv::test

#define ORV_SKIP_WITHOUT_CORPUS()                                                              \
    if (!::orv::test::corpusAvailable())                                                       \
    GTEST_SKIP() << "no media corpus at " << ::orv::test::corpusLocation().toStdString()
