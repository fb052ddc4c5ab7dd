#include "formats/InPlaceWriter.h"

#include <QDateTime>
#include <QFileInfo>
#include <cmath>
#include <unistd.h>

namespace orv {

bool InPlaceWriter::apply(const std::vector<ByteEdit> &edits)
{
    for (const ByteEdit &edit : edits) {
        const bool fits = edit.offset >= 0 && edit.offset + edit.bytes.size() <= length();
        if (!fits || !writeAt(edit.offset, edit.bytes)) {
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
    if (!QFileInfo(path).isFile())
        return nullptr;
    std::unique_ptr<InPlaceFile> file(new InPlaceFile(path));
    // Read-write keeps the length; existing-only never makes a file where one vanished.
    if (!file->m_file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return nullptr;
    file->m_length = file->m_file.size();
    return file;
}

bool InPlaceFile::writeAt(qint64 offset, const QByteArray &bytes)
{
    return m_file.seek(offset) && m_file.write(bytes) == bytes.size();
}

bool InPlaceFile::setModificationDate(Instant date)
{
    const auto milliseconds = qint64(std::floor(date.secondsSinceEpoch() * 1000.0));
    return m_file.setFileTime(QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC),
                              QFileDevice::FileModificationTime);
}

bool InPlaceFile::flushToDisk()
{
    return m_file.flush() && ::fsync(m_file.handle()) == 0;
}

} // namespace orv
