#include "LocalSupport.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

#include <cmath>
#include <stdexcept>

namespace orv::test {

QString ExiftoolTags::string(const QString &key) const
{
    const QJsonValue value = json.value(key);
    return value.isDouble() ? QString::number(value.toDouble(), 'g', 17) : value.toVariant().toString();
}

double ExiftoolTags::number(const QString &key) const
{
    const QJsonValue value = json.value(key);
    return value.isDouble() ? value.toDouble() : std::nan("");
}

ExiftoolTags exiftoolTags(const QString &path)
{
    QProcess process;
    process.start(QStringLiteral("exiftool"), {"-j", "-n", "-G1", path});
    process.waitForFinished(60000);
    const QJsonArray array = QJsonDocument::fromJson(process.readAllStandardOutput()).array();
    if (array.isEmpty())
        throw std::runtime_error("exiftool answered no JSON for " + path.toStdString());
    return {array.first().toObject()};
}

QString corpusLocation()
{
    const QString fromEnvironment = qEnvironmentVariable("ORV_CORPUS_DIR");
    return fromEnvironment.isEmpty() ? QStringLiteral(ORV_SOURCE_DIR "/../shared/corpus")
                                     : fromEnvironment;
}

bool corpusAvailable() { return QFileInfo(corpusLocation()).isDir(); }

QStringList corpusFiles(const QStringList &suffixes)
{
    QStringList files;
    QDirIterator it(corpusLocation(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (suffixes.isEmpty() || suffixes.contains(QFileInfo(path).suffix().toLower()))
            files.append(QFileInfo(path).absoluteFilePath());
    }
    files.sort();
    return files;
}

QString corpusFile(const QString &relativePath)
{
    return QDir(corpusLocation()).absoluteFilePath(relativePath);
}

} // namespace orv::test
