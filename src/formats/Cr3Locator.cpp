#include "formats/Cr3Locator.h"

#include "formats/BoxWalker.h"

namespace orv {

namespace {

const QByteArray canonMetadataUuid = QByteArray::fromHex("85c0b687820f11e08111f4ce462b6a48");
const QByteArray xmpUuid = QByteArray::fromHex("be7acfcb97a942e89c71999491e3afac");

bool hasUuid(const ByteSource &source, const Box &box, const QByteArray &uuid)
{
    return box.type == fourCC("uuid") && box.payloadSize() >= 16 && source.read(box.payload, 16) == uuid;
}

std::optional<quint32> storable(qint64 offset)
{
    if (offset <= 0 || offset > qint64(0xFFFFFFFE))
        return std::nullopt;
    return quint32(offset);
}

} // namespace

std::optional<Cr3Offsets> preparedCF3Offsets(const ByteSource &source)
{
    BoxWalker walker(source);
    const std::optional<Box> ftyp = walker.boxAt(0, source.length());
    if (!ftyp || ftyp->type != fourCC("ftyp"))
        return std::nullopt;
    Cr3Offsets offsets;
    bool orderKnown = false;
    const auto takeTiff = [&](const Box &box, std::optional<quint32> &slot) {
        const QByteArray order = source.read(box.payload, 2);
        if (box.payloadSize() < 8 || (order != "II" && order != "MM"))
            return;
        slot = storable(box.payload);
        if (!orderKnown) {
            offsets.isHeaderIntel = order == "II";
            orderKnown = true;
        }
    };
    walker.children(ftyp->end, source.length(), 0, [&](const Box &top) {
        if (top.type == fourCC("moov")) {
            walker.children(top, 1, [&](const Box &child) {
                if (!hasUuid(source, child, canonMetadataUuid))
                    return true;
                walker.children(child.payload + 16, child.end, 2, [&](const Box &box) {
                    switch (box.type) {
                    case fourCC("CMT1"): takeTiff(box, offsets.CMT1Offset); break;
                    case fourCC("CMT2"): takeTiff(box, offsets.CMT2Offset); break;
                    case fourCC("CMT4"): takeTiff(box, offsets.CMT4Offset); break;
                    default: break;
                    }
                    return true;
                });
                return false;
            });
        } else if (hasUuid(source, top, xmpUuid)) {
            offsets.xmpOffset = storable(top.payload + 16);
        }
        // The media data hold nothing for us, and nothing we look for comes after them.
        return top.type != fourCC("mdat");
    });
    return offsets;
}

} // namespace orv
