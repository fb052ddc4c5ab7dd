#include "formats/InPlaceWriter.h"

#include "formats/FileRead.h"

#include <QFile>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orv {

namespace {

// Writes left before the writers stop dead; negative: no limit.
std::atomic<int> writesLeft = -1;

} // namespace

void InPlaceWriter::stopDeadAfterWrites(int writes)
{
    writesLeft = writes;
}

bool InPlaceWriter::mayWrite()
{
    int left = writesLeft.load();
    while (left >= 0) {
        if (left == 0)
            return false;
        if (writesLeft.compare_exchange_weak(left, left - 1))
            return true;
    }
    return true;
}

FileTime FileTime::fromInstant(Instant date)
{
    const auto milliseconds = qint64(std::floor(date.secondsSinceEpoch() * 1000.0));
    const qint64 seconds = milliseconds >= 0 ? milliseconds / 1000 : -((999 - milliseconds) / 1000);
    return {seconds, (milliseconds - seconds * 1000) * 1000000};
}

std::optional<FileTime> FileTime::modificationOf(const QString &path)
{
    struct statx entry{};
    if (::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_MTIME, &entry) != 0)
        return std::nullopt;
    return FileTime{entry.stx_mtime.tv_sec, entry.stx_mtime.tv_nsec};
}

bool InPlaceWriter::apply(std::vector<ByteEdit> edits)
{
    // One pass in file order: a kill costs at most this file's sync, and the disk moves forward.
    std::stable_sort(edits.begin(), edits.end(),
                     [](const ByteEdit &a, const ByteEdit &b) { return a.offset < b.offset; });
    for (const ByteEdit &edit : edits) {
        if (edit.offset < 0 || edit.offset + edit.bytes.size() > length()) {
            undoApplied();
            return false;
        }
    }
    for (const ByteEdit &edit : edits) {
        if (!writeAt(edit.offset, edit.bytes)) {
            undoApplied();
            return false;
        }
        m_applied.push_back(edit);
    }
    return true;
}

bool InPlaceWriter::synchronize()
{
    if (flushToDisk())
        return true;
    undoApplied();
    flushToDisk();
    return false;
}

void InPlaceWriter::undoApplied()
{
    // Newest first; plain reverse iterators, since clang 14 cannot compile libstdc++ 12's views.
    for (auto edit = m_applied.rbegin(); edit != m_applied.rend(); ++edit)
        writeAt(edit->offset, edit->previous);
    m_applied.clear();
}

namespace {

class Disk : public FileWriteAccess
{
public:
    std::unique_ptr<InPlaceWriter> openForUpdate(const QString &path) override
    {
        return InPlaceFile::open(path);
    }
};

} // namespace

FileWriteAccess &FileWriteAccess::disk()
{
    static Disk disk;
    return disk;
}

std::unique_ptr<InPlaceFile> InPlaceFile::open(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct statx entry{};
    if (::statx(AT_FDCWD, name.constData(), 0, STATX_TYPE | STATX_MODE | STATX_INO, &entry) != 0 ||
        !S_ISREG(entry.stx_mode) || !modeHasWriteBit(entry.stx_mode))
        return nullptr;
    // Read-write keeps the length; without O_CREAT a vanished file is never made anew.
    const int fd = ::open(name.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0)
        return nullptr;
    struct stat opened{};
    // The entry may have been exchanged between the look and the open.
    if (::fstat(fd, &opened) != 0 || !S_ISREG(opened.st_mode) || opened.st_ino != entry.stx_ino) {
        ::close(fd);
        return nullptr;
    }
    return std::unique_ptr<InPlaceFile>(new InPlaceFile(fd, opened.st_size, opened.st_dev));
}

bool InPlaceFile::hasWriteBit(const QString &path)
{
    struct statx entry{};
    return ::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_MODE, &entry) == 0 &&
           modeHasWriteBit(entry.stx_mode);
}

bool InPlaceFile::modeHasWriteBit(unsigned mode)
{
    return (mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0;
}

InPlaceFile::~InPlaceFile()
{
    ::close(m_fd);
}

bool InPlaceFile::writeAt(qint64 offset, const QByteArray &bytes)
{
    if (!mayWrite())
        return false;
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t n =
            ::pwrite(m_fd, bytes.constData() + done, size_t(bytes.size() - done), offset + done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}

QByteArray InPlaceFile::readAt(qint64 offset, qint64 length) const
{
    return readAtOffset(m_fd, offset, length);
}

bool InPlaceFile::setModificationTime(FileTime time)
{
    if (!mayWrite())
        return false;
    const timespec times[2] = {{0, UTIME_OMIT}, {time_t(time.seconds), long(time.nanoseconds)}};
    return ::futimens(m_fd, times) == 0;
}

bool InPlaceFile::syncFileSystem()
{
    return mayWrite() && ::syncfs(m_fd) == 0;
}

bool InPlaceFile::flushToDisk()
{
    return mayWrite() && ::fsync(m_fd) == 0;
}

} // namespace orv
