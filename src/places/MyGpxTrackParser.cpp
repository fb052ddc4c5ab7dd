#include "places/MyGpxTrackParser.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <charconv>
#include <cmath>

namespace orv {

namespace {

using namespace Qt::StringLiterals;

// Digits of text from position at, as a number; -1 when any is not a digit.
int digits(QStringView text, qsizetype at, qsizetype count)
{
    if (at + count > text.size())
        return -1;
    int value = 0;
    for (qsizetype i = at; i < at + count; ++i) {
        const char16_t c = text[i].unicode();
        if (c < u'0' || c > u'9')
            return -1;
        value = value * 10 + (c - u'0');
    }
    return value;
}

// "Z", "+02:00", "+0200", "+02" or nothing, as seconds east of UTC.
std::optional<int> zoneSeconds(QStringView zone)
{
    if (zone.isEmpty() || zone == u"Z")
        return 0;
    const char16_t sign = zone[0].unicode();
    if (sign != u'+' && sign != u'-')
        return std::nullopt;
    const int hours = digits(zone, 1, 2);
    int minutes = 0;
    if (zone.size() == 6 && zone[3] == u':')
        minutes = digits(zone, 4, 2);
    else if (zone.size() == 5)
        minutes = digits(zone, 3, 2);
    else if (zone.size() != 3)
        return std::nullopt;
    if (hours < 0 || hours > 14 || minutes < 0 || minutes > 59)
        return std::nullopt;
    const int seconds = hours * 3600 + minutes * 60;
    return sign == u'-' ? -seconds : seconds;
}

// A decimal number as GPX writes it ("312.5", "-0.25", "+1e3"), read exactly by std::from_chars
// from a copy on the stack: a QString's own conversion allocates for every value, and a big
// track has millions of them. Nothing for any other text.
std::optional<double> number(QStringView text)
{
    text = text.trimmed();
    if (text.startsWith(u'+'))
        text = text.mid(1);
    char ascii[64];
    if (text.isEmpty() || text.size() > qsizetype(sizeof ascii))
        return std::nullopt;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c >= 0x80)
            return std::nullopt;
        ascii[i] = char(c);
    }
    double value = 0.0;
    const char *end = ascii + text.size();
    const auto [stop, error] = std::from_chars(ascii, end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

class Reader
{
public:
    Reader(QIODevice &device, GpxFile &file) : m_xml(&device), m_file(file) {}

    void read()
    {
        if (!m_xml.readNextStartElement() || m_xml.name() != "gpx"_L1) {
            m_file.problem = m_xml.hasError() ? QStringLiteral("not XML: ") + m_xml.errorString()
                                              : QStringLiteral("not a GPX file (its root element is not gpx)");
            return;
        }
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == "trk"_L1)
                readTrack();
            else if (m_xml.name() == "rte"_L1)
                readRoute();
            else if (m_xml.name() == "wpt"_L1)
                readWaypoint();
            else
                m_xml.skipCurrentElement();
        }
        if (m_xml.hasError())
            m_file.problem = QStringLiteral("broken off at line %1: %2").arg(m_xml.lineNumber()).arg(m_xml.errorString());
    }

private:
    // Only elements that closed before an error count: half a track is no track.
    void readTrack()
    {
        MyGpxTrack track;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == "trkseg"_L1)
                track.trackSegments.append(readSegment());
            else if (!readNameOrType(track.name, track.type))
                m_xml.skipCurrentElement();
        }
        if (m_xml.hasError())
            return;
        track.filePath = m_file.filePath;
        track.validateTrack();
        m_file.tracks.append(std::move(track));
    }

    MyGpxTrackSegment readSegment()
    {
        MyGpxTrackSegment segment;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == "trkpt"_L1)
                appendPoint(segment.trackPoints, nullptr);
            else
                m_xml.skipCurrentElement();
        }
        return segment;
    }

    void readRoute()
    {
        MyGpxRoute route;
        QString type;
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == "rtept"_L1)
                appendPoint(route.routePoints, nullptr);
            else if (!readNameOrType(route.name, type))
                m_xml.skipCurrentElement();
        }
        if (!m_xml.hasError())
            m_file.routes.append(std::move(route));
    }

    void readWaypoint()
    {
        QList<MyGpxTrackPoint> points;
        MyGpxWaypoint waypoint;
        appendPoint(points, &waypoint.name);
        if (!m_xml.hasError() && !points.isEmpty()) {
            waypoint.point = points.first();
            m_file.waypoints.append(std::move(waypoint));
        }
    }

    bool readNameOrType(QString &name, QString &type)
    {
        if (m_xml.name() == "name"_L1)
            name = elementText().trimmed().toString();
        else if (m_xml.name() == "type"_L1)
            type = elementText().trimmed().toString();
        else
            return false;
        return true;
    }

    // The text of the element just begun, its children's included, up to its end. It goes into
    // one buffer that every element reuses, so a value costs no allocation of its own.
    QStringView elementText()
    {
        m_text.resize(0);
        for (int depth = 1; depth > 0;) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::Characters:
            case QXmlStreamReader::EntityReference:
                m_text.append(m_xml.text());
                break;
            case QXmlStreamReader::StartElement:
                ++depth;
                break;
            case QXmlStreamReader::EndElement:
                --depth;
                break;
            case QXmlStreamReader::Invalid:
                return {};
            default:
                break;
            }
        }
        return m_text;
    }

    // A trkpt, rtept or wpt with its children; left out when lat and lon name no place.
    void appendPoint(QList<MyGpxTrackPoint> &points, QString *name)
    {
        MyGpxTrackPoint point;
        const QXmlStreamAttributes &attributes = m_xml.attributes();
        const std::optional<double> latitude = number(attributes.value("lat"_L1));
        const std::optional<double> longitude = number(attributes.value("lon"_L1));
        while (m_xml.readNextStartElement()) {
            const QStringView element = m_xml.name();
            if (element == "ele"_L1)
                point.elevation = number(elementText()).value_or(MyGpxTrackPoint::notSet);
            else if (element == "time"_L1)
                point.originalTime = MyGpxTrackParser::parseTime(elementText());
            else if (element == "extensions"_L1)
                readExtensions(point);
            else if (element == "name"_L1 && name)
                *name = elementText().trimmed().toString();
            else
                m_xml.skipCurrentElement();
        }
        if (latitude && longitude && std::abs(*latitude) <= 90.0 && std::abs(*longitude) <= 180.0) {
            point.latitude = *latitude;
            point.longitude = *longitude;
            points.append(point);
        }
        else
            ++m_file.pointsWithoutPlace;
    }

    // The horizontal accuracy a logger writes as hAcc, at any depth of the extensions.
    void readExtensions(MyGpxTrackPoint &point)
    {
        int depth = 1;
        while (depth > 0 && !m_xml.atEnd()) {
            const QXmlStreamReader::TokenType token = m_xml.readNext();
            if (token == QXmlStreamReader::StartElement) {
                if (m_xml.name() == "hAcc"_L1)
                    point.hAcc = number(elementText()).value_or(MyGpxTrackPoint::notSet);
                else
                    ++depth;
            } else if (token == QXmlStreamReader::EndElement) {
                --depth;
            }
        }
    }

    QXmlStreamReader m_xml;
    GpxFile &m_file;
    QString m_text;
};

} // namespace

QString MyGpxTrackParser::stateReason(TrackState state)
{
    switch (state) {
    case TrackState::Usable:
        return {};
    case TrackState::NoTimes:
        return QStringLiteral("its points have no times");
    case TrackState::WrongOrder:
        return QStringLiteral("its times go backwards");
    case TrackState::NoPoints:
        return QStringLiteral("it has no points");
    }
    return {};
}

QStringList GpxFile::problems() const
{
    QStringList lines;
    if (!problem.isEmpty())
        lines << problem;
    if (pointsWithoutPlace > 0)
        lines << QStringLiteral("%1 points without a valid lat and lon were left out").arg(pointsWithoutPlace);
    for (qsizetype i = 0; i < tracks.size(); ++i) {
        const MyGpxTrack &track = tracks[i];
        if (track.trackState != TrackState::Usable)
            lines << QStringLiteral("track %1%2 places nothing: %3")
                         .arg(i + 1)
                         .arg(track.name.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(track.name),
                              MyGpxTrackParser::stateReason(track.trackState));
    }
    if (problem.isEmpty() && tracks.isEmpty())
        lines << QStringLiteral("it holds no track");
    return lines;
}

GpxFile MyGpxTrackParser::parseFile(const QString &path)
{
    GpxFile file;
    file.filePath = path;
    const QFileInfo info(path);
    QFile device(path);
    // A pipe or a device could stream for ever: only a file's bytes are read.
    if (!info.isFile())
        file.problem = info.exists() ? QStringLiteral("not a regular file") : QStringLiteral("no such file");
    else if (!device.open(QIODevice::ReadOnly))
        file.problem = QStringLiteral("cannot be read: ") + device.errorString();
    else
        Reader(device, file).read();
    return file;
}

GpxFile MyGpxTrackParser::parse(QIODevice &device, const QString &path)
{
    GpxFile file;
    file.filePath = path;
    Reader(device, file).read();
    return file;
}

OptionalDate MyGpxTrackParser::parseTime(QStringView text)
{
    text = text.trimmed();
    // yyyy-MM-ddTHH:mm:ss, then fractions, then the zone.
    if (text.size() < 19 || text[4] != u'-' || text[7] != u'-' || (text[10] != u'T' && text[10] != u' ')
        || text[13] != u':' || text[16] != u':')
        return std::nullopt;
    const int year = digits(text, 0, 4), month = digits(text, 5, 2), day = digits(text, 8, 2);
    const int hour = digits(text, 11, 2), minute = digits(text, 14, 2), second = digits(text, 17, 2);
    if (year < 1 || month < 1 || month > 12 || day < 1 || day > Instant::daysInMonth(year, month) || hour < 0
        || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 60)
        return std::nullopt;
    qsizetype at = 19;
    double fraction = 0.0;
    if (at < text.size() && text[at] == u'.') {
        double scale = 0.1;
        const qsizetype start = ++at;
        for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at, scale /= 10.0)
            fraction += (text[at].unicode() - u'0') * scale;
        if (at == start)
            return std::nullopt;
    }
    const std::optional<int> zone = zoneSeconds(text.mid(at));
    if (!zone)
        return std::nullopt;
    return Instant::fromUtc(year, month, day, hour, minute, second + fraction).addingSeconds(-*zone);
}

} // namespace orv
