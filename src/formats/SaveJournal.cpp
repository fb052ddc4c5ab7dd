#include "formats/SaveJournal.h"

#include "formats/NoReplaceRename.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <set>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <sys/sysmacros.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace orv {

namespace {

const QString pathKey = QStringLiteral("path");
const QString fileKey = QStringLiteral("file");
const QString keptKey = QStringLiteral("kept");
const QString toolKey = QStringLiteral("tool");
const QString doneKey = QStringLiteral("done");
const QString skippedKey = QStringLiteral("skipped");
const QString undoneKey = QStringLiteral("undone");
const QString endKey = QStringLiteral("end");
const QString renameKey = QStringLiteral("rename");

QByteArray encoded(const QString &path)
{
    return QFile::encodeName(path);
}

QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

QByteArray fromHex(const QJsonValue &value)
{
    return QByteArray::fromHex(value.toString().toLatin1());
}

QJsonArray timeJson(const FileTime &time)
{
    return {double(time.seconds), double(time.nanoseconds)};
}

FileTime timeFrom(const QJsonValue &value)
{
    return {qint64(value[0].toDouble()), qint64(value[1].toDouble())};
}

quint32 checksum(const QByteArray &payload)
{
    return quint32(crc32(0, reinterpret_cast<const Bytef *>(payload.constData()), uInt(payload.size())));
}

// One record: its checksum, a space, the record as compact JSON and a line end.
QByteArray framed(const QJsonObject &record)
{
    const QByteArray payload = QJsonDocument(record).toJson(QJsonDocument::Compact);
    return QByteArray::number(checksum(payload), 16).rightJustified(8, '0') + ' ' + payload + '\n';
}

std::optional<QJsonObject> unframed(const QByteArray &line)
{
    if (line.size() < 10 || line[8] != ' ')
        return std::nullopt;
    bool ok = false;
    const quint32 stored = line.left(8).toUInt(&ok, 16);
    const QByteArray payload = line.mid(9);
    if (!ok || stored != checksum(payload))
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(payload);
    if (!document.isObject())
        return std::nullopt;
    return document.object();
}

QString causeOf(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return QStringLiteral("no space left on the device");
    case EACCES:
    case EPERM:
        return QStringLiteral("permission denied");
    case EROFS:
        return QStringLiteral("the file system is read-only");
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}

bool writeAll(int fd, const QByteArray &bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                errno = ENOSPC;
            return false;
        }
        done += n;
    }
    return true;
}

void syncFolder(const QString &folder)
{
    const int fd = ::open(encoded(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

struct Identity
{
    quint64 device = 0;
    quint64 inode = 0;
    FileTime modified;
    bool exists = false;
};

Identity identityOf(const QString &path)
{
    struct statx entry{};
    if (::statx(AT_FDCWD, encoded(path).constData(), 0, STATX_INO | STATX_MTIME, &entry) != 0)
        return {};
    return {makedev(entry.stx_dev_major, entry.stx_dev_minor), entry.stx_ino,
            {entry.stx_mtime.tv_sec, entry.stx_mtime.tv_nsec}, true};
}

QByteArray contentHash(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file))
        return {};
    return hash.result();
}

bool overlaps(qint64 offset, qint64 length, const std::vector<ByteEdit> &edits)
{
    return std::any_of(edits.begin(), edits.end(), [&](const ByteEdit &edit) {
        return offset < edit.offset + edit.bytes.size() && edit.offset < offset + length;
    });
}

// The bytes around a file's patches, read in one call where they lie close together, as they do
// in a file's metadata; empty where they do not.
struct Span
{
    qint64 first = 0;
    QByteArray bytes;
};

// The file as proven and every patch holding its old bytes.
std::optional<Span> provenBeforeWriting(const InPlaceWriter &writer, const PlannedWrite &write)
{
    if (writer.length() != write.proof.length)
        return std::nullopt;
    std::vector<std::pair<qint64, QByteArray>> expected = write.proof.ranges;
    for (const ByteEdit &edit : write.edits)
        expected.emplace_back(edit.offset, edit.previous);
    if (expected.empty())
        return Span{};
    Span span{expected.front().first, {}};
    qint64 end = span.first;
    for (const auto &[offset, bytes] : expected) {
        span.first = std::min(span.first, offset);
        end = std::max(end, offset + bytes.size());
    }
    constexpr qint64 oneRead = 256 * 1024;
    if (end - span.first <= oneRead)
        span.bytes = writer.readAt(span.first, end - span.first);
    const bool holds = std::all_of(expected.begin(), expected.end(), [&](const auto &range) {
        const auto &[offset, bytes] = range;
        return span.bytes.isEmpty() ? writer.readAt(offset, bytes.size()) == bytes
                                    : span.bytes.mid(offset - span.first, bytes.size()) == bytes;
    });
    return holds ? std::optional(span) : std::nullopt;
}

// Patches a few bytes apart become one write of the bytes just proven with the patches in
// them: one call where a stamp, its offset tag and its twin would each take one.
std::vector<ByteEdit> joined(std::vector<ByteEdit> edits, const Span &span)
{
    constexpr qint64 closeEnough = 4096;
    if (span.bytes.isEmpty() || edits.size() < 2)
        return edits;
    std::sort(edits.begin(), edits.end(), [](const ByteEdit &a, const ByteEdit &b) { return a.offset < b.offset; });
    std::vector<ByteEdit> writes;
    for (const ByteEdit &edit : edits) {
        if (!writes.empty()) {
            ByteEdit &last = writes.back();
            const qint64 lastEnd = last.offset + last.bytes.size();
            if (edit.offset >= lastEnd && edit.offset - lastEnd <= closeEnough) {
                const QByteArray between = span.bytes.mid(lastEnd - span.first, edit.offset - lastEnd);
                last.bytes += between + edit.bytes;
                last.previous += between + edit.previous;
                continue;
            }
        }
        writes.push_back(edit);
    }
    return writes;
}

// One record of the journal, read back.
struct Entry
{
    enum class Kind { Patch, Kept, Rename };
    Kind kind = Kind::Patch;
    qint64 number = 0;
    QString path;
    ByteProof proof;
    std::vector<ByteEdit> edits;
    FileTime before;
    std::optional<FileTime> after;
    QString link;     // a kept file's name in the kept folder
    bool absent = false; // the tool was to make the file: before the run there was none
    QString temporary; // where the tool writes before its rename
    QByteArray toolResult; // what exiftool left, when it changed the file
    // A rename: the file's folder, its names, the group that moves with it, its identity; for a
    // move, the folder it goes to, and for a copy across file systems what its bytes hash to.
    QString folder, from, to, toFolder;
    QByteArray sha256;
    int group = 0;
    quint64 device = 0, inode = 0;
    // The rename plan it belongs to (its first entry's number) and how many entries that plan
    // has; a plan that was not read whole was torn by a kill before any file moved.
    qint64 plan = 0;
    qint64 planSize = 0;
    bool done = false;
    bool skipped = false;
    bool undone = false;
};

struct ReadJournal
{
    QString kind;
    QString runId;
    std::vector<Entry> entries;
    bool ended = false;
    bool exists = false;
    QStringList damage;
};

void take(ReadJournal &journal, std::map<qint64, std::size_t> &byNumber, const QJsonObject &record)
{
    const auto entryFor = [&](const QJsonValue &number) -> Entry * {
        const auto found = byNumber.find(qint64(number.toDouble()));
        return found == byNumber.end() ? nullptr : &journal.entries[found->second];
    };
    const auto numbers = [](const QJsonValue &value) {
        std::vector<qint64> all;
        for (const QJsonValue number : value.toArray())
            all.push_back(qint64(number.toDouble()));
        return all;
    };
    if (record.contains(QStringLiteral("run"))) {
        journal.kind = record.value(QStringLiteral("run")).toString();
        journal.runId = record.value(QStringLiteral("id")).toString();
    } else if (record.contains(renameKey)) {
        Entry entry;
        entry.kind = Entry::Kind::Rename;
        entry.number = qint64(record.value(renameKey).toDouble());
        entry.folder = record.value(QStringLiteral("folder")).toString();
        entry.from = record.value(QStringLiteral("from")).toString();
        entry.temporary = record.value(QStringLiteral("temporary")).toString();
        entry.to = record.value(QStringLiteral("to")).toString();
        entry.toFolder = record.value(QStringLiteral("toFolder")).toString(entry.folder);
        entry.sha256 = fromHex(record.value(QStringLiteral("sha256")));
        entry.group = record.value(QStringLiteral("group")).toInt();
        entry.device = record.value(QStringLiteral("device")).toString().toULongLong();
        entry.inode = record.value(QStringLiteral("inode")).toString().toULongLong();
        entry.plan = qint64(record.value(QStringLiteral("plan")).toDouble());
        entry.planSize = qint64(record.value(QStringLiteral("of")).toDouble());
        entry.path = QDir(entry.folder).filePath(entry.from);
        byNumber[entry.number] = journal.entries.size();
        journal.entries.push_back(std::move(entry));
    } else if (record.contains(fileKey) || record.contains(keptKey)) {
        Entry entry;
        entry.kind = record.contains(keptKey) ? Entry::Kind::Kept : Entry::Kind::Patch;
        entry.number = qint64(record.value(entry.kind == Entry::Kind::Kept ? keptKey : fileKey).toDouble());
        entry.path = record.value(pathKey).toString();
        entry.link = record.value(QStringLiteral("link")).toString();
        entry.absent = record.value(QStringLiteral("absent")).toBool();
        entry.temporary = record.value(QStringLiteral("temporary")).toString();
        entry.proof.length = qint64(record.value(QStringLiteral("length")).toDouble(-1));
        entry.before = timeFrom(record.value(QStringLiteral("before")));
        if (record.contains(QStringLiteral("after")))
            entry.after = timeFrom(record.value(QStringLiteral("after")));
        for (const QJsonValue range : record.value(QStringLiteral("proof")).toArray())
            entry.proof.ranges.emplace_back(qint64(range[0].toDouble()), fromHex(range[1]));
        for (const QJsonValue patch : record.value(QStringLiteral("patches")).toArray())
            entry.edits.push_back({qint64(patch[0].toDouble()), fromHex(patch[2]), fromHex(patch[1])});
        byNumber[entry.number] = journal.entries.size();
        journal.entries.push_back(std::move(entry));
    } else if (record.contains(toolKey)) {
        if (Entry *entry = entryFor(record.value(toolKey)))
            entry->toolResult = fromHex(record.value(QStringLiteral("sha256")));
    } else if (record.contains(doneKey) || record.contains(skippedKey) || record.contains(undoneKey)) {
        for (const auto &[key, flag] : {std::pair(doneKey, &Entry::done), std::pair(skippedKey, &Entry::skipped),
                                        std::pair(undoneKey, &Entry::undone)}) {
            for (const qint64 number : numbers(record.value(key))) {
                if (Entry *entry = entryFor(double(number)))
                    entry->*flag = true;
            }
        }
    } else if (record.contains(endKey)) {
        journal.ended = true;
    }
}

ReadJournal readJournal(const QString &path)
{
    ReadJournal journal;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return journal;
    journal.exists = true;
    const QList<QByteArray> lines = file.readAll().split('\n');
    std::map<qint64, std::size_t> byNumber;
    // The piece after the last line end is a record a kill tore; so is a last line that fails
    // its checksum. A damaged line with good ones after it is damage, and is said.
    qsizetype lastGood = -1;
    std::vector<std::optional<QJsonObject>> records;
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        records.push_back(unframed(lines[i]));
        if (records.back())
            lastGood = i;
    }
    for (qsizetype i = 0; i < qsizetype(records.size()); ++i) {
        if (records[i])
            take(journal, byNumber, *records[i]);
        else if (i < lastGood)
            journal.damage << QStringLiteral("line %1 of the save journal is damaged and was passed over").arg(i + 1);
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

bool allAre(const Examined &examined, Bytes state)
{
    return std::all_of(examined.patches.begin(), examined.patches.end(),
                       [state](Bytes b) { return b == state; });
}

Examined examine(const Entry &entry)
{
    Examined result;
    const std::unique_ptr<InPlaceWriter> file = FileWriteAccess::disk().openForUpdate(entry.path);
    if (!file)
        result.problem = QFileInfo::exists(entry.path) ? QStringLiteral("cannot be opened for writing")
                                                       : QStringLiteral("is missing");
    else if (file->length() != entry.proof.length)
        result.problem = QStringLiteral("its length changed since the save");
    else if (!std::all_of(entry.proof.ranges.begin(), entry.proof.ranges.end(), [&](const auto &range) {
                 return file->readAt(range.first, range.second.size()) == range.second;
             }))
        result.problem = QStringLiteral("its bytes changed since the save");
    if (!result.problem.isEmpty())
        return result;
    for (const ByteEdit &edit : entry.edits) {
        const QByteArray now = file->readAt(edit.offset, edit.bytes.size());
        result.patches.push_back(now == edit.bytes      ? Bytes::New
                                 : now == edit.previous ? Bytes::Old
                                                        : Bytes::Neither);
    }
    if (std::find(result.patches.begin(), result.patches.end(), Bytes::Neither) != result.patches.end())
        result.problem = QStringLiteral("its saved bytes changed since the save");
    return result;
}

// The patches that do not yet hold `state`, turned toward it.
std::vector<ByteEdit> towards(const Entry &entry, const Examined &examined, Bytes state)
{
    std::vector<ByteEdit> edits;
    for (std::size_t i = 0; i < entry.edits.size(); ++i) {
        const ByteEdit &edit = entry.edits[i];
        if (examined.patches[i] != state)
            edits.push_back(state == Bytes::New ? edit : ByteEdit{edit.offset, edit.previous, edit.bytes});
    }
    return edits;
}

// Writes a file whose run is journaled already: the edits, its date, the disk.
bool writeJournaled(const QString &path, std::vector<ByteEdit> edits, const std::optional<FileTime> &time)
{
    const std::unique_ptr<InPlaceWriter> writer = FileWriteAccess::disk().openForUpdate(path);
    return writer && writer->apply(std::move(edits)) && (!time || writer->setModificationTime(*time)) &&
           writer->synchronize();
}

// Puts a kept file back in its place: the kept inode itself where it shares the file system,
// else a copy that takes the place whole.
bool restoreKept(const QString &kept, const QString &path)
{
    if (!InPlaceWriter::mayWrite())
        return false;
    const QString folder = QFileInfo(path).absolutePath();
    bool restored = ::rename(encoded(kept).constData(), encoded(path).constData()) == 0;
    if (!restored && errno == EXDEV) {
        const QString temporary =
            QDir(folder).filePath(QLatin1Char('.') + QFileInfo(path).fileName() + QLatin1String(".orvelle-restore"));
        ::unlink(encoded(temporary).constData());
        restored = copyWithItsTimes(kept, temporary) &&
                   ::rename(encoded(temporary).constData(), encoded(path).constData()) == 0;
    }
    if (restored)
        syncFolder(folder);
    return restored;
}

// Items that share a sidecar the tool makes write it at once: the file holds whichever of the
// run's writes ended last.
bool holdsARunsWrite(const QString &path, const std::vector<const Entry *> &steps)
{
    const QByteArray now = contentHash(path);
    return std::any_of(steps.begin(), steps.end(), [&](const Entry *step) {
        return step->path == path && !step->toolResult.isEmpty() && step->toolResult == now;
    });
}

// Takes away a file that a run made where there was none.
bool removeMade(const QString &path)
{
    if (!InPlaceWriter::mayWrite() || (::unlink(encoded(path).constData()) != 0 && errno != ENOENT))
        return false;
    syncFolder(QFileInfo(path).absolutePath());
    return true;
}

void appendRecords(const QString &journalPath, const QByteArray &lines)
{
    const int fd = ::open(encoded(journalPath).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd < 0)
        return;
    if (InPlaceWriter::mayWrite() && writeAll(fd, lines))
        ::fdatasync(fd);
    ::close(fd);
}

QString keptFolderOf(const QString &journalPath)
{
    return journalPath + QStringLiteral(".kept");
}

QJsonArray numbersJson(const std::vector<qint64> &numbers)
{
    QJsonArray array;
    for (const qint64 number : numbers)
        array.append(double(number));
    return array;
}

// Puts every step of a run on one file back, last first: in-place patches to their old bytes, a
// file exiftool rewrote to the file kept before. The reason when a step cannot be undone.
QString rollBack(const std::vector<const Entry *> &steps, const QString &keptFolder)
{
    for (auto it = steps.rbegin(); it != steps.rend(); ++it) {
        const Entry &entry = **it;
        if (entry.kind == Entry::Kind::Patch) {
            const Examined examined = examine(entry);
            if (!examined.problem.isEmpty())
                return examined.problem;
            if (!allAre(examined, Bytes::Old) &&
                !writeJournaled(entry.path, towards(entry, examined, Bytes::Old), entry.before))
                return QStringLiteral("cannot be written");
            continue;
        }
        // A tool stopped while it wrote leaves its file beside the original.
        if (!entry.temporary.isEmpty())
            QFile::remove(entry.temporary);
        if (entry.absent) {
            if (!QFileInfo::exists(entry.path))
                continue;
            if (!entry.toolResult.isEmpty() && !holdsARunsWrite(entry.path, steps))
                return QStringLiteral("it changed since exiftool wrote it");
            if (!removeMade(entry.path))
                return QStringLiteral("the file exiftool made cannot be removed");
            continue;
        }
        const QString kept = QDir(keptFolder).filePath(entry.link);
        const Identity now = identityOf(entry.path);
        const Identity original = identityOf(kept);
        if (!original.exists)
            return QStringLiteral("the file kept before exiftool wrote it is missing");
        if (now.exists && now.device == original.device && now.inode == original.inode)
            continue; // exiftool never replaced it
        if (!entry.toolResult.isEmpty() && contentHash(entry.path) != entry.toolResult)
            return QStringLiteral("it changed since exiftool wrote it");
        if (!restoreKept(kept, entry.path))
            return QStringLiteral("the file kept before exiftool wrote it cannot be put back");
    }
    return {};
}

// The file the rename recorded stands under this name in this folder: the same inode, or for a
// copy across file systems the same bytes.
bool isAt(const Entry &entry, const QString &folder, const QString &name)
{
    const QString path = QDir(folder).filePath(name);
    const Identity found = identityOf(path);
    if (found.exists && found.device == entry.device && found.inode == entry.inode)
        return true;
    return found.exists && !entry.sha256.isEmpty() && folder == entry.toFolder && contentHash(path) == entry.sha256;
}

// A copy of the file under a free name in the folder it goes to, on the disk and proven equal.
// Answers 0, or the errno of the failure.
int copyAcross(const QString &source, const QString &folder, const QString &name, const QByteArray &sha256)
{
    if (!InPlaceWriter::mayWrite())
        return EIO;
    const QString copy = QDir(folder).filePath(name);
    if (QFileInfo::exists(copy))
        return EEXIST;
    if (!copyWithItsTimes(source, copy))
        return errno ? errno : EIO;
    if (contentHash(copy) == sha256)
        return 0;
    ::unlink(encoded(copy).constData());
    return EIO;
}

// Removes the source of a copy that stands whole under its new name.
void removeCopiedSource(const Entry &entry)
{
    if (!entry.sha256.isEmpty() && isAt(entry, entry.folder, entry.from) && InPlaceWriter::mayWrite())
        ::unlink(encoded(entry.path).constData());
}

// The renames of plans the journal holds whole. No file moves before its plan is synced, so a
// plan a kill tore as it was written moved nothing, and finishing part of it could stop a file
// of a chain under its temporary name, its new name still held by a file the torn part named.
// Entries written before plans were counted have no plan and are taken as whole.
std::vector<const Entry *> wholePlans(const ReadJournal &journal, const std::vector<const Entry *> &renames)
{
    std::map<qint64, qint64> readOfPlan;
    for (const Entry &entry : journal.entries)
        readOfPlan[entry.plan] += entry.kind == Entry::Kind::Rename;
    std::vector<const Entry *> whole;
    for (const Entry *entry : renames) {
        if (entry->plan == 0 || readOfPlan[entry->plan] == entry->planSize)
            whole.push_back(entry);
    }
    return whole;
}

// Finishes the renames of a run that did not end, from wherever each file stands: every file
// still under its old name goes to its temporary one first, then each to its new name, as the
// run meant to. A copy across file systems left unfinished is made again from its source, which
// goes only once the copy stands whole. No rename replaces a file, so a name taken since is
// named, never lost.
void finishRenames(const std::vector<const Entry *> &renames, SaveJournal::Outcome &outcome)
{
    QSet<QString> folders;
    for (const Entry *entry : renames) {
        if (!entry->sha256.isEmpty()) {
            if (!isAt(*entry, entry->toFolder, entry->to)) {
                QFile::remove(QDir(entry->toFolder).filePath(entry->temporary));
                if (isAt(*entry, entry->folder, entry->from))
                    copyAcross(entry->path, entry->toFolder, entry->temporary, entry->sha256);
            }
        } else if ((entry->from != entry->to || entry->folder != entry->toFolder) &&
                   isAt(*entry, entry->folder, entry->from)) {
            moveWithoutReplacing(entry->folder, entry->from, entry->toFolder, entry->temporary);
        }
    }
    for (const Entry *entry : renames) {
        folders.insert(entry->folder);
        folders.insert(entry->toFolder);
        const QString target = QDir(entry->toFolder).filePath(entry->to);
        if (isAt(*entry, entry->toFolder, entry->to)) {
            removeCopiedSource(*entry);
            outcome.completed.append(target);
            continue;
        }
        if (!isAt(*entry, entry->toFolder, entry->temporary)) {
            outcome.left.emplace_back(entry->path, QStringLiteral("is missing: neither its old, its temporary nor its "
                                                                  "new name holds it"));
            continue;
        }
        const int error = renameWithoutReplacing(entry->toFolder, entry->temporary, entry->to);
        if (error == 0) {
            removeCopiedSource(*entry);
            outcome.completed.append(target);
        } else {
            outcome.left.emplace_back(QDir(entry->toFolder).filePath(entry->temporary),
                                      renameFailureText(error, entry->to));
        }
    }
    for (const QString &folder : folders)
        syncFolder(folder);
}

// Moves the names of the last rename run back, as a run of its own, so that a second revert
// renames again.
void revertRenames(const ReadJournal &journal, const QString &journalPath, SaveJournal::Outcome &outcome)
{
    outcome.hadRun = true;
    std::vector<PlannedRename> back;
    for (auto it = journal.entries.rbegin(); it != journal.entries.rend(); ++it) {
        const Entry &entry = *it;
        if (entry.kind != Entry::Kind::Rename || entry.undone || entry.skipped)
            continue;
        const bool moved = entry.from != entry.to || entry.folder != entry.toFolder;
        if (!moved || (entry.sha256.isEmpty() && isAt(entry, entry.folder, entry.from))) {
            outcome.reverted.append(entry.path);
            continue;
        }
        const QString renamed = QDir(entry.toFolder).filePath(entry.to);
        if (!isAt(entry, entry.toFolder, entry.to)) {
            outcome.left.emplace_back(renamed, QStringLiteral("is no longer the file the rename gave this name"));
            continue;
        }
        back.push_back({entry.toFolder, entry.to, entry.from, entry.group, {},
                        entry.toFolder == entry.folder ? QString() : entry.folder});
    }
    if (back.empty())
        return;
    SaveJournal undo(journalPath, journal.kind == QLatin1String("revert") ? SaveJournal::RunKind::Rename
                                                                          : SaveJournal::RunKind::Revert);
    if (!undo.renameAll(back)) {
        outcome.left.emplace_back(QFileInfo(journalPath).absolutePath(), undo.problem());
        return;
    }
    for (const PlannedRename &rename : back) {
        if (rename.problem.isEmpty())
            outcome.reverted.append(QDir(rename.toFolder.isEmpty() ? rename.folder : rename.toFolder).filePath(rename.to));
        else
            outcome.left.emplace_back(QDir(rename.folder).filePath(rename.from), rename.problem);
    }
    undo.endRun();
}

QString runKindName(SaveJournal::RunKind kind)
{
    switch (kind) {
    case SaveJournal::RunKind::Save:
        return QStringLiteral("save");
    case SaveJournal::RunKind::Revert:
        return QStringLiteral("revert");
    case SaveJournal::RunKind::Move:
        return QStringLiteral("move");
    case SaveJournal::RunKind::Rename:
        break;
    }
    return QStringLiteral("rename");
}

} // namespace

QString SaveJournal::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/saveJournal.jsonl");
}

SaveJournal::SaveJournal(QString path, RunKind kind)
    : m_path(QFileInfo(path).absoluteFilePath()), m_kind(kind),
      m_runId(QString::number(QRandomGenerator::global()->generate64(), 36))
{
}

SaveJournal::~SaveJournal()
{
    if (m_fd >= 0)
        ::close(m_fd);
    if (!m_promoted)
        ::unlink(encoded(m_path + QStringLiteral(".new")).constData());
}

QString SaveJournal::keptFolder() const
{
    return keptFolderOf(m_path);
}

void SaveJournal::fail(const QString &what, int error)
{
    if (m_problem.isEmpty())
        m_problem = QStringLiteral("the save journal cannot be %1 in %2: %3")
                        .arg(what, QFileInfo(m_path).absolutePath(), causeOf(error));
}

QString SaveJournal::problem() const
{
    const QMutexLocker lock(&m_mutex);
    return m_problem;
}

QString SaveJournal::open()
{
    const QMutexLocker lock(&m_mutex);
    if (m_fd >= 0 || !m_problem.isEmpty())
        return m_problem;
    const QString folder = QFileInfo(m_path).absolutePath();
    const QString fresh = m_path + QStringLiteral(".new");
    if (!QDir().mkpath(folder)) {
        fail(QStringLiteral("made"), EACCES);
        return m_problem;
    }
    m_fd = ::open(encoded(fresh).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const QByteArray header = framed({{QStringLiteral("run"), runKindName(m_kind)},
                                      {QStringLiteral("id"), m_runId},
                                      {QStringLiteral("at"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)}});
    bool written = m_fd >= 0;
    if (written && !InPlaceWriter::mayWrite()) {
        errno = EIO;
        written = false;
    }
    written = written && writeAll(m_fd, header) && ::fdatasync(m_fd) == 0;
    if (!written) {
        const int error = errno;
        fail(QStringLiteral("written"), error);
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = -1;
        ::unlink(encoded(fresh).constData());
    }
    return m_problem;
}

bool SaveJournal::promote()
{
    // Called under the mutex. The run's journal takes the last one's place once a file is about
    // to change; until then the last run can still be undone.
    if (m_promoted)
        return true;
    if (::rename(encoded(m_path + QStringLiteral(".new")).constData(), encoded(m_path).constData()) != 0) {
        fail(QStringLiteral("written"), errno);
        return false;
    }
    syncFolder(QFileInfo(m_path).absolutePath());
    m_promoted = true;
    return true;
}

bool SaveJournal::append(const QByteArray &lines, bool sync)
{
    int fd = -1;
    {
        if (!open().isEmpty())
            return false;
        const QMutexLocker lock(&m_mutex);
        if (!m_problem.isEmpty() || !promote())
            return false;
        if (!InPlaceWriter::mayWrite()) {
            fail(QStringLiteral("written"), EIO);
            return false;
        }
        if (!writeAll(m_fd, lines)) {
            fail(QStringLiteral("written"), errno);
            return false;
        }
        fd = m_fd;
    }
    if (sync && ::fdatasync(fd) != 0) {
        const QMutexLocker lock(&m_mutex);
        fail(QStringLiteral("written"), errno);
        return false;
    }
    return true;
}

void SaveJournal::plan(PlannedWrite write)
{
    const QMutexLocker lock(&m_mutex);
    m_planned.push_back(std::move(write));
}

bool SaveJournal::commit(FileWriteAccess &disk)
{
    std::vector<PlannedWrite> writes;
    std::vector<qint64> numbers;
    QByteArray lines;
    {
        const QMutexLocker lock(&m_mutex);
        writes.swap(m_planned);
        for (const PlannedWrite &write : writes) {
            QJsonArray proven;
            for (const auto &[offset, bytes] : write.proof.ranges) {
                if (!bytes.isEmpty() && !overlaps(offset, bytes.size(), write.edits))
                    proven.append(QJsonArray{double(offset), hex(bytes)});
            }
            QJsonArray patches;
            for (const ByteEdit &edit : write.edits)
                patches.append(QJsonArray{double(edit.offset), hex(edit.previous), hex(edit.bytes)});
            numbers.push_back(++m_entries);
            QJsonObject record{{fileKey, double(numbers.back())},
                               {pathKey, QFileInfo(write.path).absoluteFilePath()},
                               {QStringLiteral("length"), double(write.proof.length)},
                               {QStringLiteral("proof"), proven},
                               {QStringLiteral("patches"), patches},
                               {QStringLiteral("before"), timeJson(write.before)}};
            if (write.after)
                record.insert(QStringLiteral("after"), timeJson(*write.after));
            lines += framed(record);
        }
    }
    if (writes.empty())
        return true;
    if (!append(lines, true)) {
        for (PlannedWrite &write : writes)
            write.finished(false, false);
        return false;
    }

    struct Result
    {
        bool written = false;
        bool dateSet = false;
        quint64 device = 0;
    };
    std::vector<Result> results(writes.size());
    // One open file per file system stays for its sync; the others close when written.
    std::map<quint64, std::unique_ptr<InPlaceWriter>> syncers;
    for (std::size_t i = 0; i < writes.size(); ++i) {
        const PlannedWrite &write = writes[i];
        std::unique_ptr<InPlaceWriter> writer = disk.openForUpdate(write.path);
        Result &result = results[i];
        const std::optional<Span> proven = writer ? provenBeforeWriting(*writer, write) : std::nullopt;
        result.written = proven && writer->apply(joined(write.edits, *proven));
        if (!result.written)
            continue;
        result.dateSet = !write.after || writer->setModificationTime(*write.after);
        result.device = writer->device();
        if (!syncers.count(result.device))
            syncers[result.device] = std::move(writer);
    }
    std::set<quint64> unsynced;
    for (const auto &[device, writer] : syncers) {
        if (!writer->syncFileSystem())
            unsynced.insert(device);
    }
    syncers.clear();
    std::vector<qint64> done, skipped;
    for (std::size_t i = 0; i < writes.size(); ++i) {
        Result &result = results[i];
        if (result.written && unsynced.count(result.device)) {
            // Never reached the disk: put back as far as the disk lets it.
            std::vector<ByteEdit> back;
            for (const ByteEdit &edit : writes[i].edits)
                back.push_back({edit.offset, edit.previous, edit.bytes});
            writeJournaled(writes[i].path, back, writes[i].before);
            result.written = false;
        }
        (result.written ? done : skipped).push_back(numbers[i]);
    }
    append(framed({{doneKey, numbersJson(done)}, {skippedKey, numbersJson(skipped)}}), true);
    for (std::size_t i = 0; i < writes.size(); ++i)
        writes[i].finished(results[i].written, results[i].dateSet);
    return true;
}

bool SaveJournal::renameAll(std::vector<PlannedRename> &renames)
{
    struct Move
    {
        PlannedRename *rename = nullptr;
        QString temporary;
        qint64 number = 0;
        Identity identity;
        QString target;    // the folder it goes to
        QByteArray sha256; // set for a copy across file systems

        QString source() const { return QDir(rename->folder).filePath(rename->from); }
    };
    std::map<int, std::vector<Move>> groups;
    std::map<int, QString> failed; // a group that stays, and why
    for (PlannedRename &rename : renames) {
        rename.problem.clear();
        rename.folder = QFileInfo(rename.folder).absoluteFilePath();
        Move move{&rename, {}, 0, identityOf(QDir(rename.folder).filePath(rename.from)),
                  rename.toFolder.isEmpty() ? rename.folder : QFileInfo(rename.toFolder).absoluteFilePath(), {}};
        if (!move.identity.exists)
            failed.emplace(rename.group, rename.problem = QStringLiteral("is missing"));
        else if (move.target != rename.folder && !isOnOneFileSystem(move.source(), move.target))
            move.sha256 = contentHash(move.source());
        groups[rename.group].push_back(std::move(move));
    }
    qint64 planSize = 0;
    for (const auto &[group, moves] : groups)
        planSize += failed.count(group) ? 0 : qint64(moves.size());
    qint64 number = 0;
    {
        const QMutexLocker lock(&m_mutex);
        number = m_entries + 1;
        m_entries += planSize;
    }
    const qint64 plan = number;
    QByteArray lines;
    for (auto &[group, moves] : groups) {
        if (failed.count(group))
            continue;
        for (Move &move : moves) {
            move.number = number++;
            move.temporary = QStringLiteral(".orvelle-rename-%1-%2").arg(m_runId).arg(move.number);
            QJsonObject record{{renameKey, double(move.number)},
                               {QStringLiteral("folder"), move.rename->folder},
                               {QStringLiteral("from"), move.rename->from},
                               {QStringLiteral("temporary"), move.temporary},
                               {QStringLiteral("to"), move.rename->to},
                               {QStringLiteral("group"), group},
                               {QStringLiteral("device"), QString::number(move.identity.device)},
                               {QStringLiteral("inode"), QString::number(move.identity.inode)},
                               {QStringLiteral("plan"), double(plan)},
                               {QStringLiteral("of"), double(planSize)}};
            if (move.target != move.rename->folder)
                record.insert(QStringLiteral("toFolder"), move.target);
            if (!move.sha256.isEmpty())
                record.insert(QStringLiteral("sha256"), hex(move.sha256));
            lines += framed(record);
        }
    }
    if (!lines.isEmpty() && !append(lines, true)) {
        for (PlannedRename &rename : renames)
            rename.problem = problem();
        return false;
    }
    // A file that cannot go on goes back to its old name (a copy is dropped, its source never
    // left); should that fail too, the message says where it is.
    const auto backToOldName = [](const Move &move, const QString &from) {
        const bool back = move.sha256.isEmpty()
                              ? moveWithoutReplacing(move.target, from, move.rename->folder, move.rename->from) == 0
                              : QFile::remove(QDir(move.target).filePath(from));
        if (!back && move.rename->problem.isEmpty())
            move.rename->problem = QStringLiteral("left as %1").arg(QDir(move.target).filePath(from));
    };
    const auto fail = [&](int group, std::vector<Move> &moves, std::size_t at, int error, const QString &to) {
        moves[at].rename->problem = renameFailureText(error, to);
        failed.emplace(group, moves[at].rename->problem);
    };
    // First every file to its temporary name, so that no new name is still held by a file of the
    // run when the second pass gives it.
    for (auto &[group, moves] : groups) {
        for (std::size_t i = 0; i < moves.size() && !failed.count(group); ++i) {
            const Move &move = moves[i];
            if (const int error = move.sha256.isEmpty()
                                      ? moveWithoutReplacing(move.rename->folder, move.rename->from, move.target,
                                                             move.temporary)
                                      : copyAcross(move.source(), move.target, move.temporary, move.sha256)) {
                fail(group, moves, i, error, moves[i].temporary);
                for (std::size_t j = 0; j < i; ++j)
                    backToOldName(moves[j], moves[j].temporary);
            }
        }
    }
    for (auto &[group, moves] : groups) {
        for (std::size_t i = 0; i < moves.size() && !failed.count(group); ++i) {
            if (const int error = renameWithoutReplacing(moves[i].target, moves[i].temporary, moves[i].rename->to)) {
                fail(group, moves, i, error, moves[i].rename->to);
                for (std::size_t j = 0; j < moves.size(); ++j) {
                    if (j < i && renameWithoutReplacing(moves[j].target, moves[j].rename->to, moves[j].temporary) != 0)
                        continue;
                    backToOldName(moves[j], moves[j].temporary);
                }
            }
        }
    }
    std::set<QString> folders;
    std::vector<qint64> done, skipped;
    for (auto &[group, moves] : groups) {
        const auto failure = failed.find(group);
        for (Move &move : moves) {
            folders.insert(move.rename->folder);
            folders.insert(move.target);
            if (failure != failed.end() && move.rename->problem.isEmpty())
                move.rename->problem = QStringLiteral("stays with its group, of which a file %1").arg(failure->second);
            if (move.number)
                (failure == failed.end() ? done : skipped).push_back(move.number);
        }
    }
    if (lines.isEmpty())
        return true;
    for (const QString &folder : folders)
        syncFolder(folder);
    // A copy's source goes only once the copy stands whole, synced, under its new name.
    std::set<QString> copiedFrom;
    for (const auto &[group, moves] : groups) {
        for (const Move &move : moves) {
            if (!failed.count(group) && !move.sha256.isEmpty() && InPlaceWriter::mayWrite() &&
                ::unlink(encoded(move.source()).constData()) == 0)
                copiedFrom.insert(move.rename->folder);
        }
    }
    for (const QString &folder : copiedFrom)
        syncFolder(folder);
    append(framed({{doneKey, numbersJson(done)}, {skippedKey, numbersJson(skipped)}}), true);
    return true;
}

std::optional<SaveJournal::Kept> SaveJournal::keepOriginal(const QString &path, const QString &temporary)
{
    if (!open().isEmpty())
        return std::nullopt;
    qint64 entry = 0;
    {
        const QMutexLocker lock(&m_mutex);
        entry = ++m_entries;
    }
    if (!QFileInfo::exists(path)) {
        const QJsonObject record{{keptKey, double(entry)},
                                 {pathKey, QFileInfo(path).absoluteFilePath()},
                                 {QStringLiteral("absent"), true}};
        if (!append(framed(record), true))
            return std::nullopt;
        return Kept{entry, {}};
    }
    const QString name = m_runId + QLatin1Char('-') + QString::number(entry);
    const QString kept = QDir(keptFolder()).filePath(name);
    QDir().mkpath(keptFolder());
    ::unlink(encoded(kept).constData());
    const bool linked = ::link(encoded(path).constData(), encoded(kept).constData()) == 0;
    const int error = errno;
    if (!linked && !((error == EXDEV || error == EPERM || error == EMLINK || error == ENOTSUP) &&
                     copyWithItsTimes(path, kept)))
        return std::nullopt;
    syncFolder(keptFolder());
    const Identity original = identityOf(kept);
    QJsonObject record{{keptKey, double(entry)},
                       {pathKey, QFileInfo(path).absoluteFilePath()},
                       {QStringLiteral("link"), name},
                       {QStringLiteral("before"), timeJson(original.modified)}};
    // A file of that name before the tool ran is not the tool's.
    if (!temporary.isEmpty() && !QFileInfo::exists(temporary))
        record.insert(QStringLiteral("temporary"), QFileInfo(temporary).absoluteFilePath());
    if (!append(framed(record), true)) {
        ::unlink(encoded(kept).constData());
        return std::nullopt;
    }
    return Kept{entry, original.modified};
}

void SaveJournal::toolChanged(const Kept &kept, const QString &path)
{
    // Lost with a kill, it only leaves an undo without the proof of what the tool wrote.
    append(framed({{toolKey, double(kept.entry)}, {QStringLiteral("sha256"), hex(contentHash(path))}}), false);
}

void SaveJournal::endRun()
{
    bool promoted = false;
    {
        const QMutexLocker lock(&m_mutex);
        promoted = m_promoted;
    }
    if (!promoted || !append(framed({{endKey, true}}), true))
        return;
    // The last run's kept files go with it.
    QDir kept(keptFolder());
    for (const QString &name : kept.entryList(QDir::Files | QDir::Hidden)) {
        if (!name.startsWith(m_runId + QLatin1Char('-')))
            kept.remove(name);
    }
}

SaveJournal::Outcome SaveJournal::recover(const QString &journalPath)
{
    Outcome outcome;
    const ReadJournal journal = readJournal(journalPath);
    for (const QString &damage : journal.damage)
        outcome.left.emplace_back(journalPath, damage);
    const bool anyStep = std::any_of(journal.entries.begin(), journal.entries.end(),
                                     [](const Entry &e) { return !e.undone && !e.skipped; });
    if (!journal.exists || journal.ended)
        return outcome;
    if (!anyStep) {
        appendRecords(journalPath, framed({{endKey, true}}));
        return outcome;
    }
    outcome.hadRun = true;
    std::map<QString, std::vector<const Entry *>> byPath;
    std::vector<const Entry *> renames;
    QSet<QString> keptPaths;
    for (const Entry &entry : journal.entries) {
        if (entry.undone || entry.skipped)
            continue;
        if (entry.kind == Entry::Kind::Rename) {
            if (!entry.done)
                renames.push_back(&entry);
            continue;
        }
        byPath[entry.path].push_back(&entry);
        if (entry.kind == Entry::Kind::Kept)
            keptPaths.insert(entry.path);
    }
    renames = wholePlans(journal, renames);
    std::vector<qint64> undone;
    for (const auto &[path, steps] : byPath) {
        if (keptPaths.contains(path)) {
            // exiftool's step cannot be done again: the file goes back to before the run.
            const QString problem = rollBack(steps, keptFolderOf(journalPath));
            if (!problem.isEmpty()) {
                outcome.left.emplace_back(path, problem);
                continue;
            }
            outcome.reverted.append(path);
            for (const Entry *step : steps)
                undone.push_back(step->number);
            continue;
        }
        QString problem;
        bool touched = false;
        for (const Entry *step : steps) {
            if (step->done || !problem.isEmpty())
                continue;
            const Examined examined = examine(*step);
            problem = examined.problem;
            if (problem.isEmpty() && !writeJournaled(path, towards(*step, examined, Bytes::New), step->after))
                problem = QStringLiteral("cannot be written");
            touched = true;
        }
        if (!problem.isEmpty())
            outcome.left.emplace_back(path, problem);
        else if (touched)
            outcome.completed.append(path);
    }
    finishRenames(renames, outcome);
    QByteArray records;
    if (!undone.empty())
        records += framed({{undoneKey, numbersJson(undone)}});
    appendRecords(journalPath, records + framed({{endKey, true}, {QStringLiteral("recovered"), true}}));
    return outcome;
}

SaveJournal::Outcome SaveJournal::revert(const QString &journalPath)
{
    Outcome outcome = recover(journalPath);
    const ReadJournal journal = readJournal(journalPath);
    if (std::any_of(journal.entries.begin(), journal.entries.end(),
                    [](const Entry &entry) { return entry.kind == Entry::Kind::Rename; })) {
        revertRenames(journal, journalPath, outcome);
        return outcome;
    }
    std::vector<const Entry *> steps;
    std::map<QString, int> stepsPerPath;
    QSet<QString> keptPaths;
    for (const Entry &entry : journal.entries) {
        if (entry.undone || entry.skipped)
            continue;
        steps.push_back(&entry);
        ++stepsPerPath[entry.path];
        if (entry.kind == Entry::Kind::Kept)
            keptPaths.insert(entry.path);
    }
    if (steps.empty())
        return outcome;
    outcome.hadRun = true;
    SaveJournal undo(journalPath, journal.kind == QLatin1String("revert") ? RunKind::Save : RunKind::Revert);
    if (const QString problem = undo.open(); !problem.isEmpty()) {
        outcome.left.emplace_back(QFileInfo(journalPath).absolutePath(), problem);
        return outcome;
    }
    QSet<QString> failed;
    const auto leave = [&](const QString &path, const QString &reason) {
        outcome.left.emplace_back(path, reason);
        failed.insert(path);
        outcome.reverted.removeAll(path);
    };
    const auto reverted = [&](const QString &path) {
        if (!outcome.reverted.contains(path) && !failed.contains(path))
            outcome.reverted.append(path);
    };
    // Last first: a file written twice in a run (dates, then the XMP sync) is undone step by step.
    for (auto it = steps.rbegin(); it != steps.rend(); ++it) {
        const Entry &entry = **it;
        if (failed.contains(entry.path))
            continue;
        if (entry.kind == Entry::Kind::Kept && entry.absent) {
            if (!QFileInfo::exists(entry.path))
                continue;
            if (!entry.toolResult.isEmpty() && !holdsARunsWrite(entry.path, steps)) {
                leave(entry.path, QStringLiteral("it changed since exiftool wrote it"));
                continue;
            }
            // Kept by the undo run, so that undoing the undo brings the made file back.
            const std::optional<Kept> current = undo.keepOriginal(entry.path);
            if (!current || !removeMade(entry.path)) {
                leave(entry.path, current ? QStringLiteral("the file exiftool made cannot be removed") : undo.problem());
                continue;
            }
            undo.toolChanged(*current, entry.path);
            reverted(entry.path);
            continue;
        }
        if (entry.kind == Entry::Kind::Kept) {
            const QString kept = QDir(keptFolderOf(journalPath)).filePath(entry.link);
            const Identity now = identityOf(entry.path);
            const Identity original = identityOf(kept);
            if (!original.exists) {
                leave(entry.path, QStringLiteral("the file kept before exiftool wrote it is missing"));
                continue;
            }
            if (now.exists && now.device == original.device && now.inode == original.inode)
                continue;
            if (!entry.toolResult.isEmpty() && contentHash(entry.path) != entry.toolResult) {
                leave(entry.path, QStringLiteral("it changed since exiftool wrote it"));
                continue;
            }
            const std::optional<Kept> current = undo.keepOriginal(entry.path);
            if (!current || !restoreKept(kept, entry.path)) {
                leave(entry.path, current ? QStringLiteral("the file kept before exiftool wrote it cannot be put back")
                                          : undo.problem());
                continue;
            }
            undo.toolChanged(*current, entry.path);
            reverted(entry.path);
            continue;
        }
        const Examined examined = examine(entry);
        if (!examined.problem.isEmpty()) {
            leave(entry.path, examined.problem);
            continue;
        }
        if (allAre(examined, Bytes::Old)) {
            reverted(entry.path); // put back by the recovery of an interrupted run
            continue;
        }
        if (!allAre(examined, Bytes::New)) {
            leave(entry.path, QStringLiteral("its saved bytes changed since the save"));
            continue;
        }
        const std::optional<FileTime> before = FileTime::modificationOf(entry.path);
        const QString path = entry.path;
        undo.plan({path, entry.proof, towards(entry, examined, Bytes::Old), before.value_or(entry.before), entry.before,
                   [&, path](bool written, bool) {
                       if (written)
                           reverted(path);
                       else
                           leave(path, QStringLiteral("cannot be written"));
                   }});
        // A file with several steps is undone one step at a time: each later step's proof
        // stands on the bytes the one before it left.
        if (stepsPerPath[path] > 1 || keptPaths.contains(path))
            undo.commit(FileWriteAccess::disk());
    }
    if (!undo.commit(FileWriteAccess::disk()) && !undo.problem().isEmpty())
        outcome.left.emplace_back(QFileInfo(journalPath).absolutePath(), undo.problem());
    undo.endRun();
    return outcome;
}

JournalLock::~JournalLock()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

std::shared_ptr<JournalLock> JournalLock::take(const QString &journalPath, bool wait,
                                               const std::function<void()> &waiting)
{
    static QMutex mutex;
    static std::map<QString, std::weak_ptr<JournalLock>> held;
    const QMutexLocker lock(&mutex);
    const QString path = QFileInfo(journalPath).absoluteFilePath() + QStringLiteral(".lock");
    if (const std::shared_ptr<JournalLock> mine = held[path].lock())
        return mine;
    QDir().mkpath(QFileInfo(path).absolutePath());
    const int fd = ::open(encoded(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        if (!wait) {
            ::close(fd);
            return nullptr;
        }
        if (waiting)
            waiting();
        while (::flock(fd, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    std::shared_ptr<JournalLock> taken(new JournalLock(fd));
    held[path] = taken;
    return taken;
}

} // namespace orv
