#include "core/IptcDates.h"

#include "time/DateStampCodec.h"
#include "time/TimeZone.h"

namespace orv {

namespace {

// "+HHMM" as an EXIF offset "+HH:MM".
QByteArray exifOffsetOf(const IptcDateRecord &record)
{
    if (record.timeData.size() != 11)
        return {};
    const QByteArray zone = record.timeData.mid(6);
    return zone.left(3) + ':' + zone.right(2);
}

} // namespace

std::optional<TimeZone> IptcDates::zoneOf(const IptcDateRecord &record)
{
    const std::optional<int> seconds = DateStampCodec::exactExifOffsetSeconds(exifOffsetOf(record) + '\0');
    return seconds ? TimeZone::fromOffsetSeconds(*seconds) : std::nullopt;
}

OptionalDate IptcDates::dateFrom(const IptcDateRecord &record, const TimeZone &local)
{
    const QByteArray &d = record.dateData;
    const QByteArray time = record.timeData.size() >= 6 ? record.timeData.left(6) : QByteArray("000000");
    const QByteArray stamp = d.left(4) + ':' + d.mid(4, 2) + ':' + d.mid(6, 2) + ' ' + time.left(2) + ':' +
                             time.mid(2, 2) + ':' + time.mid(4, 2);
    if (d.size() != 8 || d.startsWith("0000"))
        return std::nullopt;
    const Instant date = DateStampCodec::dateFromEXIFTimeStamp(QString::fromLatin1(stamp),
                                                               QString::fromLatin1(exifOffsetOf(record)), local);
    return date.isDistantPast() ? OptionalDate() : OptionalDate(date);
}

std::optional<IptcDateRecord> IptcDates::withDate(const IptcDateRecord &record, Instant date, const TimeZone &local)
{
    const TimeZone zone = zoneOf(record).value_or(local);
    const QByteArray stamp = DateStampCodec::exifDataFromDate(date, zone);
    if (stamp.size() != 20)
        return std::nullopt;
    IptcDateRecord written = record;
    written.dateData = stamp.left(4) + stamp.mid(5, 2) + stamp.mid(8, 2);
    if (record.timeData.size() >= 6)
        written.timeData.replace(0, 6, stamp.mid(11, 2) + stamp.mid(14, 2) + stamp.mid(17, 2));
    return written;
}

} // namespace orv
