#include "app/DatePasteboard.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QCborArray>
#include <QCborValue>
#include <QMimeData>

namespace orv::DatePasteboard {

std::unique_ptr<QMimeData> copy(const MySinglePic &pic)
{
    const OptionalDate date = pic.spDateTimeModified_sort();
    if (!date || date->isSentinel() || (pic.spSingleFolder && pic.spSingleFolder->isEXIFIgnored()))
        return nullptr;
    auto mime = std::make_unique<QMimeData>();
    mime->setData(dateType, QCborValue(date->secondsSinceEpoch()).toCbor());
    if (pic.gpsLat && pic.gpsLong)
        mime->setData(locationType, QCborArray{*pic.gpsLat, *pic.gpsLong}.toCborValue().toCbor());
    return mime;
}

bool hasPasteDate(const QMimeData *mime)
{
    return pastedDate(mime).has_value();
}

OptionalDate pastedDate(const QMimeData *mime)
{
    if (!mime || !mime->hasFormat(dateType))
        return std::nullopt;
    const QCborValue value = QCborValue::fromCbor(mime->data(dateType));
    if (!value.isDouble() && !value.isInteger())
        return std::nullopt;
    const Instant date(value.toDouble());
    if (date < Instant::minDate() || date > Instant::maxDate())
        return std::nullopt;
    return date;
}

} // namespace orv::DatePasteboard
