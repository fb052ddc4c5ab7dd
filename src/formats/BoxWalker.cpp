#include "formats/BoxWalker.h"

namespace orv {

std::optional<Box> BoxWalker::boxAt(qint64 offset, qint64 parentEnd)
{
    constexpr qint64 headerSize = 8;
    parentEnd = qMin(parentEnd, m_source.length());
    if (offset < 0 || offset > parentEnd - headerSize || m_boxCount >= maxBoxes)
        return std::nullopt;
    // The header and a 64-bit size, should there be one, in a single read.
    const MemoryByteSource header(m_source.read(offset, qMin<qint64>(16, parentEnd - offset)));
    const std::optional<quint32> first = header.read32(0, false);
    const std::optional<quint32> second = header.read32(4, m_form == Form::Riff);
    if (!first || !second)
        return std::nullopt;
    Box box;
    box.offset = offset;
    box.payload = offset + headerSize;
    if (m_form == Form::Riff) {
        box.type = *first;
        box.end = box.payload + qint64(*second);
    } else {
        box.type = *second;
        if (*first == 1) {
            const std::optional<quint64> large = header.read64(headerSize, false);
            if (!large || *large > quint64(parentEnd - offset))
                return std::nullopt;
            box.payload += 8;
            box.end = offset + qint64(*large);
        } else if (*first == 0) {
            box.end = parentEnd;
        } else {
            box.end = offset + qint64(*first);
        }
    }
    if (box.end < box.payload || box.end > parentEnd)
        return std::nullopt;
    if (!m_visited.insert(offset).second)
        return std::nullopt;
    ++m_boxCount;
    return box;
}

bool BoxWalker::children(qint64 begin, qint64 end, int depth,
                         const std::function<bool(const Box &)> &visit)
{
    if (depth > maxDepth)
        return false;
    qint64 at = begin;
    while (at < end) {
        const std::optional<Box> box = boxAt(at, end);
        if (!box)
            return false;
        if (!visit(*box))
            return true;
        // RIFF chunks of odd size carry a pad byte.
        at = m_form == Form::Riff ? box->end + (box->size() & 1) : box->end;
    }
    return true;
}

std::optional<Box> BoxWalker::firstChild(qint64 begin, qint64 end, int depth, quint32 type)
{
    std::optional<Box> found;
    children(begin, end, depth, [&](const Box &box) {
        if (box.type == type)
            found = box;
        return !found;
    });
    return found;
}

} // namespace orv
