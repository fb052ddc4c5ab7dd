#include "support/FailingDisk.h"

#include <QFileInfo>

namespace orv::test {
namespace {

class FailingWriter : public InPlaceWriter
{
public:
    FailingWriter(std::unique_ptr<InPlaceWriter> disk, int writesBeforeFailure, bool failsSync)
        : m_disk(std::move(disk)), m_writesLeft(writesBeforeFailure), m_failsSync(failsSync)
    {
    }

    qint64 length() const override { return m_disk->length(); }
    QByteArray readAt(qint64 offset, qint64 length) const override { return m_disk->readAt(offset, length); }
    bool setModificationTime(FileTime time) override { return m_disk->setModificationTime(time); }
    bool syncFileSystem() override { return !m_failsSync && m_disk->syncFileSystem(); }
    quint64 device() const override { return m_disk->device(); }

protected:
    // One write fails; the blocks written before stay writable, so the save can put them back.
    bool writeAt(qint64 offset, const QByteArray &bytes) override
    {
        if (m_writesLeft-- == 0)
            return false;
        return m_disk->apply({{offset, bytes, {}}});
    }
    bool flushToDisk() override { return !m_failsSync && m_disk->synchronize(); }

private:
    std::unique_ptr<InPlaceWriter> m_disk;
    int m_writesLeft;
    bool m_failsSync;
};

} // namespace

std::unique_ptr<InPlaceWriter> FailingDisk::openForUpdate(const QString &path)
{
    std::unique_ptr<InPlaceWriter> disk = FileWriteAccess::disk().openForUpdate(path);
    if (!disk || QFileInfo(path).fileName() != failingName)
        return disk;
    return std::make_unique<FailingWriter>(std::move(disk), writesBeforeFailure, failsSync);
}

} // namespace orv::test
