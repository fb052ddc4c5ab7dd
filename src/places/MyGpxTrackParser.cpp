#include "places/MyGpxTrackParser.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <cmath>

namespace orv {

namespace {

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

class Reader
{
public:
    Reader(QIODevice &device, GpxFile &file) : m_xml(&device), m_file(file) {}

    void read()
    {
        if (!m_xml.readNextStartElement() || m_xml.name() != u"gpx") {
            m_file.problem = m_xml.hasError() ? QStringLiteral("not XML: ") + m_xml.errorString()
                                              : QStringLiteral("not a GPX file (its root element is not gpx)");
            return;
        }
        while (m_xml.readNextStartElement()) {
            if (m_xml.name() == u"trk")
                readTrack();
            else if (m_xml.name() == u"rte")
                readRoute();
            else if (m_xml.name() == u"wpt")
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
            if (m_xml.name() == u"trkseg")
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
            if (m_xml.name() == u"trkpt")
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
            if (m_xml.name() == u"rtept")
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
        if (m_xml.name() == u"name")
            name = m_xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        else if (m_xml.name() == u"type")
            type = m_xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        else
            return false;
        return true;
    }

    // A trkpt, rtept or wpt with its children; left out when lat and lon name no place.
    void appendPoint(QList<MyGpxTrackPoint> &points, QString *name)
    {
        MyGpxTrackPoint point;
        bool hasLat = false, hasLon = false;
        point.latitude = m_xml.attributes().value(QLatin1String("lat")).toDouble(&hasLat);
        point.longitude = m_xml.attributes().value(QLatin1String("lon")).toDouble(&hasLon);
        while (m_xml.readNextStartElement()) {
            const QStringView element = m_xml.name();
            if (element == u"ele")
                point.elevation = number(m_xml.readElementText(QXmlStreamReader::IncludeChildElements));
            else if (element == u"time")
                point.originalTime = MyGpxTrackParser::parseTime(
                    m_xml.readElementText(QXmlStreamReader::IncludeChildElements));
            else if (element == u"extensions")
                readExtensions(point);
            else if (element == u"name" && name)
                *name = m_xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            else
                m_xml.skipCurrentElement();
        }
        if (hasLat && hasLon && std::abs(point.latitude) <= 90.0 && std::abs(point.longitude) <= 180.0)
            points.append(point);
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
                if (m_xml.name() == u"hAcc")
                    point.hAcc = number(m_xml.readElementText(QXmlStreamReader::IncludeChildElements));
                else
                    ++depth;
            } else if (token == QXmlStreamReader::EndElement) {
                --depth;
            }
        }
    }

    static double number(const QString &text)
    {
        bool ok = false;
        const double value = text.trimmed().toDouble(&ok);
        return ok && std::isfinite(value) ? value : MyGpxTrackPoint::notSet;
    }

    QXmlStreamReader m_xml;
    GpxFile &m_file;
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
