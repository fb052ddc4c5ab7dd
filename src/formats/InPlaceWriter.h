#pragma once

#include "core/Instant.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <memory>
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

// The one road by which a save changes a media file: the file is opened for update, never
// created, never truncated; bytes go to exact offsets inside its present length; and nothing
// counts as saved before it reached the disk. A file is thus either left as it was or holds
// every edit of a save: when a write fails, what this writer wrote before is put back.
class InPlaceWriter
{
public:
    virtual ~InPlaceWriter() = default;

    virtual qint64 length() const = 0;
    // Writes the edits in order. On the first refusal every edit this writer applied so far is
    // undone and the answer is false. An edit reaching past the end is a refusal.
    bool apply(const std::vector<ByteEdit> &edits);
    // The file's modification date; writes move it, so a save sets it last.
    virtual bool setModificationDate(Instant date) = 0;
    // Data and dates on the disk (fsync). False leaves the file with the edits undone as far as
    // the disk still lets them be.
    bool synchronize();

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

// A file on disk, written unbuffered.
class InPlaceFile : public InPlaceWriter
{
public:
    static std::unique_ptr<InPlaceFile> open(const QString &path);

    qint64 length() const override { return m_length; }
    bool setModificationDate(Instant date) override;

protected:
    bool writeAt(qint64 offset, const QByteArray &bytes) override;
    bool flushToDisk() override;

private:
    explicit InPlaceFile(const QString &path) : m_file(path) {}

    QFile m_file;
    qint64 m_length = 0;
};

} // namespace orv
