#include "formats/HeifLocator.h"

#include "formats/BoxWalker.h"

#include <QList>

#include <map>

namespace orv {

namespace {

enum class ItemKind { Exif, Xmp };

// Reads big-endian numbers of the widths the iloc box declares, one after the other, and
// remembers whether any of them ran past the box.
class FieldReader
{
public:
    FieldReader(const ByteSource &source, qint64 at, qint64 end) : m_source(source), m_at(at), m_end(end) {}

    quint64 next(int bytes)
    {
        quint64 value = 0;
        if (bytes == 0)
            return 0;
        if (m_at + bytes > m_end) {
            m_failed = true;
            return 0;
        }
        std::optional<quint64> read;
        switch (bytes) {
        case 2: read = m_source.read16(m_at, false); break;
        case 4: read = m_source.read32(m_at, false); break;
        case 8: read = m_source.read64(m_at, false); break;
        default: break;
        }
        m_failed = m_failed || !read;
        value = read.value_or(0);
        m_at += bytes;
        return value;
    }
    bool failed() const { return m_failed; }

private:
    const ByteSource &m_source;
    qint64 m_at;
    qint64 m_end;
    bool m_failed = false;
};

// The metadata items named by the item infos: Exif by its type, XMP by its MIME type.
std::map<quint32, ItemKind> metadataItems(BoxWalker &walker, const Box &iinf)
{
    const ByteSource &source = walker.source();
    std::map<quint32, ItemKind> items;
    const std::optional<quint8> version = source.read8(iinf.payload);
    if (!version)
        return items;
    const qint64 entries = iinf.payload + (*version == 0 ? 6 : 8);
    walker.children(entries, iinf.end, 3, [&](const Box &infe) {
        const std::optional<quint8> v = source.read8(infe.payload);
        if (infe.type != fourCC("infe") || !v || *v < 2)
            return true;
        const qint64 idSize = *v == 2 ? 2 : 4;
        const std::optional<quint32> id = idSize == 2 ? std::optional<quint32>(source.read16(infe.payload + 4, false))
                                                      : source.read32(infe.payload + 4, false);
        const qint64 typeAt = infe.payload + 4 + idSize + 2;
        const std::optional<quint32> type = source.read32(typeAt, false);
        if (!id || !type || typeAt + 4 > infe.end)
            return true;
        if (*type == fourCC("Exif")) {
            items.emplace(*id, ItemKind::Exif);
        } else if (*type == fourCC("mime")) {
            // The item name (often empty) and then the content type, both NUL-terminated.
            const QByteArray strings = source.read(typeAt + 4, infe.end - typeAt - 4);
            const QList<QByteArray> parts = strings.split('\0');
            if (parts.size() >= 2 && parts[1] == "application/rdf+xml")
                items.emplace(*id, ItemKind::Xmp);
        }
        return true;
    });
    return items;
}

// The absolute start of each wanted item's first extent; items built from the meta box's own
// data (construction method 1 or 2) are no file offsets and are skipped.
std::map<quint32, qint64> itemStarts(const ByteSource &source, const Box &iloc,
                                     const std::map<quint32, ItemKind> &wanted)
{
    std::map<quint32, qint64> starts;
    const std::optional<quint8> version = source.read8(iloc.payload);
    const std::optional<quint8> sizes = source.read8(iloc.payload + 4);
    const std::optional<quint8> moreSizes = source.read8(iloc.payload + 5);
    if (!version || !sizes || !moreSizes || *version > 2)
        return starts;
    const int offsetSize = *sizes >> 4, lengthSize = *sizes & 15, baseSize = *moreSizes >> 4;
    const int indexSize = *version >= 1 ? (*moreSizes & 15) : 0;
    FieldReader fields(source, iloc.payload + 6, iloc.end);
    const quint64 count = fields.next(*version < 2 ? 2 : 4);
    for (quint64 i = 0; i < count && !fields.failed(); ++i) {
        const quint32 id = quint32(fields.next(*version < 2 ? 2 : 4));
        const quint64 method = *version >= 1 ? (fields.next(2) & 15) : 0;
        fields.next(2); // data reference index
        const quint64 base = fields.next(baseSize);
        const quint64 extents = fields.next(2);
        quint64 first = 0;
        for (quint64 e = 0; e < extents && !fields.failed(); ++e) {
            fields.next(indexSize);
            const quint64 offset = fields.next(offsetSize);
            fields.next(lengthSize);
            if (e == 0)
                first = offset;
        }
        if (fields.failed())
            break;
        const quint64 start = base + first;
        if (method == 0 && extents > 0 && wanted.count(id) && start < quint64(source.length()))
            starts.emplace(id, qint64(start));
    }
    return starts;
}

std::optional<quint32> storable(qint64 offset)
{
    if (offset <= 0 || offset > qint64(0xFFFFFFFE))
        return std::nullopt;
    return quint32(offset);
}

} // namespace

std::optional<BmffItemOffsets> preparedBMFFOffsets(const ByteSource &source)
{
    BoxWalker walker(source);
    const std::optional<Box> ftyp = walker.boxAt(0, source.length());
    if (!ftyp || ftyp->type != fourCC("ftyp"))
        return std::nullopt;
    const std::optional<Box> meta = walker.firstChild(ftyp->end, source.length(), 0, fourCC("meta"));
    if (!meta)
        return std::nullopt;
    std::optional<Box> iinf, iloc;
    walker.children(meta->payload + 4, meta->end, 1, [&](const Box &box) {
        if (box.type == fourCC("iinf"))
            iinf = box;
        else if (box.type == fourCC("iloc"))
            iloc = box;
        return !(iinf && iloc);
    });
    if (!iinf || !iloc)
        return std::nullopt;
    const std::map<quint32, ItemKind> items = metadataItems(walker, *iinf);
    BmffItemOffsets offsets;
    for (const auto &[id, start] : itemStarts(source, *iloc, items)) {
        if (items.at(id) == ItemKind::Exif && !offsets.exif) {
            // The payload begins with the distance from its end to the TIFF header.
            if (const std::optional<quint32> skip = source.read32(start, false))
                if (source.contains(start + 4 + *skip, 8))
                    offsets.exif = storable(start + 4 + *skip);
        } else if (items.at(id) == ItemKind::Xmp && !offsets.xmp) {
            offsets.xmp = storable(start);
        }
    }
    return offsets;
}

} // namespace orv
