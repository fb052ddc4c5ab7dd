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
        // The walk steps by the chunk size alone, so after a chunk of odd size it stands on the
        // pad byte that follows; a type beginning with a 0 byte is that pad byte.
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
        offset += qint64(get32(head, 4, true)) + 8;
    }
    return offsets;
}

} // namespace orv
