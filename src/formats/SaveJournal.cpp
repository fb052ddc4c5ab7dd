#include "formats/SaveJournal.h"

#include "formats/ByteSource.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <algorithm>
#include <map>
#include <fcntl.h>
#include <unistd.h>

namespace orv {

namespace {

const QString pathKey = QStringLiteral("path");
const QString fileKey = QStringLiteral("file");
const QString doneKey = QStringLiteral("done");
const QString endKey = QStringLiteral("end");

QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

QByteArray fromHex(const QJsonValue &value)
{
    return QByteArray::fromHex(value.toString().toLatin1());
}

bool overlaps(qint64 offset, qint64 length, const std::vector<ByteEdit> &edits)
{
    return std::any_of(edits.begin(), edits.end(), [&](const ByteEdit &edit) {
        return offset < edit.offset + edit.bytes.size() && edit.offset < offset + length;
    });
}

// One file's record, read back.
struct Entry
{
    QString path;
    ByteProof proof;
    std::vector<ByteEdit> edits;
    std::optional<qint64> modifiedMs;
    bool done = false;
};

struct ReadJournal
{
    QString kind;
    std::vector<Entry> entries;
    bool ended = false;
    bool exists = false;
};

ReadJournal readJournal(const QString &path)
{
    ReadJournal journal;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return journal;
    journal.exists = true;
    std::map<qint64, std::size_t> byNumber;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        // A line torn by a kill was never synced, so its file was never touched.
        if (!line.endsWith('\n'))
            break;
        const QJsonObject record = QJsonDocument::fromJson(line).object();
        if (record.contains(QStringLiteral("run"))) {
            journal.kind = record.value(QStringLiteral("run")).toString();
        } else if (record.contains(fileKey)) {
            Entry entry;
            entry.path = record.value(pathKey).toString();
            entry.proof.length = qint64(record.value(QStringLiteral("length")).toDouble(-1));
            if (record.contains(QStringLiteral("modified")))
                entry.modifiedMs = qint64(record.value(QStringLiteral("modified")).toDouble());
            for (const QJsonValue range : record.value(QStringLiteral("proof")).toArray())
                entry.proof.ranges.emplace_back(qint64(range[0].toDouble()), fromHex(range[1]));
            for (const QJsonValue patch : record.value(QStringLiteral("patches")).toArray())
                entry.edits.push_back(
                    {qint64(patch[0].toDouble()), fromHex(patch[2]), fromHex(patch[1])});
            byNumber[qint64(record.value(fileKey).toDouble())] = journal.entries.size();
            journal.entries.push_back(std::move(entry));
        } else if (record.contains(doneKey)) {
            const auto found = byNumber.find(qint64(record.value(doneKey).toDouble()));
            if (found != byNumber.end())
                journal.entries[found->second].done = true;
        } else if (record.contains(endKey)) {
            journal.ended = true;
        }
    }
    return journal;
}

enum class Bytes { Old, New, Neither };

// How a file stands against its record: every patch old, new or neither; the rest as proven.
struct Examined
{
    std::vector<Bytes> patches;
    QString problem; // empty when the proof holds
};

Examined examine(const Entry &entry)
{
    Examined result;
    const FileByteSource file(entry.path);
    if (!file.isRegularFile() && QFileInfo::exists(entry.path))
        result.problem = QStringLiteral("not a regular file");
    else if (!file.isOpen())
        result.problem = QStringLiteral("cannot be opened");
    else if (file.length() != entry.proof.length)
        result.problem = QStringLiteral("its length changed since the save");
    else if (!std::all_of(entry.proof.ranges.begin(), entry.proof.ranges.end(),
                          [&](const auto &range) {
                              return file.read(range.first, range.second.size()) == range.second;
                          }))
        result.problem = QStringLiteral("its bytes changed since the save");
    if (!result.problem.isEmpty())
        return result;
    for (const ByteEdit &edit : entry.edits) {
        const QByteArray now = file.read(edit.offset, edit.bytes.size());
        result.patches.push_back(now == edit.bytes      ? Bytes::New
                                 : now == edit.previous ? Bytes::Old
                                                        : Bytes::Neither);
    }
    return result;
}

bool allAre(const Examined &examined, Bytes state)
{
    return std::all_of(examined.patches.begin(), examined.patches.end(),
                       [state](Bytes b) { return b == state; });
}

// Writes the edits whose bytes are not yet there, in one pass, to the disk.
bool writeEdits(const Entry &entry, std::vector<ByteEdit> edits, SaveJournal *journal,
                std::optional<qint64> modifiedMs)
{
    const std::unique_ptr<InPlaceWriter> writer = FileWriteAccess::disk().openForUpdate(entry.path);
    if (!writer)
        return false;
    if (journal)
        writer->recordIn(*journal, entry.path, entry.proof);
    return writer->apply(std::move(edits)) &&
           (!modifiedMs ||
            writer->setModificationDate(Instant(double(*modifiedMs) / 1000.0))) &&
           writer->synchronize();
}

void markRecovered(const QString &path)
{
    QFile file(path);
    if (!InPlaceWriter::mayWrite() || !file.open(QIODevice::Append))
        return;
    file.write(QJsonDocument(QJsonObject{{endKey, true}, {QStringLiteral("recovered"), true}})
                   .toJson(QJsonDocument::Compact) +
               '\n');
    file.flush();
    ::fsync(file.handle());
}

} // namespace

QString SaveJournal::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/saveJournal.jsonl");
}

SaveJournal::SaveJournal(QString path, RunKind kind) : m_path(std::move(path)), m_kind(kind) {}

SaveJournal::~SaveJournal() = default;

bool SaveJournal::append(const QByteArray &line, bool sync)
{
    int descriptor = -1;
    {
        const QMutexLocker lock(&m_mutex);
        if (m_broken)
            return false;
        if (!m_file.isOpen()) {
            QDir().mkpath(QFileInfo(m_path).absolutePath());
            m_file.setFileName(m_path);
            const QByteArray header =
                QJsonDocument(QJsonObject{{QStringLiteral("run"), m_kind == RunKind::Save
                                                                      ? QStringLiteral("save")
                                                                      : QStringLiteral("revert")},
                                          {QStringLiteral("at"),
                                           QDateTime::currentDateTimeUtc().toString(Qt::ISODate)}})
                    .toJson(QJsonDocument::Compact) +
                '\n';
            if (!InPlaceWriter::mayWrite() ||
                !m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered) ||
                m_file.write(header) != header.size()) {
                m_broken = true;
                return false;
            }
            // A journal made just now must be found after a crash: its folder entry is synced.
            const int folder =
                ::open(QFile::encodeName(QFileInfo(m_path).absolutePath()).constData(),
                       O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            if (folder >= 0) {
                ::fsync(folder);
                ::close(folder);
            }
        }
        if (!InPlaceWriter::mayWrite() || m_file.write(line) != line.size()) {
            m_broken = true;
            return false;
        }
        descriptor = m_file.handle();
    }
    // Records written before reach the disk with this one; threads waiting here share syncs.
    return !sync || ::fdatasync(descriptor) == 0;
}

std::optional<qint64> SaveJournal::beginFile(const QString &path, const ByteProof &proof,
                                             const std::vector<ByteEdit> &edits)
{
    QJsonArray proven;
    for (const auto &[offset, bytes] : proof.ranges) {
        if (!bytes.isEmpty() && !overlaps(offset, bytes.size(), edits))
            proven.append(QJsonArray{double(offset), hex(bytes)});
    }
    QJsonArray patches;
    for (const ByteEdit &edit : edits)
        patches.append(QJsonArray{double(edit.offset), hex(edit.previous), hex(edit.bytes)});
    qint64 entry = 0;
    {
        const QMutexLocker lock(&m_mutex);
        entry = ++m_entries;
    }
    QJsonObject record{{fileKey, double(entry)},
                       {pathKey, QFileInfo(path).absoluteFilePath()},
                       {QStringLiteral("length"), double(proof.length)},
                       {QStringLiteral("proof"), proven},
                       {QStringLiteral("patches"), patches}};
    const QFileInfo info(path);
    if (info.exists())
        record.insert(QStringLiteral("modified"),
                      double(info.lastModified().toMSecsSinceEpoch()));
    if (!append(QJsonDocument(record).toJson(QJsonDocument::Compact) + '\n', true))
        return std::nullopt;
    return entry;
}

void SaveJournal::fileDone(qint64 entry)
{
    // Lost with a kill, a mark only makes the next start find the file already new.
    append(QJsonDocument(QJsonObject{{doneKey, double(entry)}}).toJson(QJsonDocument::Compact) +
               '\n',
           false);
}

void SaveJournal::endRun()
{
    bool wroteAFile = false;
    {
        const QMutexLocker lock(&m_mutex);
        wroteAFile = m_file.isOpen();
    }
    if (wroteAFile)
        append(QJsonDocument(QJsonObject{{endKey, true}}).toJson(QJsonDocument::Compact) + '\n',
               true);
}

SaveJournal::Outcome SaveJournal::recover(const QString &journalPath)
{
    Outcome outcome;
    const ReadJournal journal = readJournal(journalPath);
    if (!journal.exists || journal.ended)
        return outcome;
    outcome.hadRun = true;
    for (const Entry &entry : journal.entries) {
        if (entry.done)
            continue;
        const Examined examined = examine(entry);
        if (!examined.problem.isEmpty()) {
            outcome.left.emplace_back(entry.path, examined.problem);
            continue;
        }
        if (std::find(examined.patches.begin(), examined.patches.end(), Bytes::Neither) !=
            examined.patches.end()) {
            outcome.left.emplace_back(entry.path,
                                      QStringLiteral("its saved bytes changed since the save"));
            continue;
        }
        std::vector<ByteEdit> missing;
        for (std::size_t i = 0; i < entry.edits.size(); ++i) {
            if (examined.patches[i] == Bytes::Old)
                missing.push_back(entry.edits[i]);
        }
        if (missing.empty() || writeEdits(entry, missing, nullptr, std::nullopt))
            outcome.completed.append(entry.path);
        else
            outcome.left.emplace_back(entry.path, QStringLiteral("cannot be written"));
    }
    markRecovered(journalPath);
    return outcome;
}

SaveJournal::Outcome SaveJournal::revert(const QString &journalPath)
{
    Outcome outcome = recover(journalPath);
    const ReadJournal journal = readJournal(journalPath);
    if (!journal.exists || journal.entries.empty())
        return outcome;
    outcome.hadRun = true;
    const QStringList unfinished = [&] {
        QStringList paths;
        for (const auto &[path, reason] : outcome.left)
            paths.append(path);
        return paths;
    }();
    SaveJournal undo(journalPath,
                     journal.kind == QLatin1String("revert") ? RunKind::Save : RunKind::Revert);
    // Last first: a file written twice in a run (dates, then the XMP sync) is undone step by step.
    for (auto it = journal.entries.rbegin(); it != journal.entries.rend(); ++it) {
        const Entry &entry = *it;
        if (unfinished.contains(entry.path))
            continue;
        const Examined examined = examine(entry);
        if (!examined.problem.isEmpty()) {
            outcome.left.emplace_back(entry.path, examined.problem);
            continue;
        }
        if (!allAre(examined, Bytes::New)) {
            outcome.left.emplace_back(entry.path,
                                      QStringLiteral("its saved bytes changed since the save"));
            continue;
        }
        std::vector<ByteEdit> back;
        for (const ByteEdit &edit : entry.edits)
            back.push_back({edit.offset, edit.previous, edit.bytes});
        if (writeEdits(entry, std::move(back), &undo, entry.modifiedMs))
            outcome.reverted.append(entry.path);
        else
            outcome.left.emplace_back(entry.path, QStringLiteral("cannot be written"));
    }
    undo.endRun();
    return outcome;
}

} // namespace orv
