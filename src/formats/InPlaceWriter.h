#pragma once

#include "time/Instant.h"

#include <QByteArray>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

namespace orv {

// New bytes for a range of a file, and the bytes that stood there, proven before the edit was
// planned, to put back should a later write fail.
struct ByteEdit
{
    qint64 offset = 0;
    QByteArray bytes;
    QByteArray previous;
};

// What a file held when its edits were planned, beyond the edited bytes themselves: its length
// and the values the import proved. A journal keeps it so that a file finished or undone later
// is first shown to be the same file.
struct ByteProof
{
    qint64 length = 0;
    std::vector<std::pair<qint64, QByteArray>> ranges;
};

// A file's modification time to the nanosecond, as the file system keeps it.
struct FileTime
{
    qint64 seconds = 0;
    qint64 nanoseconds = 0;

    // The date floored to the millisecond, as a save sets it.
    static FileTime fromInstant(Instant date);
    // Nothing when the entry cannot be examined.
    static std::optional<FileTime> modificationOf(const QString &path);
    bool operator==(const FileTime &) const = default;
};

// The one road by which a save changes a media file: the file is opened for update, never
// created, never truncated; bytes go to exact offsets inside its present length, in one pass
// in file order; and nothing counts as saved before it reached the disk. A file is thus either
// left as it was or holds every edit of a save: when a write fails, what this writer wrote
// before is put back. With a journal, the edits are on the disk in the journal before the first
// of them reaches the file (SaveJournal), so that a kill between the two is finished at the next
// start.
class InPlaceWriter
{
public:
    virtual ~InPlaceWriter() = default;

    virtual qint64 length() const = 0;
    // The bytes there now; fewer at the end of the file or on a failure.
    virtual QByteArray readAt(qint64 offset, qint64 length) const = 0;
    // Writes the edits in file order. On the first refusal every edit this writer applied so far
    // is undone and the answer is false. An edit reaching past the end is a refusal.
    bool apply(std::vector<ByteEdit> edits);
    // The file's modification date; writes move it, so a save sets it last.
    bool setModificationDate(Instant date) { return setModificationTime(FileTime::fromInstant(date)); }
    virtual bool setModificationTime(FileTime time) = 0;
    // Data and dates on the disk (fsync). False leaves the file with the edits undone as far as
    // the disk still lets them be.
    bool synchronize();
    // Everything written to this file's file system so far on the disk (syncfs): a run that
    // wrote many files commits them with one call.
    virtual bool syncFileSystem() = 0;
    // The file system the file lives on.
    virtual quint64 device() const = 0;

    // Fault injection for tests: after `writes` more writes of files or journals, every writer of
    // this process stops dead, as a killed process would: each later write, sync or undo fails
    // and leaves the disk as it stands. A negative count lifts the stop.
    static void stopDeadAfterWrites(int writes);
    // Spends one write of the budget above; false once the writers are dead.
    static bool mayWrite();

protected:
    virtual bool writeAt(qint64 offset, const QByteArray &bytes) = 0;
    virtual bool flushToDisk() = 0;

private:
    void undoApplied();

    std::vector<ByteEdit> m_applied;
};

// Opens writers. The disk is the real one; tests put a failing disk in its place.
class FileWriteAccess
{
public:
    virtual ~FileWriteAccess() = default;
    // Null when the file is missing, is no regular file or cannot be opened for writing.
    virtual std::unique_ptr<InPlaceWriter> openForUpdate(const QString &path) = 0;

    static FileWriteAccess &disk();
};

// A file on disk, written unbuffered. Only a regular file, or a link to one, is opened: the
// entry is examined before any open, since opening a pipe or a device can block or have effects,
// and the open does not block either, should the entry have been exchanged in between. A file
// whose mode has no write bit is refused too, though root's open would pass.
class InPlaceFile : public InPlaceWriter
{
public:
    static std::unique_ptr<InPlaceFile> open(const QString &path);
    // The mode grants someone writing: a file without any write bit is read-only for every user,
    // root included, whom the system would let write all the same.
    static bool hasWriteBit(const QString &path);
    ~InPlaceFile() override;
    InPlaceFile(const InPlaceFile &) = delete;
    InPlaceFile &operator=(const InPlaceFile &) = delete;

    qint64 length() const override { return m_length; }
    QByteArray readAt(qint64 offset, qint64 length) const override;
    bool setModificationTime(FileTime time) override;
    bool syncFileSystem() override;
    quint64 device() const override { return m_device; }

protected:
    bool writeAt(qint64 offset, const QByteArray &bytes) override;
    bool flushToDisk() override;

private:
    InPlaceFile(int descriptor, qint64 length, quint64 device)
        : m_fd(descriptor), m_length(length), m_device(device)
    {
    }
    static bool modeHasWriteBit(unsigned mode);

    int m_fd = -1;
    qint64 m_length = 0;
    quint64 m_device = 0;
};

} // namespace orv
