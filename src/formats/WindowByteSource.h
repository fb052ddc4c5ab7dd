#pragma once

#include "formats/ByteSource.h"

namespace orv {

// A stretch of another source held in memory, read once: a walk through many small boxes inside
// it (a movie's moov at the end of the file) costs one read instead of one per header. Offsets
// stay absolute; reads outside the stretch go to the other source.
class WindowByteSource final : public ByteSource
{
public:
    WindowByteSource(const ByteSource &source, qint64 begin, qint64 length)
        : m_source(source), m_begin(begin), m_bytes(source.read(begin, length)) {}

    qint64 length() const override { return m_source.length(); }
    QByteArray read(qint64 offset, qint64 length) const override
    {
        if (offset >= m_begin && length >= 0 && offset - m_begin + length <= m_bytes.size())
            return m_bytes.mid(offset - m_begin, length);
        return m_source.read(offset, length);
    }

private:
    const ByteSource &m_source;
    qint64 m_begin;
    QByteArray m_bytes;
};

} // namespace orv
