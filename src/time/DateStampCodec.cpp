#include "time/DateStampCodec.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace orv {

namespace {

// The fixed forms, in a small pattern language of our own: Y is the year in 4 digits; M month,
// D day, h hour, m minute, s second in 2 digits each; x an offset "+hh:mm", z an offset "+hhmm",
// Z "Z" for UTC or else "+hh:mm". Every other character stands for itself.
constexpr std::string_view ExifPattern = "Y:M:D h:m:s";
constexpr std::string_view ColonOffsetPattern = "x";
constexpr std::string_view FixedDatePattern = "Y-M-D h:m:s z";
constexpr std::string_view IsoLocalPattern = "Y-M-DTh:m:s";
constexpr std::string_view GpsDatePattern = "Y:M:D";
constexpr std::string_view RiffTailPattern = "D h:m:s Y\n";

struct LengthForm
{
    qsizetype length;
    std::string_view pattern;
};
// QuickTime metadata stamps tell their form by their length alone; XMP stamps use the same forms.
constexpr LengthForm IsoForms[] = {
    {16, "Y-M-DTh:m"},  {17, "Y-M-DTh:mZ"}, {19, IsoLocalPattern}, {20, "Y-M-DTh:m:sZ"},
    {21, "Y-M-DTh:mz"}, {22, "Y-M-DTh:mx"}, {24, "Y-M-DTh:m:sz"},  {25, "Y-M-DTh:m:sx"},
};

constexpr std::array<std::string_view, 12> MonthNames = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array<std::string_view, 7> WeekdayNames = {"Sun", "Mon", "Tue", "Wed",
                                                          "Thu", "Fri", "Sat"};

constexpr qsizetype ExifDataLength = 20;
constexpr qsizetype ExifOffsetDataLength = 7;
constexpr qsizetype MvhdDataLength = 4;
constexpr qsizetype MvhdLongDataLength = 8;
constexpr qsizetype RiffTextLength = 25;
constexpr qsizetype GpsTimeDataLength = 24;
constexpr qsizetype IsoDigitsWithSeconds = 19;
constexpr qsizetype IsoDigitsWithoutSeconds = 16;

std::optional<std::string_view> isoPatternOfLength(qsizetype length)
{
    for (const LengthForm &form : IsoForms) {
        if (form.length == length)
            return form.pattern;
    }
    return std::nullopt;
}

// The form of an XMP stamp is told by its kind rather than its length, which may carry fractions.
std::string_view xmpPattern(bool isLocalStamp, int subtype)
{
    const bool withSeconds = !(subtype & XmpStampKind::WithoutSeconds);
    qsizetype length = withSeconds ? IsoDigitsWithSeconds : IsoDigitsWithoutSeconds;
    if (!isLocalStamp)
        length += (subtype & XmpStampKind::OffsetWithoutColon) ? 5 : 6;
    return *isoPatternOfLength(length);
}

template <typename Civil> auto civilField(Civil &civil, char letter) -> decltype(&civil.year)
{
    switch (letter) {
    case 'Y':
        return &civil.year;
    case 'M':
        return &civil.month;
    case 'D':
        return &civil.day;
    case 'h':
        return &civil.hour;
    case 'm':
        return &civil.minute;
    case 's':
        return &civil.second;
    default:
        return nullptr;
    }
}

int fieldWidth(char letter)
{
    return letter == 'Y' ? 4 : 2;
}

bool isOffsetLetter(char letter)
{
    return letter == 'x' || letter == 'z' || letter == 'Z';
}

std::optional<int> readNumber(QStringView text, qsizetype &pos, int width)
{
    if (pos + width > text.size())
        return std::nullopt;
    int value = 0;
    for (int i = 0; i < width; ++i) {
        const char16_t c = text[pos + i].unicode();
        if (c < u'0' || c > u'9')
            return std::nullopt;
        value = value * 10 + (c - u'0');
    }
    pos += width;
    return value;
}

std::optional<int> readOffset(QStringView text, qsizetype &pos, char form)
{
    if (pos >= text.size())
        return std::nullopt;
    if (form == 'Z' && text[pos] == u'Z') {
        ++pos;
        return 0;
    }
    const QChar sign = text[pos++];
    if (sign != u'+' && sign != u'-')
        return std::nullopt;
    const std::optional<int> hours = readNumber(text, pos, 2);
    if (form != 'z' && (pos >= text.size() || text[pos++] != u':'))
        return std::nullopt;
    const std::optional<int> minutes = readNumber(text, pos, 2);
    if (!hours || !minutes || *hours > 23 || *minutes > 59)
        return std::nullopt;
    const int seconds = *hours * 3600 + *minutes * 60;
    return sign == u'-' ? -seconds : seconds;
}

bool isValidCivil(const Instant::Civil &c)
{
    return c.year >= 1 && c.month >= 1 && c.month <= 12 && c.day >= 1 &&
           c.day <= Instant::daysInMonth(c.year, c.month) && c.hour <= 23 && c.minute <= 59 &&
           c.second <= 59;
}

struct Reading
{
    Instant::Civil civil{1, 1, 1, 0, 0, 0, 0.0};
    std::optional<int> offsetSeconds;
};

// The whole text must match the pattern and name a real calendar date.
std::optional<Reading> parse(std::string_view pattern, QStringView text)
{
    Reading reading;
    qsizetype pos = 0;
    for (const char letter : pattern) {
        if (int *field = civilField(reading.civil, letter)) {
            const std::optional<int> value = readNumber(text, pos, fieldWidth(letter));
            if (!value)
                return std::nullopt;
            *field = *value;
        } else if (isOffsetLetter(letter)) {
            reading.offsetSeconds = readOffset(text, pos, letter);
            if (!reading.offsetSeconds)
                return std::nullopt;
        } else if (pos >= text.size() || text[pos++] != QLatin1Char(letter)) {
            return std::nullopt;
        }
    }
    if (pos != text.size() || !isValidCivil(reading.civil))
        return std::nullopt;
    return reading;
}

void appendNumber(QString &out, int value, int width)
{
    out += QString::number(value).rightJustified(width, u'0');
}

void appendOffset(QString &out, int offsetSeconds, char form)
{
    if (form == 'Z' && offsetSeconds == 0) {
        out += u'Z';
        return;
    }
    out += offsetSeconds < 0 ? u'-' : u'+';
    const int minutes = std::abs(offsetSeconds) / 60;
    appendNumber(out, minutes / 60, 2);
    if (form != 'z')
        out += u':';
    appendNumber(out, minutes % 60, 2);
}

QString format(std::string_view pattern, const Instant::Civil &civil, int offsetSeconds)
{
    QString out;
    out.reserve(qsizetype(pattern.size()) * 2);
    for (const char letter : pattern) {
        if (const int *field = civilField(civil, letter))
            appendNumber(out, *field, fieldWidth(letter));
        else if (isOffsetLetter(letter))
            appendOffset(out, offsetSeconds, letter);
        else
            out += QLatin1Char(letter);
    }
    return out;
}

struct ZonedCivil
{
    Instant::Civil civil;
    int offsetSeconds;
};

// Stamps carry offsets in whole minutes. Where a zone's offset has seconds (local mean time,
// before the 1890s), the clock of a stamp that shows its offset follows the printed offset, so
// that the stamp still names its instant.
ZonedCivil zonedCivil(Instant date, const TimeZone &zone, bool offsetIsWritten)
{
    int offset = zone.secondsFromGMTForDate(date);
    if (offsetIsWritten)
        offset -= offset % 60;
    return {date.addingSeconds(offset).toUtcCivil(), offset};
}

QString formatInZone(std::string_view pattern, Instant date, const TimeZone &zone)
{
    const bool offsetIsWritten = std::any_of(pattern.begin(), pattern.end(), isOffsetLetter);
    const ZonedCivil local = zonedCivil(date, zone, offsetIsWritten);
    return format(pattern, local.civil, local.offsetSeconds);
}

Instant instantOf(const Reading &reading, const TimeZone &zone)
{
    if (reading.offsetSeconds)
        return Instant::fromUtc(reading.civil).addingSeconds(-*reading.offsetSeconds);
    return zone.instantFromLocalCivil(reading.civil);
}

OptionalDate readDate(std::string_view pattern, QStringView text, const TimeZone &zone)
{
    const std::optional<Reading> reading = parse(pattern, text);
    if (!reading)
        return std::nullopt;
    return instantOf(*reading, zone);
}

bool isWritable(Instant date)
{
    return DateStampCodec::isWritableDate(date);
}

// A text cut at its first NUL, as the C string it was written as.
qsizetype cStringLength(QByteArrayView data)
{
    return qsizetype(qstrnlen(data.data(), size_t(data.size())));
}

std::optional<Reading> exifReading(QStringView stamp)
{
    return parse(ExifPattern,
                 stamp.size() > IsoDigitsWithSeconds ? stamp.first(IsoDigitsWithSeconds) : stamp);
}

struct TimeOfDay
{
    int hour, minute, second;
};

// Three rationals; a zero denominator counts as 1, and a count of seconds or minutes of 60 and
// more is carried into the larger units.
std::optional<TimeOfDay> gpsTimeOfDay(QByteArrayView data, QSysInfo::Endian byteOrder)
{
    if (data.size() != GpsTimeDataLength)
        return std::nullopt;
    const auto read = [byteOrder](const char *at) {
        return byteOrder == QSysInfo::BigEndian ? qFromBigEndian<quint32>(at)
                                                : qFromLittleEndian<quint32>(at);
    };
    std::array<quint64, 3> units{};
    for (qsizetype i = 0; i < 3; ++i) {
        const char *rational = data.data() + i * 8;
        const quint32 denominator = read(rational + 4);
        units[i] = read(rational) / (denominator == 0 ? 1 : denominator);
    }
    auto &[hours, minutes, seconds] = units;
    if (seconds >= 60 || minutes >= 60) {
        hours += seconds / 3600;
        seconds %= 3600;
        minutes += seconds / 60;
        seconds %= 60;
        hours += minutes / 60;
        minutes %= 60;
    }
    if (hours >= 24)
        return std::nullopt;
    return TimeOfDay{int(hours), int(minutes), int(seconds)};
}

} // namespace

// ---- EXIF

QString DateStampCodec::exifTimeStampFromData(QByteArrayView data)
{
    if (data.size() != ExifDataLength)
        return {};
    const qsizetype length = cStringLength(data);
    const bool onlyNulsFollow =
        std::all_of(data.begin() + length, data.end(), [](char c) { return c == '\0'; });
    if (!onlyNulsFollow)
        return {};
    const QString text = QString::fromLatin1(data.first(length));
    switch (length) {
    case 19:
        return text;
    case 18:
        return text + QLatin1String("0");
    case 17:
        return text + QLatin1String("00");
    default:
        return {};
    }
}

bool DateStampCodec::isValidZeroStamp(QStringView stamp)
{
    return !exifReading(stamp);
}

QString DateStampCodec::exifOffsetFromData(QByteArrayView data)
{
    if (data.size() != ExifOffsetDataLength)
        return {};
    return QString::fromLatin1(data.first(cStringLength(data)));
}

bool DateStampCodec::isWritableDate(Instant date)
{
    return !date.isSentinel() && date.wholeSeconds() >= Instant::minDate().secondsSinceEpoch() &&
           date.wholeSeconds() <= Instant::maxDate().secondsSinceEpoch();
}

std::optional<int> DateStampCodec::exactExifOffsetSeconds(QByteArrayView data)
{
    if (data.size() != ExifOffsetDataLength || data.back() != '\0')
        return std::nullopt;
    const std::optional<Reading> reading =
        parse(ColonOffsetPattern, QString::fromLatin1(data.first(data.size() - 1)));
    return reading ? reading->offsetSeconds : std::nullopt;
}

QByteArray DateStampCodec::cameraClockOffset(QByteArrayView original, QByteArrayView digitized,
                                             QByteArrayView modified)
{
    for (const QByteArrayView tag : {original, digitized, modified}) {
        if (exactExifOffsetSeconds(tag))
            return tag.toByteArray();
    }
    return {};
}

Instant DateStampCodec::dateFromEXIFTimeStamp(QStringView stamp, const TimeZone &zone)
{
    return dateFromEXIFTimeStamp(stamp, QStringView(), zone);
}

Instant DateStampCodec::dateFromEXIFTimeStamp(QStringView stamp, QStringView offset,
                                              const TimeZone &zoneWithoutOffset)
{
    const std::optional<Reading> reading = exifReading(stamp);
    if (!reading)
        return Instant::distantPast();
    // A broken offset tag must not cost the file a good date: the stamp then stands alone.
    const std::optional<Reading> offsetReading = parse(ColonOffsetPattern, offset);
    if (offsetReading)
        return Instant::fromUtc(reading->civil).addingSeconds(-*offsetReading->offsetSeconds);
    return zoneWithoutOffset.instantFromLocalCivil(reading->civil);
}

Instant DateStampCodec::dateFromExifData(QByteArrayView stamp, const TimeZone &zone)
{
    return dateFromEXIFTimeStamp(exifTimeStampFromData(stamp), zone);
}

Instant DateStampCodec::dateFromExifData(QByteArrayView stamp, QByteArrayView offset,
                                         const TimeZone &zoneWithoutOffset)
{
    return dateFromEXIFTimeStamp(exifTimeStampFromData(stamp), exifOffsetFromData(offset),
                                 zoneWithoutOffset);
}

QByteArray DateStampCodec::exifDataFromDate(Instant date, const TimeZone &zone)
{
    if (!isWritable(date))
        return {};
    return terminatedStringDataFromData(formatInZone(ExifPattern, date, zone).toLatin1());
}

ExifStampWithOffset DateStampCodec::exifWithOffsetDatasFromDate(Instant date, const TimeZone &zone)
{
    if (!isWritable(date))
        return {};
    const ZonedCivil local = zonedCivil(date, zone, true);
    const auto data = [&local](std::string_view pattern) {
        return terminatedStringDataFromData(
            format(pattern, local.civil, local.offsetSeconds).toLatin1());
    };
    return {data(ExifPattern), data(ColonOffsetPattern)};
}

QByteArray DateStampCodec::unterminatedStringDataFromData(QByteArrayView data)
{
    return data.first(cStringLength(data)).toByteArray();
}

QByteArray DateStampCodec::terminatedStringDataFromData(QByteArrayView data)
{
    return unterminatedStringDataFromData(data).append('\0');
}

OptionalDate DateStampCodec::myDateWithString(QStringView text)
{
    return readDate(FixedDatePattern, text, TimeZone::utc());
}

// ---- Movie header

OptionalDate DateStampCodec::dateFromMVHDData(QByteArrayView data)
{
    if (data.size() == MvhdDataLength)
        return mvhdBaseDate().addingSeconds(qFromBigEndian<quint32>(data.data()));
    if (data.size() != MvhdLongDataLength)
        return std::nullopt;
    const quint64 seconds = qFromBigEndian<quint64>(data.data());
    // Far beyond any date the system can hold: a broken field, not a date.
    if (seconds > quint64(Instant::maxDate().secondsSince(mvhdBaseDate())))
        return std::nullopt;
    return mvhdBaseDate().addingSeconds(double(seconds));
}

Instant DateStampCodec::correctedDateFromMVHDDate(Instant date, const TimeZone &zone)
{
    return zone.instantFromLocalCivil(date.toUtcCivil());
}

Instant DateStampCodec::mvhdDateFromCorrectedDate(Instant date, const TimeZone &zone)
{
    Instant::Civil local = zone.localCivil(date);
    local.fraction = 0.0;
    return Instant::fromUtc(local);
}

OptionalDate DateStampCodec::finalDateFromMVHDData(QByteArrayView data, bool correction,
                                                   const TimeZone &zone)
{
    const OptionalDate date = dateFromMVHDData(data);
    if (date && correction)
        return correctedDateFromMVHDDate(*date, zone);
    return date;
}

QByteArray DateStampCodec::mvhdDataFromDate(Instant date, bool correction, const TimeZone &zone,
                                            int length)
{
    if (!isWritable(date) || (length != MvhdDataLength && length != MvhdLongDataLength))
        return {};
    const Instant stored = correction ? mvhdDateFromCorrectedDate(date, zone) : date;
    const double seconds = std::max(std::floor(stored.secondsSince(mvhdBaseDate())), 1.0);
    QByteArray data(length, '\0');
    if (length == MvhdLongDataLength) {
        qToBigEndian<quint64>(quint64(seconds), data.data());
        return data;
    }
    if (seconds > double(std::numeric_limits<quint32>::max()))
        return {};
    qToBigEndian<quint32>(quint32(seconds), data.data());
    return data;
}

// ---- QuickTime metadata

OptionalDate DateStampCodec::dateFromMDTATimeStamp(QStringView stamp, const TimeZone &zone)
{
    const std::optional<std::string_view> pattern = isoPatternOfLength(stamp.size());
    if (!pattern)
        return std::nullopt;
    return readDate(*pattern, stamp, zone);
}

OptionalDate DateStampCodec::dateIgnoringFromMDTATimeStamp(QStringView stamp, const TimeZone &zone)
{
    if (stamp.size() < IsoDigitsWithSeconds)
        return std::nullopt;
    return readDate(IsoLocalPattern, stamp.first(IsoDigitsWithSeconds), zone);
}

QByteArray DateStampCodec::mdtaDataOfLength(int length, Instant date, const TimeZone &zone)
{
    const std::optional<std::string_view> pattern = isoPatternOfLength(length);
    if (!pattern || !isWritable(date))
        return {};
    const QString text = formatInZone(*pattern, date, length == 20 ? TimeZone::utc() : zone);
    return text.size() == length ? text.toLatin1() : QByteArray();
}

// ---- RIFF

namespace {

constexpr qsizetype RiffTextDateLength = 24;

// The pattern of a digits-only stamp, with its own separator between year, month and day.
std::optional<std::string> riffDigitsPattern(QStringView stamp)
{
    if (stamp.size() < IsoDigitsWithSeconds)
        return std::nullopt;
    const QChar separator = stamp[4];
    if (!QStringView(u"/:-").contains(separator) || stamp[7] != separator)
        return std::nullopt;
    const bool onlyPaddingFollows =
        std::all_of(stamp.begin() + IsoDigitsWithSeconds, stamp.end(),
                    [](QChar c) { return c == u'\0' || c == u' ' || c == u'\n' || c == u'\r'; });
    if (!onlyPaddingFollows)
        return std::nullopt;
    std::string pattern = "Y-M-D h:m:s";
    pattern[1] = pattern[3] = char(separator.unicode());
    return pattern;
}

} // namespace

OptionalDate DateStampCodec::dateFromRIFFTimeStamp(QStringView stamp, const TimeZone &zone)
{
    if (const std::optional<std::string> pattern = riffDigitsPattern(stamp))
        return readDate(*pattern, stamp.first(IsoDigitsWithSeconds), zone);
    if (stamp.size() < RiffTextDateLength)
        return std::nullopt;
    const QStringView month = stamp.sliced(4, 3);
    const auto monthName =
        std::find_if(MonthNames.begin(), MonthNames.end(), [month](std::string_view name) {
            return month.compare(QLatin1String(name.data(), qsizetype(name.size())),
                                 Qt::CaseInsensitive) == 0;
        });
    if (monthName == MonthNames.end())
        return std::nullopt;
    // Some cameras pad one-digit numbers with a blank.
    const auto digits = [stamp](qsizetype from, qsizetype width) {
        return stamp.sliced(from, width).toString().replace(u' ', u'0');
    };
    QString iso = digits(20, 4) + u'-';
    appendNumber(iso, int(monthName - MonthNames.begin()) + 1, 2);
    iso += u'-' + digits(8, 2) + u'T' + digits(11, 2) + u':' + digits(14, 2) + u':' + digits(17, 2);
    return readDate(IsoLocalPattern, iso, zone);
}

QString DateStampCodec::riffTimeStampFromDate(Instant date, const TimeZone &zone)
{
    if (!isWritable(date))
        return {};
    const Instant::Civil local = zone.localCivil(date);
    const std::int64_t days = Instant::daysFromCivil(local.year, local.month, local.day);
    // 1970-01-01 was a Thursday.
    const std::string_view weekday = WeekdayNames[size_t(((days % 7) + 7 + 4) % 7)];
    const std::string_view month = MonthNames[size_t(local.month - 1)];
    return QString::fromLatin1(weekday) + u' ' + QString::fromLatin1(month) + u' ' +
           format(RiffTailPattern, local, 0);
}

QByteArray DateStampCodec::riffDataFromTimeStamp(QStringView stamp)
{
    if (stamp.size() != RiffTextLength)
        return {};
    return terminatedStringDataFromData(stamp.toLatin1());
}

QByteArray DateStampCodec::riffDataLike(QByteArrayView stored, Instant date, const TimeZone &zone)
{
    const QString storedText = QString::fromLatin1(stored);
    if (!isWritable(date) || !dateFromRIFFTimeStamp(storedText, zone))
        return {};
    QByteArray written = stored.toByteArray();
    if (const std::optional<std::string> pattern = riffDigitsPattern(storedText)) {
        written.replace(0, IsoDigitsWithSeconds, formatInZone(*pattern, date, zone).toLatin1());
        return written;
    }
    QByteArray text = riffDataFromTimeStamp(riffTimeStampFromDate(date, zone)).left(RiffTextDateLength);
    if (text.size() != RiffTextDateLength)
        return {};
    // Some cameras write the names in capitals.
    if (stored.first(RiffTextDateLength).toByteArray() == stored.first(RiffTextDateLength).toByteArray().toUpper())
        text = text.toUpper();
    written.replace(0, RiffTextDateLength, text);
    return written;
}

// ---- XMP

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isSign(char c)
{
    return c == '+' || c == '-';
}

// "yyyy-MM-ddTHH:mm", the part every XMP date stamp begins with.
bool hasIsoDigitsPrefix(QByteArrayView s)
{
    if (s.size() < IsoDigitsWithoutSeconds)
        return false;
    for (qsizetype i = 0; i < IsoDigitsWithoutSeconds; ++i) {
        const char expected = i == 4 || i == 7 ? '-' : i == 10 ? 'T' : i == 13 ? ':' : '0';
        if (expected == '0' ? !isDigit(s[i]) : s[i] != expected)
            return false;
    }
    return true;
}

bool hasOnlyStampCharactersFrom(QByteArrayView s, qsizetype from)
{
    return std::all_of(s.begin() + from, s.end(), [](char c) {
        return isDigit(c) || isSign(c) || c == '.' || c == ':' || c == 'Z';
    });
}

// The zone of a stamp whose digits end before `zoneSearchStart`.
XmpStampKind xmpZoneKind(QByteArrayView s, qsizetype zoneSearchStart, int subtype)
{
    const qsizetype n = s.size();
    if (s.back() == 'Z')
        return {XmpStampKind::Utc, subtype};
    const auto digitsAt = [&s](qsizetype from, qsizetype count) {
        return std::all_of(s.begin() + from, s.begin() + from + count, isDigit);
    };
    if (isSign(s[n - 6]) && digitsAt(n - 5, 2) && s[n - 3] == ':' && digitsAt(n - 2, 2))
        return {XmpStampKind::OwnOffset, subtype};
    if (isSign(s[n - 5]) && digitsAt(n - 4, 4))
        return {XmpStampKind::OwnOffset, subtype | XmpStampKind::OffsetWithoutColon};
    const bool zoneless = std::none_of(s.begin() + zoneSearchStart, s.end(),
                                       [](char c) { return isSign(c) || c == ':' || c == 'Z'; });
    return zoneless ? XmpStampKind{XmpStampKind::Local, subtype} : XmpStampKind{};
}

XmpStampKind verifiedXmpDateDataTypeSpecial(QByteArrayView s)
{
    if (s.size() < 16 || s.size() > 26 || !hasIsoDigitsPrefix(s) ||
        !hasOnlyStampCharactersFrom(s, IsoDigitsWithoutSeconds))
        return {};
    return xmpZoneKind(s, IsoDigitsWithoutSeconds, XmpStampKind::WithoutSeconds);
}

} // namespace

XmpStampKind DateStampCodec::verifiedXmpDateDataType(QByteArrayView stamp)
{
    const qsizetype n = stamp.size();
    if (n == IsoDigitsWithoutSeconds || (n > IsoDigitsWithoutSeconds && stamp[16] != ':'))
        return verifiedXmpDateDataTypeSpecial(stamp);
    if (n < 19 || n > 29 || !hasIsoDigitsPrefix(stamp) || !hasOnlyStampCharactersFrom(stamp, 17))
        return {};
    return xmpZoneKind(stamp, IsoDigitsWithSeconds, 0);
}

OptionalDate DateStampCodec::xmpDateFromStampInfos(QByteArrayView stamp, XmpStampKind kind,
                                                   const TimeZone &zone)
{
    if (kind.type != XmpStampKind::Utc && kind.type != XmpStampKind::OwnOffset &&
        kind.type != XmpStampKind::Local)
        return std::nullopt;
    const qsizetype digits = (kind.subtype & XmpStampKind::WithoutSeconds) ? IsoDigitsWithoutSeconds
                                                                           : IsoDigitsWithSeconds;
    const bool hasOffset = kind.type == XmpStampKind::OwnOffset;
    const qsizetype offsetLength = !hasOffset                                          ? 0
                                   : (kind.subtype & XmpStampKind::OffsetWithoutColon) ? 5
                                                                                       : 6;
    if (stamp.size() < digits + offsetLength)
        return std::nullopt;
    // Fractions between the seconds and the offset are of no interest to a date.
    const QString text =
        QString::fromLatin1(stamp.first(digits)) + QString::fromLatin1(stamp.last(offsetLength));
    return dateFromXmpTimeStamp(text, kind.type == XmpStampKind::Utc ? TimeZone::utc() : zone,
                                !hasOffset, kind.subtype);
}

OptionalDate DateStampCodec::dateFromXmpTimeStamp(QStringView stamp, const TimeZone &zone,
                                                  bool isLocalStamp, int subtype)
{
    return readDate(xmpPattern(isLocalStamp, subtype), stamp, zone);
}

QString DateStampCodec::xmpTimeStampFromDate(Instant date, const TimeZone &zone, bool isLocalStamp,
                                             int subtype)
{
    if (!isWritable(date))
        return {};
    return formatInZone(xmpPattern(isLocalStamp, subtype), date, zone);
}

bool DateStampCodec::seemsValidXMPString(QStringView stamp, int subtype)
{
    const bool withSeconds = !(subtype & XmpStampKind::WithoutSeconds);
    if (stamp.size() < (withSeconds ? IsoDigitsWithSeconds : IsoDigitsWithoutSeconds))
        return false;
    return stamp[4] == u'-' && stamp[7] == u'-' && stamp[10] == u'T' && stamp[13] == u':' &&
           (!withSeconds || stamp[16] == u':');
}

// ---- GPS

QByteArray DateStampCodec::gpsDateDataFromTimeStamp(Instant date)
{
    if (!isWritable(date))
        return {};
    return terminatedStringDataFromData(format(GpsDatePattern, date.toUtcCivil(), 0).toLatin1());
}

QByteArray DateStampCodec::gpsTimeDataFromTimeStamp(Instant date, QSysInfo::Endian byteOrder)
{
    if (!isWritable(date))
        return {};
    const Instant::Civil utc = date.toUtcCivil();
    const std::array<quint32, 6> rationals = {quint32(utc.hour),   1, quint32(utc.minute), 1,
                                              quint32(utc.second), 1};
    QByteArray data(GpsTimeDataLength, '\0');
    for (size_t i = 0; i < rationals.size(); ++i) {
        char *at = data.data() + i * 4;
        if (byteOrder == QSysInfo::BigEndian)
            qToBigEndian(rationals[i], at);
        else
            qToLittleEndian(rationals[i], at);
    }
    return data;
}

QByteArray DateStampCodec::gpsTimeDataKeepingPrecision(QByteArrayView previous, Instant date,
                                                       QSysInfo::Endian byteOrder)
{
    if (previous.size() != GpsTimeDataLength || !isWritable(date))
        return {};
    const auto read = [&](int i) {
        const char *at = previous.data() + i * 4;
        return quint64(byteOrder == QSysInfo::BigEndian ? qFromBigEndian<quint32>(at)
                                                        : qFromLittleEndian<quint32>(at));
    };
    std::array<quint64, 6> rationals{};
    for (int i = 0; i < 6; ++i)
        rationals[size_t(i)] = read(i);
    const quint64 hoursDenominator = rationals[1], minutesDenominator = rationals[3],
                  secondsDenominator = rationals[5];
    if (hoursDenominator == 0 || minutesDenominator == 0 || secondsDenominator == 0 ||
        rationals[0] % hoursDenominator != 0 || rationals[2] % minutesDenominator != 0)
        return {};
    const Instant::Civil utc = date.toUtcCivil();
    rationals[0] = quint64(utc.hour) * hoursDenominator;
    rationals[2] = quint64(utc.minute) * minutesDenominator;
    rationals[4] = quint64(utc.second) * secondsDenominator + rationals[4] % secondsDenominator;
    QByteArray data(GpsTimeDataLength, '\0');
    for (size_t i = 0; i < rationals.size(); ++i) {
        if (rationals[i] > std::numeric_limits<quint32>::max())
            return {};
        char *at = data.data() + i * 4;
        if (byteOrder == QSysInfo::BigEndian)
            qToBigEndian(quint32(rationals[i]), at);
        else
            qToLittleEndian(quint32(rationals[i]), at);
    }
    return data;
}

OptionalDate DateStampCodec::updatedGpsDateWithCreationDate(QByteArrayView dateStamp,
                                                            QByteArrayView timeStamp,
                                                            QSysInfo::Endian byteOrder,
                                                            OptionalDate creationDate)
{
    if (dateStamp.isEmpty() && timeStamp.isEmpty())
        return std::nullopt;
    if ((dateStamp.isEmpty() || timeStamp.isEmpty()) && !creationDate)
        return std::nullopt;
    const Instant::Civil creation = creationDate ? creationDate->toUtcCivil() : Instant::Civil{};

    Instant::Civil day = creation;
    if (!dateStamp.isEmpty()) {
        const std::optional<Reading> reading =
            parse(GpsDatePattern, QString::fromLatin1(dateStamp.first(cStringLength(dateStamp))));
        if (!reading)
            return std::nullopt;
        day = reading->civil;
    }
    TimeOfDay time{creation.hour, creation.minute, creation.second};
    if (!timeStamp.isEmpty()) {
        const std::optional<TimeOfDay> stamped = gpsTimeOfDay(timeStamp, byteOrder);
        if (!stamped)
            return std::nullopt;
        time = *stamped;
    }
    Instant date =
        Instant::fromUtc(day.year, day.month, day.day, time.hour, time.minute, time.second);
    // A time without its day belongs to the day of the capture as seen in UTC, which can be the
    // day before or after when the capture was late or early in its own zone.
    if (dateStamp.isEmpty()) {
        const double fromCreation = date.secondsSince(*creationDate);
        if (fromCreation > 43200.0)
            date = date.addingSeconds(-86400.0);
        else if (fromCreation < -43200.0)
            date = date.addingSeconds(86400.0);
    }
    return date;
}

} // namespace orv
