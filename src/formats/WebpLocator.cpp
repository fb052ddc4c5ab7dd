#include "formats/WebpLocator.h"

#include "formats/ByteOrder.h"

namespace orv {

WebpChunkOffsets WebpLocator::riffHeaderData()
{
    WebpChunkOffsets offsets;
    const QByteArray riff = m_file.read(0, 12);
    if (!hasBytesAt(riff, 0, "RIFF") || !hasBytesAt(riff, 8, "WEBP"))
        return offsets;
    qint64 offset = 12;
    bool skippedPad = false;
    while (offset <= qint64(0xFFFFFFFF) && !(offsets.exifOffset && offsets.xmpOffset)) {
        const QByteArray head = m_file.read(offset, 8);
        if (head.size() < 8)
            break;
        // Some writers leave a zero byte that no chunk accounts for; a type beginning with a 0
        // byte is such a stray byte, stepped over once.
        if (head[0] == '\0' && !skippedPad) {
            ++offset;
            skippedPad = true;
            continue;
        }
        skippedPad = false;
        if (hasBytesAt(head, 0, "EXIF") && !offsets.exifOffset)
            offsets.exifOffset = quint32(offset);
        else if (hasBytesAt(head, 0, "XMP") && !offsets.xmpOffset)
            offsets.xmpOffset = quint32(offset);
        // A chunk of odd size is followed by a pad byte that its size does not count.
        const qint64 size = get32(head, 4, true);
        offset += 8 + size + (size & 1);
    }
    return offsets;
}

} // namespace orv
