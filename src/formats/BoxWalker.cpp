#include "formats/BoxWalker.h"

namespace orv {

std::optional<Box> BoxWalker::boxAt(qint64 offset, qint64 parentEnd)
{
    constexpr qint64 headerSize = 8;
    parentEnd = qMin(parentEnd, m_source.length());
    if (offset < 0 || offset > parentEnd - headerSize || m_boxCount >= maxBoxes)
        return std::nullopt;
    Box box;
    box.offset = offset;
    box.payload = offset + headerSize;
    if (m_form == Form::Riff) {
        const std::optional<quint32> type = m_source.read32(offset, false);
        const std::optional<quint32> size = m_source.read32(offset + 4, true);
        if (!type || !size)
            return std::nullopt;
        box.type = *type;
        box.end = box.payload + qint64(*size);
    } else {
        const std::optional<quint32> size = m_source.read32(offset, false);
        const std::optional<quint32> type = m_source.read32(offset + 4, false);
        if (!size || !type)
            return std::nullopt;
        box.type = *type;
        if (*size == 1) {
            const std::optional<quint64> large = m_source.read64(offset + headerSize, false);
            if (!large || *large > quint64(parentEnd - offset))
                return std::nullopt;
            box.payload += 8;
            box.end = offset + qint64(*large);
        } else if (*size == 0) {
            box.end = parentEnd;
        } else {
            box.end = offset + qint64(*size);
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
