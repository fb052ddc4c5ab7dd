#include "places/LocationText.h"

#include <QCborArray>
#include <QCborValue>
#include <QMimeData>
#include <QRegularExpression>

#include <cmath>

namespace orv {

namespace {

// Marks of minutes and seconds: their presence says the text is in degrees, minutes, seconds.
const QString minuteAndSecondMarks = QStringLiteral(u"\u2019'\u00B4\u2032\u201D\"\u2033");
const QChar degree(0x00B0);
const QChar minuteMark(0x2019);
const QChar secondMark(0x201D);

std::optional<GeoCoordinate> valid(double latitude, double longitude)
{
    if (!std::isfinite(latitude) || !std::isfinite(longitude) || std::abs(latitude) > 90.0
        || std::abs(longitude) > 180.0 || (latitude == 0.0 && longitude == 0.0))
        return std::nullopt;
    return GeoCoordinate{latitude, longitude};
}

QString firstLine(const QString &text)
{
    return text.section(QLatin1Char('\n'), 0, 0).toUpper().trimmed();
}

bool isDecimalForm(const QString &text)
{
    return std::none_of(text.cbegin(), text.cend(), [](QChar c) { return minuteAndSecondMarks.contains(c); });
}

// Decimal degrees: no blanks, the degree signs gone, and nothing but digits, signs, separators
// and the four compass letters; empty when anything else is left.
QString cleanedDecimal(const QString &text)
{
    QString cleaned = firstLine(text).remove(QLatin1Char(' '));
    if (const QStringList pieces = cleaned.split(degree); pieces.size() == 3)
        cleaned = pieces.join(QString());
    for (const QChar c : std::as_const(cleaned))
        if (!(c.isDigit() && c.unicode() < 0x80) && !QStringLiteral("+-,.ENSW").contains(c))
            return {};
    return cleaned;
}

bool seemsDecimal(const QString &cleaned)
{
    const qsizetype commas = cleaned.count(QLatin1Char(','));
    const qsizetype points = cleaned.count(QLatin1Char('.'));
    const qsizetype signs = cleaned.count(QLatin1Char('+')) + cleaned.count(QLatin1Char('-'));
    qsizetype letters = 0;
    for (const QChar c : cleaned)
        letters += QStringLiteral("ENSW").contains(c);
    const bool separators = (commas == 1 && points == 2) || (commas == 3 && points == 0);
    return !cleaned.isEmpty() && separators && signs <= 4 && !(letters > 0 && signs > 0)
        && (letters == 0 || letters == 2);
}

std::optional<GeoCoordinate> parseDecimal(QString cleaned)
{
    if (cleaned.count(QLatin1Char(',')) == 3) {
        cleaned[cleaned.indexOf(QLatin1Char(','))] = QLatin1Char('.');
        cleaned[cleaned.lastIndexOf(QLatin1Char(','))] = QLatin1Char('.');
    }
    QStringList pieces = cleaned.split(QLatin1Char(','));
    if (pieces.size() != 2)
        return std::nullopt;
    QChar letters[2];
    for (int i = 0; i < 2; ++i) {
        if (!pieces[i].isEmpty() && QStringLiteral("ENSW").contains(pieces[i].back())) {
            letters[i] = pieces[i].back();
            pieces[i].chop(1);
        }
    }
    bool latitudeOk = false, longitudeOk = false;
    double latitude = pieces[0].toDouble(&latitudeOk);
    double longitude = pieces[1].toDouble(&longitudeOk);
    if (!latitudeOk || !longitudeOk)
        return std::nullopt;
    if (letters[0] == QLatin1Char('S'))
        latitude = -latitude;
    if (letters[1] == QLatin1Char('W'))
        longitude = -longitude;
    return valid(latitude, longitude);
}

// Degrees, minutes, seconds: the two parts, each as 47°6’12.5”N; empty when the text is not so.
QStringList partsOfDegrees(const QString &text)
{
    QString cleaned = firstLine(text);
    for (const char *letter : {"N", "S", "W", "E"})
        cleaned.replace(QLatin1String(letter) + QLatin1Char(','), QLatin1String(letter) + QLatin1Char(' '));
    for (const QChar mark : {QChar(u'\''), QChar(0x00B4), QChar(0x2032)})
        cleaned.replace(mark, minuteMark);
    for (const QChar mark : {QChar(u'"'), QChar(0x2033)})
        cleaned.replace(mark, secondMark);
    cleaned.replace(QLatin1Char(','), QLatin1Char('.'));
    cleaned.replace(QRegularExpression(QStringLiteral("\\s+")), QStringLiteral(" "));
    const QStringList parts = cleaned.split(QLatin1Char(' '));
    if (parts.size() != 2)
        return {};
    const QString shape = QString(degree) + minuteMark + QLatin1Char('.') + secondMark;
    for (const QString &part : parts) {
        QString marks = part;
        marks.remove(QRegularExpression(QStringLiteral("[0-9]")));
        if (marks.isEmpty() || !QStringLiteral("NSWE").contains(marks.back()) || marks.chopped(1) != shape)
            return {};
    }
    return parts;
}

std::optional<double> degreesOf(const QString &part)
{
    static const QRegularExpression form(QStringLiteral(u"^(\\d+)\u00B0(\\d+)\u2019(\\d+\\.\\d+)\u201D([NSWE])$"));
    const QRegularExpressionMatch match = form.match(part);
    if (!match.hasMatch())
        return std::nullopt;
    const double value = match.captured(1).toDouble() + match.captured(2).toDouble() / 60.0
        + match.captured(3).toDouble() / 3600.0;
    const QString letter = match.captured(4);
    return letter == QLatin1String("S") || letter == QLatin1String("W") ? -value : value;
}

} // namespace

bool LocationText::seemsCoordinates(const QString &text)
{
    return isDecimalForm(text) ? seemsDecimal(cleanedDecimal(text)) : !partsOfDegrees(text).isEmpty();
}

std::optional<GeoCoordinate> LocationText::coordinateFromString(const QString &text)
{
    if (isDecimalForm(text)) {
        const QString cleaned = cleanedDecimal(text);
        return seemsDecimal(cleaned) ? parseDecimal(cleaned) : std::nullopt;
    }
    const QStringList parts = partsOfDegrees(text);
    if (parts.isEmpty())
        return std::nullopt;
    const std::optional<double> latitude = degreesOf(parts[0]);
    const std::optional<double> longitude = degreesOf(parts[1]);
    if (!latitude || !longitude)
        return std::nullopt;
    return valid(*latitude, *longitude);
}

QString LocationText::plainText(GeoCoordinate coordinate)
{
    return QString::number(coordinate.latitude, 'f', 6) + QStringLiteral(", ") + QString::number(coordinate.longitude, 'f', 6);
}

void LocationPasteboard::write(QMimeData &mime, GeoCoordinate coordinate)
{
    mime.setData(QString::fromLatin1(mimeType), QCborValue(QCborArray{coordinate.latitude, coordinate.longitude}).toCbor());
    mime.setText(LocationText::plainText(coordinate));
}

std::optional<GeoCoordinate> LocationPasteboard::read(const QMimeData &mime)
{
    if (mime.hasFormat(QString::fromLatin1(mimeType))) {
        const QCborArray pair = QCborValue::fromCbor(mime.data(QString::fromLatin1(mimeType))).toArray();
        if (pair.size() == 2 && pair[0].isDouble() && pair[1].isDouble())
            if (const auto place = valid(pair[0].toDouble(), pair[1].toDouble()))
                return place;
    }
    return mime.hasText() ? LocationText::coordinateFromString(mime.text()) : std::nullopt;
}

} // namespace orv
