#include "formats/RawPreviewLocator.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

namespace orv {

namespace {
constexpr int maxNesting = 3;
// Decoding at an eighth of the size proves the entropy data readable at a fraction of the cost.
constexpr int proofScale = 8;
} // namespace

std::optional<RawPreviewLocator::Candidate> RawPreviewLocator::validJpgDataFromSoi(qint64 soi,
                                                                                   qint64 eoi)
{
    if (eoi - soi > maxPreviewLength)
        return std::nullopt;
    QByteArray data = m_file.read(soi, eoi - soi);
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "jpeg");
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty())
        return std::nullopt;
    reader.setScaledSize(QSize(qMax(1, size.width() / proofScale),
                               qMax(1, size.height() / proofScale)));
    if (reader.read().isNull())
        return std::nullopt;
    return Candidate{data, size};
}

std::optional<RawPreviewInfo> RawPreviewLocator::savereadInternalJPGs(
    std::optional<TiffHeader> moreInfos)
{
    RawPreviewInfo info;
    if (moreInfos) {
        const qint64 base = moreInfos->offset;
        const TiffIfd ifd0 = TiffIfd::first(m_file, base, moreInfos->isIntel);
        if (const IfdEntry *make = ifd0.find(271))
            info.make = QString::fromUtf8(tiffAsciiValue(m_file, *make, base));
        if (const IfdEntry *model = ifd0.find(272))
            info.model = QString::fromUtf8(tiffAsciiValue(m_file, *model, base));
    }

    int levels = 0;
    qint64 soi = 0;
    m_file.scanBlocks(0, 2, [&](const ByteSource::Block &block) {
        const QByteArray &bytes = block.bytes;
        for (qsizetype pos = 0; pos < block.scanEnd; ++pos) {
            if (quint8(bytes[pos]) != 0xFF || pos + 1 >= bytes.size())
                continue;
            const quint8 marker = quint8(bytes[pos + 1]);
            if (marker == 0xD8 && pos + 2 < bytes.size() && quint8(bytes[pos + 2]) == 0xFF) {
                if (levels == maxNesting)
                    return false;
                if (levels == 0)
                    soi = block.offset + pos;
                ++levels;
            } else if (marker == 0xD9 && levels > 0 && --levels == 0) {
                const qint64 eoi = block.offset + pos + 2;
                const std::optional<Candidate> candidate = validJpgDataFromSoi(soi, eoi);
                if (!candidate)
                    return false;
                if (candidate->size.width() > info.jpgSize.width()
                    && candidate->size.height() > info.jpgSize.height()
                    && eoi <= qint64(0xFFFFFFFF)) {
                    info.jpgSize = candidate->size;
                    info.jpgData = candidate->data;
                    info.soiOffset = quint32(soi);
                    info.eoiOffset = quint32(eoi);
                }
                if (info.jpgSize.width() > sufficientSide && info.jpgSize.height() > sufficientSide)
                    return false;
            }
        }
        return true;
    });

    if (!info.hasPreview() && info.make.isEmpty() && info.model.isEmpty())
        return std::nullopt;
    return info;
}

} // namespace orv
