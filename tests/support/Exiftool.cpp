#include "support/Exiftool.h"

#include "support/Corpus.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <limits>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <vector>

namespace orv::test {
namespace {

enum class AllowEmptyOutput { No, Yes };

QByteArray runExiftool(const QStringList &arguments,
                       AllowEmptyOutput allowEmpty = AllowEmptyOutput::No)
{
    QProcess exiftool;
    exiftool.start(QStringLiteral("exiftool"), arguments);
    if (!exiftool.waitForStarted())
        throw std::runtime_error("exiftool cannot be started (" +
                                 exiftool.errorString().toStdString() +
                                 "); install it with scripts/deps.sh "
                                 "(Debian package libimage-exiftool-perl)");
    if (!exiftool.waitForFinished(120000))
        throw std::runtime_error("exiftool did not finish: " + arguments.join(u' ').toStdString());
    const QByteArray output = exiftool.readAllStandardOutput();
    if (output.isEmpty() && (exiftool.exitCode() != 0 || allowEmpty == AllowEmptyOutput::No))
        throw std::runtime_error("exiftool answered nothing for " +
                                 arguments.join(u' ').toStdString() + ": " +
                                 exiftool.readAllStandardError().toStdString());
    return output;
}

} // namespace

QString ExiftoolTags::string(const QString &key) const
{
    return json.value(key).toVariant().toString();
}

double ExiftoolTags::number(const QString &key) const
{
    const QJsonValue value = json.value(key);
    return value.isDouble() ? value.toDouble() : std::numeric_limits<double>::quiet_NaN();
}

namespace {

QJsonArray exiftoolJson(const QStringList &paths, ExiftoolGroups groups, const QStringList &extraArguments)
{
    QStringList arguments{QStringLiteral("-j"), QStringLiteral("-n"),
                          groups == ExiftoolGroups::Family0 ? QStringLiteral("-G")
                                                            : QStringLiteral("-G1")};
    arguments << extraArguments << paths;
    const QByteArray output = runExiftool(arguments);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(output, &error);
    if (!document.isArray() || document.array().isEmpty())
        throw std::runtime_error("exiftool answered no JSON for " + paths.join(u' ').toStdString() +
                                 ": " + error.errorString().toStdString());
    return document.array();
}

} // namespace

namespace {

// The corpus is read-only and hundreds of test processes each ask exiftool about one of its
// files; starting Perl for each answer was most of the suite's time. The first asker reads the
// whole corpus in one run and keeps the answers beside the test binary, so a clean build tree
// starts afresh; a file whose size or time differs from the reading is asked about again.
class CorpusReadings
{
public:
    static std::optional<QJsonObject> find(const QString &path, ExiftoolGroups groups,
                                           const QStringList &extraArguments)
    {
        const QString root = QFileInfo(corpusLocation()).canonicalFilePath();
        const QString file = QFileInfo(path).canonicalFilePath();
        if (root.isEmpty() || !file.startsWith(root + u'/'))
            return std::nullopt;
        const QJsonObject readings = load(groups, extraArguments);
        const QJsonObject entry = readings.value(file).toObject();
        if (entry.value(QStringLiteral("stamp")).toString() != stampOf(file))
            return std::nullopt;
        QJsonObject tags = entry.value(QStringLiteral("tags")).toObject();
        tags.insert(QStringLiteral("SourceFile"), path);
        return tags;
    }

private:
    static QString stampOf(const QString &file)
    {
        const QFileInfo info(file);
        return QString::number(info.size()) + u'@' +
               QString::number(info.lastModified().toMSecsSinceEpoch());
    }

    static QJsonObject load(ExiftoolGroups groups, const QStringList &extraArguments)
    {
        static std::mutex mutex;
        static std::map<QString, QJsonObject> loaded;
        const std::lock_guard lock(mutex);
        const QString key = QString::fromLatin1(
            QCryptographicHash::hash((QString::number(int(groups)) + extraArguments.join(u'\n'))
                                         .toUtf8(),
                                     QCryptographicHash::Sha1)
                .toHex());
        const QString cacheFile =
            QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath() +
            QStringLiteral("/exiftool-corpus-readings/") + key + QStringLiteral(".json");
        if (const auto known = loaded.find(key); known != loaded.end())
            return known->second;
        QFile cached(cacheFile);
        if (cached.open(QIODevice::ReadOnly))
            return loaded[key] = QJsonDocument::fromJson(cached.readAll()).object();
        QJsonObject readings;
        const QStringList files = corpusFiles();
        for (const QJsonValue &value : exiftoolJson(files, groups, extraArguments)) {
            QJsonObject tags = value.toObject();
            const QString file =
                QFileInfo(tags.take(QStringLiteral("SourceFile")).toString()).canonicalFilePath();
            readings.insert(file, QJsonObject{{QStringLiteral("stamp"), stampOf(file)},
                                              {QStringLiteral("tags"), tags}});
        }
        QDir().mkpath(QFileInfo(cacheFile).path());
        QSaveFile out(cacheFile);
        if (out.open(QIODevice::WriteOnly)) {
            out.write(QJsonDocument(readings).toJson(QJsonDocument::Compact));
            out.commit();
        }
        return loaded[key] = readings;
    }
};

} // namespace

ExiftoolTags exiftoolTags(const QString &path, ExiftoolGroups groups,
                          const QStringList &extraArguments)
{
    if (std::optional<QJsonObject> cached = CorpusReadings::find(path, groups, extraArguments))
        return {*cached};
    return {exiftoolJson({path}, groups, extraArguments).first().toObject()};
}

std::map<QString, ExiftoolTags> exiftoolTagsOfFiles(const QStringList &paths, ExiftoolGroups groups)
{
    std::map<QString, ExiftoolTags> tags;
    for (const QJsonValue &file : exiftoolJson(paths, groups, {})) {
        const QJsonObject object = file.toObject();
        tags.emplace(object.value(QStringLiteral("SourceFile")).toString(), ExiftoolTags{object});
    }
    return tags;
}

std::map<QString, ExiftoolTags> exiftoolPrintedTagsOfFiles(const QStringList &paths, const QStringList &tags)
{
    QStringList arguments{QStringLiteral("-j"), QStringLiteral("-a"), QStringLiteral("-G1")};
    for (const QString &tag : tags)
        arguments << u'-' + tag;
    const QJsonDocument document = QJsonDocument::fromJson(runExiftool(arguments << paths));
    std::map<QString, ExiftoolTags> printed;
    for (const QJsonValue &file : document.array()) {
        const QJsonObject object = file.toObject();
        printed.emplace(QFileInfo(object.value(QStringLiteral("SourceFile")).toString()).canonicalFilePath(),
                        ExiftoolTags{object});
    }
    return printed;
}

QStringList exiftoolWarnings(const QString &path, ExiftoolCheck check)
{
    QStringList arguments{QStringLiteral("-a"), QStringLiteral("-s"), QStringLiteral("-Warning")};
    if (check == ExiftoolCheck::Validate)
        arguments << QStringLiteral("-validate");
    QStringList warnings;
    const QList<QByteArray> lines =
        runExiftool(arguments << path, AllowEmptyOutput::Yes).split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("Warning"))
            warnings << QString::fromUtf8(line.mid(line.indexOf(':') + 1).trimmed());
    }
    return warnings;
}

// The -v3 dump nests directories with "| " and gives each tag's bytes under its name:
//   | + [ExifIFD directory with 5 entries]
//   | | 4)  DateTimeOriginal = 2003:12:04 06:46:52
//   | |     - Tag 0x9003 (20 bytes, string[20]):
//   | |         0252: 32 30 30 33 3a 31 32 3a ...
std::map<QString, ExiftoolValueLocation> exiftoolValueLocations(const QString &path)
{
    static const QRegularExpression directoryLine(
        QStringLiteral(R"(^\s*((?:\| )*)\+ \[(\w+) directory)"));
    static const QRegularExpression tagLine(QStringLiteral(R"(^\s*((?:\| )*)\d+\)\s+(\w+))"));
    static const QRegularExpression lengthLine(
        QStringLiteral(R"(^[\s|]*- Tag 0x[0-9a-f]+ \((\d+) bytes)"));
    static const QRegularExpression hexLine(QStringLiteral(R"(^[\s|]*([0-9a-f]{4,}):)"));

    std::map<QString, ExiftoolValueLocation> locations;
    std::vector<QString> directories;
    QString pendingTag;
    quint32 pendingLength = 0;
    const QByteArray dump = runExiftool({QStringLiteral("-v3"), QStringLiteral("-u"), path});
    for (const QByteArray &line : dump.split('\n')) {
        const QString text = QString::fromUtf8(line);
        if (const auto directory = directoryLine.match(text); directory.hasMatch()) {
            directories.resize(std::size_t(directory.capturedLength(1) / 2));
            directories.push_back(directory.captured(2));
            pendingTag.clear();
        } else if (const auto tag = tagLine.match(text); tag.hasMatch()) {
            const auto depth = std::size_t(tag.capturedLength(1) / 2);
            pendingTag = depth > 0 && depth <= directories.size()
                             ? directories[depth - 1] + u':' + tag.captured(2)
                             : QString();
        } else if (const auto length = lengthLine.match(text); length.hasMatch()) {
            pendingLength = length.captured(1).toUInt();
        } else if (const auto hex = hexLine.match(text); hex.hasMatch() && !pendingTag.isEmpty()) {
            locations.emplace(pendingTag, ExiftoolValueLocation{hex.captured(1).toUInt(nullptr, 16),
                                                                pendingLength});
            pendingTag.clear();
        }
    }
    return locations;
}

} // namespace orv::test
