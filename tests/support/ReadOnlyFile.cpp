#include "support/ReadOnlyFile.h"

#include <QFile>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace orv::test {
namespace {

bool isWritable(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly);
}

} // namespace

ReadOnlyFile::ReadOnlyFile(const QString &path) : m_path(path)
{
    QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
    if (isWritable(path))
        m_immutable = setImmutable(true);
    m_locked = !isWritable(path);
}

ReadOnlyFile::~ReadOnlyFile()
{
    if (m_immutable)
        setImmutable(false);
    QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner);
}

bool ReadOnlyFile::setImmutable(bool on) const
{
    const int fd = ::open(QFile::encodeName(m_path).constData(), O_RDONLY);
    if (fd < 0)
        return false;
    int flags = 0;
    bool done = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    if (done) {
        flags = on ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
        done = ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    }
    ::close(fd);
    return done;
}

} // namespace orv::test
