#include "formats/QuickTimeLocator.h"

#include "formats/BoxWalker.h"
#include "formats/WindowByteSource.h"

#include <QStringList>
#include <QtEndian>

#include <cmath>
#include <map>
#include <vector>

namespace orv {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSign(char c) { return c == '+' || c == '-'; }

constexpr quint32 copyrightXyz = 0xA978797Au; // "©xyz" with the © as the byte 0xA9

MovieValue valueOf(const ByteSource &source, qint64 from, qint64 end)
{
    return {source.read(from, end - from), quint64(from)};
}

// A metadata box is a full box in MPEG-4 files and a plain one in QuickTime files; the handler
// box that always comes first tells which, by where its type stands.
qint64 metaChildrenStart(const ByteSource &source, const Box &meta)
{
    return source.read32(meta.payload + 4, false) == fourCC("hdlr") ? meta.payload : meta.payload + 4;
}

// The first "data" box of an item list entry: its value follows type and locale.
std::optional<MovieValue> itemValue(BoxWalker &walker, const Box &entry, int depth)
{
    const std::optional<Box> data = walker.firstChild(entry, depth, fourCC("data"));
    if (!data || data->payloadSize() < 8)
        return std::nullopt;
    return valueOf(walker.source(), data->payload + 8, data->end);
}

// Reads the children of one moov box.
class MovieReader
{
public:
    MovieReader(const ByteSource &source) : m_walker(source), m_source(source) {}

    MovieHeaderData read(const Box &moov);

private:
    void readMovieHeader(const Box &mvhd);
    void readTrack(const Box &trak);
    void readHeaderTimes(const Box &header);
    void keepTrackTimesOfMovieHeader();
    // `userData`: the metadata box in the user data, whose item list may hold a ©xyz place, and
    // whose keys (as FFmpeg writes them) give only a content identifier the movie's own metadata
    // box lacks.
    void readMeta(const Box &meta, bool userData = false);
    void readKeys(const Box &keys, std::vector<QByteArray> &names);
    void readUserData(const Box &udta);

    BoxWalker m_walker;
    const ByteSource &m_source;
    MovieHeaderData m_data;
    std::optional<MovieValue> m_crea, m_mod;
    // Creation and modification times of every tkhd and mdhd, the latter flagged.
    std::vector<std::pair<MovieValue, bool>> m_trackTimes;
};

// The times of a movie, track or media header: version 0 keeps two 32-bit fields, version 1
// two 64-bit ones, right behind version and flags.
std::optional<std::pair<MovieValue, MovieValue>> headerTimes(const ByteSource &source, const Box &header)
{
    const std::optional<quint8> version = source.read8(header.payload);
    if (!version || *version > 1)
        return std::nullopt;
    const qint64 width = *version == 1 ? 8 : 4;
    const qint64 times = header.payload + 4;
    if (header.end < times + 2 * width)
        return std::nullopt;
    return std::pair{valueOf(source, times, times + width), valueOf(source, times + width, times + 2 * width)};
}

// A header time as a number, whatever its width.
std::optional<quint64> headerSeconds(const QByteArray &data)
{
    if (data.size() == 4)
        return qFromBigEndian<quint32>(data.constData());
    if (data.size() == 8)
        return qFromBigEndian<quint64>(data.constData());
    return std::nullopt;
}

void MovieReader::readMovieHeader(const Box &mvhd)
{
    const std::optional<quint8> version = m_source.read8(mvhd.payload);
    if (!version || *version > 1)
        return;
    // Version 1 keeps 64-bit times, and the fields behind them move along.
    const qint64 width = *version == 1 ? 8 : 4;
    const qint64 times = mvhd.payload + 4;
    if (mvhd.end < times + 3 * width + 4)
        return;
    std::tie(m_crea, m_mod) = *headerTimes(m_source, mvhd);
    const quint32 timescale = m_source.read32(times + 2 * width, false).value_or(0);
    const quint64 duration = width == 8 ? m_source.read64(times + 2 * width + 4, false).value_or(0)
                                        : m_source.read32(times + 2 * width + 4, false).value_or(0);
    if (timescale)
        m_data.duration = double(duration) / double(timescale);
}

void MovieReader::readHeaderTimes(const Box &header)
{
    if (const auto times = headerTimes(m_source, header)) {
        m_trackTimes.emplace_back(times->first, false);
        m_trackTimes.emplace_back(times->second, true);
    }
}

void MovieReader::readTrack(const Box &trak)
{
    // One walk over the track's children: the walker ends at a box it meets a second time.
    std::optional<Box> tkhd;
    m_walker.children(trak, 2, [&](const Box &box) {
        if (box.type == fourCC("tkhd")) {
            tkhd = box;
            readHeaderTimes(box);
        } else if (box.type == fourCC("mdia")) {
            if (const std::optional<Box> mdhd = m_walker.firstChild(box, 3, fourCC("mdhd")))
                readHeaderTimes(*mdhd);
        }
        return true;
    });
    if (!tkhd || m_data.pixelSize.isValid())
        return;
    const std::optional<quint8> version = m_source.read8(tkhd->payload);
    if (!version || *version > 1)
        return;
    const qint64 at = tkhd->payload + (*version == 1 ? 88 : 76);
    if (at + 8 > tkhd->end)
        return;
    const std::optional<quint32> width = m_source.read32(at, false);
    const std::optional<quint32> height = m_source.read32(at + 4, false);
    // 16.16 fixed point; sound tracks have no size.
    if (width && height && (*width >> 16) && (*height >> 16))
        m_data.pixelSize = QSize(int(*width >> 16), int(*height >> 16));
}

void MovieReader::readKeys(const Box &keys, std::vector<QByteArray> &names)
{
    const std::optional<quint32> count = m_source.read32(keys.payload + 4, false);
    qint64 at = keys.payload + 8;
    for (quint32 i = 0; count && i < *count && at + 8 <= keys.end; ++i) {
        const std::optional<quint32> size = m_source.read32(at, false);
        if (!size || *size < 8 || at + *size > keys.end)
            return;
        names.push_back(m_source.read(at + 8, *size - 8));
        at += *size;
    }
}

void MovieReader::readMeta(const Box &meta, bool userData)
{
    std::vector<QByteArray> names;
    std::map<quint32, MovieValue> values;
    m_walker.children(metaChildrenStart(m_source, meta), meta.end, 2, [&](const Box &box) {
        if (box.type == fourCC("keys")) {
            readKeys(box, names);
        } else if (box.type == fourCC("ilst")) {
            m_walker.children(box, 3, [&](const Box &entry) {
                if (const std::optional<MovieValue> value = itemValue(m_walker, entry, 4))
                    values.emplace(entry.type, *value);
                return true;
            });
        }
        return true;
    });
    for (const auto &[index, value] : values) {
        if (userData && index == copyrightXyz && isValidQtLocationData(value.data))
            m_data.locationISO6709_3 = value;
        if (index == 0 || index > names.size())
            continue;
        const QByteArray &name = names[index - 1];
        if (userData) {
            if (name == "com.apple.quicktime.content.identifier" && m_data.contentIdentifier.isEmpty())
                m_data.contentIdentifier = value.data;
        } else if (name == "com.apple.quicktime.creationdate" && isValidQtCreationDateData(value.data))
            m_data.QtCreationdate = value;
        else if (name == "com.apple.quicktime.location.ISO6709" && isValidQtLocationData(value.data))
            m_data.locationISO6709 = value;
        else if (name == "com.apple.quicktime.location.accuracy.horizontal")
            m_data.locationHAccuracy = value;
        else if (name == "com.apple.quicktime.content.identifier")
            m_data.contentIdentifier = value.data;
        else if (name == "com.apple.quicktime.make")
            m_data.make = value.data;
        else if (name == "com.apple.quicktime.model")
            m_data.model = value.data;
    }
}

void MovieReader::readUserData(const Box &udta)
{
    m_walker.children(udta, 2, [&](const Box &box) {
        if (box.type == copyrightXyz && box.payloadSize() > 4) {
            // A 16-bit length and a language code come first.
            const MovieValue text = valueOf(m_source, box.payload + 4, box.end);
            if (isValidQtLocationData(text.data))
                m_data.locationISO6709_2 = text;
        } else if (box.type == fourCC("meta")) {
            readMeta(box, true);
        }
        return true;
    });
}

// A track time follows the movie header time that holds its moment, the one of its own kind
// first: where creation and modification are equal, each keeps to its kind. A zero is no time.
void MovieReader::keepTrackTimesOfMovieHeader()
{
    const auto secondsOf = [](const std::optional<MovieValue> &value) -> std::optional<quint64> {
        const std::optional<quint64> seconds = value ? headerSeconds(value->data) : std::nullopt;
        return seconds && *seconds ? seconds : std::nullopt;
    };
    const std::optional<quint64> crea = secondsOf(m_crea), mod = secondsOf(m_mod);
    for (const auto &[value, isModification] : m_trackTimes) {
        const std::optional<quint64> seconds = headerSeconds(value.data);
        if (!seconds || *seconds == 0)
            continue;
        const bool asOwnKind = isModification ? seconds == mod : seconds == crea;
        const bool asOtherKind = isModification ? seconds == crea : seconds == mod;
        if (asOwnKind || asOtherKind)
            m_data.trackTimes.push_back(
                {{value.data, value.offset}, asOwnKind ? isModification : !isModification});
    }
}

MovieHeaderData MovieReader::read(const Box &moov)
{
    m_walker.children(moov, 1, [&](const Box &box) {
        switch (box.type) {
        case fourCC("mvhd"): readMovieHeader(box); break;
        case fourCC("trak"): readTrack(box); break;
        case fourCC("meta"): readMeta(box); break;
        case fourCC("udta"): readUserData(box); break;
        default: break;
        }
        return true;
    });

    keepTrackTimesOfMovieHeader();
    const bool creaGood = m_crea && seemsValidMVHDDate(m_crea->data);
    const bool modGood = m_mod && seemsValidMVHDDate(m_mod->data);
    if (creaGood) {
        m_data.movieType = MovieHeaderData::CreationGood;
        m_data.creaDate = m_crea;
        if (modGood)
            m_data.modDate = m_mod;
    } else if (modGood) {
        m_data.movieType = MovieHeaderData::OnlyModificationGood;
        m_data.modDate = m_mod;
    } else if (m_crea && m_mod) {
        m_data.movieType = MovieHeaderData::BothZero;
        m_data.creaDate = m_crea;
        m_data.modDate = m_mod;
    }
    if (m_data.QtCreationdate) {
        // A zero header must not hide the metadata date.
        if (m_data.movieType == MovieHeaderData::BothZero) {
            m_data.creaDate.reset();
            m_data.modDate.reset();
            m_data.trackTimes.clear();
        }
        m_data.movieType = MovieHeaderData::CreationGood;
    }
    return m_data;
}

// Position of the first byte of `from` onwards that is one of `stops`, or the text's end.
qsizetype nextOf(QByteArrayView text, qsizetype from, QByteArrayView stops)
{
    for (qsizetype i = from; i < text.size(); ++i)
        if (stops.contains(text[i]))
            return i;
    return text.size();
}

// Digits in front of and behind the dot of one signed part [begin, end).
std::pair<int, int> digitCounts(QByteArrayView text, qsizetype begin, qsizetype end)
{
    const QByteArrayView part = text.sliced(begin + 1, end - begin - 1);
    const qsizetype dot = part.indexOf('.');
    if (dot < 0)
        return {int(part.size()), 0};
    return {int(dot), int(part.size() - dot - 1)};
}

std::optional<double> partValue(QByteArrayView text, qsizetype begin, qsizetype end)
{
    bool ok = false;
    const double value = text.sliced(begin, end - begin).toByteArray().toDouble(&ok);
    return ok ? std::optional(value) : std::nullopt;
}

QByteArray signedFixed(double value, int intDigits, int fracDigits)
{
    const double scale = std::pow(10.0, fracDigits);
    const double rounded = std::round(std::abs(value) * scale) / scale;
    QByteArray digits = QByteArray::number(rounded, 'f', fracDigits);
    const int width = intDigits + (fracDigits ? fracDigits + 1 : 0);
    if (digits.size() > width)
        return {};
    digits.prepend(QByteArray(width - digits.size(), '0'));
    return (value < 0 && rounded != 0.0 ? "-" : "+") + digits;
}

} // namespace

bool isValidQtCreationDateData(QByteArrayView data)
{
    const qsizetype n = data.size();
    if (n != 20 && n != 24 && n != 25)
        return false;
    if (data[4] != '-' || data[7] != '-' || data[10] != 'T' || data[13] != ':' || data[16] != ':')
        return false;
    if ((n == 20 && data[19] != 'Z') || (n == 25 && data[22] != ':'))
        return false;
    for (qsizetype i = 0; i + 1 < n; ++i) {
        const char c = data[i];
        if (!isDigit(c) && !QByteArrayView("+-:TZ").contains(c))
            return false;
    }
    return true;
}

bool isValidQtLocationData(QByteArrayView data)
{
    if (data.isEmpty() || !isSign(data.front()) || !(data.back() == '/' || isDigit(data.back())))
        return false;
    int signs = 1, dots = 0;
    for (qsizetype i = 1; i + 1 < data.size(); ++i) {
        const char c = data[i];
        if (isSign(c))
            ++signs;
        else if (c == '.')
            ++dots;
        else if (!isDigit(c))
            return false;
    }
    return (signs == 2 || signs == 3) && dots <= signs;
}

bool seemsValidMVHDDate(QByteArrayView data)
{
    return !data.isEmpty() && std::any_of(data.begin(), data.end(), [](char c) { return c != 0; });
}

Iso6709Digits measureIso6709(QByteArrayView text)
{
    Iso6709Digits d;
    if (!isValidQtLocationData(text))
        return d;
    d.longitudeStart = nextOf(text, 1, "+-");
    d.longitudeEnd = nextOf(text, d.longitudeStart + 1, "+-/");
    if (d.longitudeStart >= text.size())
        return d;
    std::tie(d.int1, d.frac1) = digitCounts(text, 0, d.longitudeStart);
    std::tie(d.int2, d.frac2) = digitCounts(text, d.longitudeStart, d.longitudeEnd);
    d.edit = d.int1 == 2 && d.longitudeStart == (d.frac1 ? d.frac1 + 4 : 3);
    return d;
}

std::optional<std::pair<double, double>> coordinatesFromIso6709(QByteArrayView text)
{
    const Iso6709Digits d = measureIso6709(text);
    if (d.longitudeStart == 0 || d.longitudeStart >= text.size())
        return std::nullopt;
    const std::optional<double> lat = partValue(text, 0, d.longitudeStart);
    const std::optional<double> lon = partValue(text, d.longitudeStart, d.longitudeEnd);
    if (!lat || !lon || std::abs(*lat) > 90.0 || std::abs(*lon) > 180.0 || (*lat == 0.0 && *lon == 0.0))
        return std::nullopt;
    return std::pair{*lat, *lon};
}

QByteArray iso6709WithCoordinates(QByteArrayView text, double latitude, double longitude)
{
    const Iso6709Digits d = measureIso6709(text);
    if (!d.edit)
        return {};
    const QByteArray lat = signedFixed(latitude, d.int1, d.frac1);
    const QByteArray lon = signedFixed(longitude, d.int2, d.frac2);
    if (lat.isEmpty() || lon.isEmpty())
        return {};
    QByteArray result = lat + lon + text.sliced(d.longitudeEnd).toByteArray();
    return result.size() == text.size() ? result : QByteArray();
}

MovieHeaderData quicktimeHeaderDataForMovie(const ByteSource &source, bool quickTime)
{
    BoxWalker topLevel(source);
    const std::optional<Box> first = topLevel.boxAt(0, source.length());
    if (!first || (!quickTime && first->type != fourCC("ftyp")))
        return {};
    std::optional<Box> moov = first->type == fourCC("moov") ? first : std::nullopt;
    if (!moov)
        topLevel.children(first->end, source.length(), 0, [&](const Box &box) {
            if (box.type == fourCC("moov"))
                moov = box;
            return !moov;
        });
    if (!moov)
        return {};
    // A moov is small beside the media data, and one read serves its whole walk. The sample
    // tables of a long movie can make it large; what lies past the window is read as needed.
    constexpr qint64 largestWindow = 1024 * 1024;
    const WindowByteSource window(source, moov->offset, qMin(moov->size(), largestWindow));
    return MovieReader(window).read(*moov);
}

} // namespace orv
