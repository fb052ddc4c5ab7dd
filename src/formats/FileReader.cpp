#include "formats/FileReader.h"

#include "formats/ByteOrder.h"

namespace orv {

FileReader::FileReader(const QString &path) : m_file(path)
{
    if (m_file.open(QIODevice::ReadOnly))
        m_length = m_file.size();
}

QByteArray FileReader::readDataOfLength(qint64 length, qint64 offset)
{
    if (!isOpen() || length <= 0 || offset < 0 || offset >= m_length || !m_file.seek(offset))
        return {};
    return m_file.read(qMin(length, m_length - offset));
}

quint16 FileReader::read16(qint64 offset, bool intel)
{
    return get16(readDataOfLength(2, offset), 0, intel);
}

quint32 FileReader::read32(qint64 offset, bool intel)
{
    return get32(readDataOfLength(4, offset), 0, intel);
}

void FileReader::scanBlocks(qint64 start, int lookahead,
                            const std::function<bool(const Block &)> &visit)
{
    qint64 offset = start;
    while (offset >= 0 && offset < m_length) {
        const QByteArray bytes = readDataOfLength(blockSize, offset);
        const bool isLast = offset + bytes.size() >= m_length || bytes.size() <= lookahead;
        const qsizetype scanEnd = isLast ? bytes.size() : bytes.size() - lookahead;
        if (bytes.isEmpty() || !visit(Block{bytes, offset, scanEnd, isLast}) || isLast)
            return;
        offset += scanEnd;
    }
}

} // namespace orv
