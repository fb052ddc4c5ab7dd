#pragma once

#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <QSysInfo>

namespace orv {

// How an XMP date stamp names its zone, as the reader records it beside the stamp.
struct XmpStampKind
{
    // `type`
    static constexpr int NoStamp = 0;
    static constexpr int Utc = 1;       // ends with "Z"
    static constexpr int OwnOffset = 2; // ends with "+01:00" or "+0100"
    static constexpr int Local = 3;     // no zone at all
    // `subtype` bits
    static constexpr int OffsetWithoutColon = 1;
    static constexpr int WithoutSeconds = 2;

    int type = NoStamp;
    int subtype = 0;

    bool operator==(const XmpStampKind &) const = default;
};

// An EXIF date and its offset tag, both as the file holds them: "yyyy:MM:dd HH:mm:ss" and
// "+hh:mm", each with its NUL (20 and 7 bytes).
struct ExifStampWithOffset
{
    QByteArray stamp;
    QByteArray offset;
};

// Every date stamp a media file can hold, read and written byte for byte: EXIF with and without
// offset tags, XMP, QuickTime metadata and movie headers, AVI (RIFF) and GPS. The fixed formats
// are parsed and printed here by hand, with no locale in play, so a stamp reads the same on every
// machine. All functions are pure and thread-safe.
//
// Readers never fail loudly: a stamp they cannot read gives nothing (or distantPast where the
// caller must tell an empty tag from a missing one). Writers produce exactly the bytes to put in
// the file and give an empty result when the date cannot be written: a sentinel, a date outside
// minDate..maxDate, or a stamp that would not keep the length the file has room for. Fractions
// of a second are never written; dates are cut down to the whole second before them.
class DateStampCodec
{
public:
    DateStampCodec() = delete;

    // ---- EXIF: "yyyy:MM:dd HH:mm:ss" in 20 bytes, optionally with an offset tag "+hh:mm"

    // The text of a 20-byte date field. A stamp cut short by NULs is completed: 18 characters
    // and two NULs take a "0", 17 characters and three NULs take "00". Anything else is no text.
    static QString exifTimeStampFromData(QByteArrayView data);
    // True when the stamp cannot be read as a date: blanks, zeros, no text. Such a tag exists
    // but is to be filled. A text of 20 or more characters is judged on its first 19.
    static bool isValidZeroStamp(QStringView stamp);
    // Within minDate and maxDate, to the whole second, and no sentinel: a date a file can hold.
    static bool isWritableDate(Instant date);
    // The text of a 7-byte offset tag, "+01:00"; nothing for any other length.
    static QString exifOffsetFromData(QByteArrayView data);
    // The seconds east of UTC an offset tag names, only when its 7 bytes are exactly "+HH:MM"
    // and a NUL: a damaged tag is not guessed at.
    static std::optional<int> exactExifOffsetSeconds(QByteArrayView data);
    // One camera clock wrote every stamp of a file: the offset that a stamp without an offset
    // tag of its own was written in is the first exact one of OffsetTimeOriginal,
    // OffsetTimeDigitized and OffsetTime (pass empty data for a missing tag). Empty when none is.
    static QByteArray cameraClockOffset(QByteArrayView original, QByteArrayView digitized,
                                        QByteArrayView modified);

    // The instant of a stamp read as wall-clock time in `zone`; distantPast when unusable.
    static Instant dateFromEXIFTimeStamp(QStringView stamp, const TimeZone &zone);
    // With an offset text the stamp names its own instant; without one, or with an offset that
    // cannot be read, the stamp is wall-clock time in `zoneWithoutOffset`. An unusable stamp
    // gives distantPast.
    static Instant
    dateFromEXIFTimeStamp(QStringView stamp, QStringView offset,
                          const TimeZone &zoneWithoutOffset = TimeZone::systemZone());
    static Instant dateFromExifData(QByteArrayView stamp, const TimeZone &zone);
    // The date of a 20-byte stamp and its 7-byte offset tag (empty when the file has none).
    static Instant dateFromExifData(QByteArrayView stamp, QByteArrayView offset,
                                    const TimeZone &zoneWithoutOffset = TimeZone::systemZone());

    // The 20 bytes of a stamp for `date` as wall-clock time in `zone`.
    static QByteArray exifDataFromDate(Instant date, const TimeZone &zone);
    // The stamp and the offset tag that `zone` has at `date`.
    static ExifStampWithOffset exifWithOffsetDatasFromDate(Instant date, const TimeZone &zone);

    // The bytes of a C string without its NUL (everything from the first NUL on is dropped), and
    // with exactly one NUL. In-place writes put 19 bytes of a 20-byte stamp, for instance.
    static QByteArray unterminatedStringDataFromData(QByteArrayView data);
    static QByteArray terminatedStringDataFromData(QByteArrayView data);

    // A fixed date given as "yyyy-MM-dd HH:mm:ss +hhmm", such as "1904-01-01 00:00:00 +0000".
    static OptionalDate myDateWithString(QStringView text);

    // ---- Movie header (mvhd): big-endian 32-bit seconds since 1904-01-01 00:00:00 UTC

    static constexpr Instant mvhdBaseDate() { return Instant::fromUtc(1904, 1, 1); }

    // 4 bytes, or 8 from a version 1 header; nothing for other lengths.
    static OptionalDate dateFromMVHDData(QByteArrayView data);
    // Cameras that write local time into a field meant for UTC: the UTC wall clock of `date` is
    // taken as the wall clock in `zone`.
    static Instant correctedDateFromMVHDDate(Instant date, const TimeZone &zone);
    // The reverse: the wall clock in `zone`, whole seconds, read as UTC.
    static Instant mvhdDateFromCorrectedDate(Instant date, const TimeZone &zone);
    static OptionalDate finalDateFromMVHDData(QByteArrayView data, bool correction,
                                              const TimeZone &zone);
    // `length` bytes, 4 or 8 (a version 1 header). A date at or before the 1904 base writes 1,
    // never 0, because 0 marks an unset header. 4 bytes are empty past the 32-bit range
    // (2040-02-06 06:28:15 UTC).
    static QByteArray mvhdDataFromDate(Instant date, bool correction, const TimeZone &zone,
                                       int length = 4);

    // ---- QuickTime metadata creation date: ISO text whose length names its form
    //  16 yyyy-MM-ddTHH:mm            17 ...HH:mmZ            19 ...HH:mm:ss      20 ...HH:mm:ssZ
    //  21 ...HH:mm+hhmm               22 ...HH:mm+hh:mm       24 ...ss+hhmm       25 ...ss+hh:mm

    // A stamp without offset is wall-clock time in `zone`. Nothing for other lengths.
    static OptionalDate dateFromMDTATimeStamp(QStringView stamp,
                                              const TimeZone &zone = TimeZone::systemZone());
    // Only the first 19 characters, as wall-clock time in `zone`: what the digits say,
    // whatever offset follows them.
    static OptionalDate dateIgnoringFromMDTATimeStamp(QStringView stamp, const TimeZone &zone);
    // Exactly `length` bytes in the form of that length; length 20 is always written in UTC,
    // the others in `zone`. Empty for a length without a form, or when the zone's offset does not
    // fit it (length 17 outside UTC).
    static QByteArray mdtaDataOfLength(int length, Instant date, const TimeZone &zone);

    // ---- AVI (RIFF IDIT): most cameras write "EEE MMM dd HH:mm:ss yyyy\n" and a NUL in 26
    // bytes; others the digits alone, "yyyy/MM/dd HH:mm:ss" and a NUL in 20 bytes, with '/', ':'
    // or '-' between the numbers of the day.

    // Either form. In the first the weekday is not read, the month is matched in any case, and
    // numbers padded with a blank ("Oct  7") are accepted. After the digits form only NULs,
    // blanks and line ends may follow.
    static OptionalDate dateFromRIFFTimeStamp(QStringView stamp, const TimeZone &zone);
    static QString riffTimeStampFromDate(Instant date, const TimeZone &zone);
    // 26 bytes; empty unless the text has the 25 characters of the form.
    static QByteArray riffDataFromTimeStamp(QStringView stamp);
    // `date` in the form, separators, letter case and length of a stamp read from a file, so
    // that it can take the stamp's place; empty when the stamp is of neither form.
    static QByteArray riffDataLike(QByteArrayView stored, Instant date, const TimeZone &zone);

    // ---- XMP: ISO text with or without seconds, fractions, "Z" or an offset

    // The kind of a stamp found in a packet; type NoStamp when it is none.
    static XmpStampKind verifiedXmpDateDataType(QByteArrayView stamp);
    // The date of a stamp of a known kind. "Z" stamps are read in UTC, local ones in `zone`,
    // the others by their own offset. Fractions are skipped.
    static OptionalDate xmpDateFromStampInfos(QByteArrayView stamp, XmpStampKind kind,
                                              const TimeZone &zone);
    // Reads what xmpTimeStampFromDate writes: the digits (16 or 19 characters by
    // WithoutSeconds), followed unless local by an offset of the form `subtype` names.
    static OptionalDate dateFromXmpTimeStamp(QStringView stamp, const TimeZone &zone,
                                             bool isLocalStamp, int subtype);
    static QString xmpTimeStampFromDate(Instant date, const TimeZone &zone, bool isLocalStamp,
                                        int subtype);
    // The separators of a date written for an in-place change stand where the stamp has them.
    static bool seemsValidXMPString(QStringView stamp, int subtype);

    // ---- GPS, always UTC: date "yyyy:MM:dd" with NUL (11 bytes), time as three unsigned
    // rationals hours, minutes, seconds (24 bytes) in the byte order of the file's TIFF header

    static QByteArray gpsDateDataFromTimeStamp(Instant date);
    // Each rational with denominator 1.
    static QByteArray gpsTimeDataFromTimeStamp(Instant date, QSysInfo::Endian byteOrder);
    // The time of `date` in the rationals of `previous`: each keeps its denominator, and the
    // seconds keep their fraction. Empty when `previous` has hours or minutes with a fraction,
    // a zero denominator, or when a numerator would not fit.
    static QByteArray gpsTimeDataKeepingPrecision(QByteArrayView previous, Instant date,
                                                  QSysInfo::Endian byteOrder);
    // The GPS date of a file from its date stamp and time stamp (either may be empty). A missing
    // half is taken from `creationDate` in UTC; when that was the day, the result is moved by a
    // day if it lies more than 12 hours from the creation date. Nothing when a stamp cannot be
    // read, when the time does not fit a day, or when a missing half has no creation date.
    static OptionalDate updatedGpsDateWithCreationDate(QByteArrayView dateStamp,
                                                       QByteArrayView timeStamp,
                                                       QSysInfo::Endian byteOrder,
                                                       OptionalDate creationDate);
};

} // namespace orv
