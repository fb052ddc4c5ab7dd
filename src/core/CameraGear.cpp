#include "core/CameraGear.h"

#include "core/MakerModel.h"
#include "core/MySinglePic.h"

#include <algorithm>
#include <cstdio>

namespace orv {

namespace {

// Cameras write a serial of zeros where they know none, as Canon's bodies do for many lenses.
QString namedSerial(const QString &serial)
{
    const bool zeros = std::all_of(serial.cbegin(), serial.cend(), [](QChar c) { return c == u'0'; });
    return zeros ? QString() : serial;
}

} // namespace

std::shared_ptr<const CameraGear> CameraGear::fromTags(const TiffImageTags &tags)
{
    CameraGear gear{namedSerial(tags.bodySerial), QString(), namedSerial(tags.lensSerial)};
    if (!tags.lensMake.isEmpty() || !tags.lensModel.isEmpty())
        gear.pivMakeModelLens = MakerModel::completeMakerModelStringFromMaker(tags.lensMake, tags.lensModel);
    return gear.isEmpty() ? nullptr : std::make_shared<const CameraGear>(std::move(gear));
}

void SharedCameraTexts::share(MySinglePic &pic)
{
    pic.pivMakeModel = *m_makerModels.insert(pic.pivMakeModel);
    if (!pic.pivGear)
        return;
    std::shared_ptr<const CameraGear> &shared = m_gears[*pic.pivGear];
    if (shared)
        pic.pivGear = shared;
    else
        shared = pic.pivGear;
}

namespace ShotSettingsText {

namespace {

// exiftool divides a rational out to ten significant digits before it prints it.
double asExiftoolReadsIt(double value) { return QString::number(value, 'g', 10).toDouble(); }

// exiftool's sprintf is C's, which rounds an exact half to even ("%.1f" of 4.25 is "4.2");
// QString::asprintf rounds it up.
QString cFormatted(const char *format, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return QString::fromLatin1(text);
}

} // namespace

QString exposureTime(double seconds)
{
    const double secs = asExiftoolReadsIt(seconds);
    if (secs > 0 && secs < 0.25001)
        return QStringLiteral("1/%1").arg(qint64(0.5 + 1 / secs));
    QString text = cFormatted("%.1f", secs);
    if (text.endsWith(QLatin1String(".0")))
        text.chop(2);
    return text;
}

QString fNumber(double value)
{
    const double f = asExiftoolReadsIt(value);
    if (f <= 0)
        return QString::number(f, 'g', 10);
    return cFormatted(f < 1 ? "%.2f" : "%.1f", f);
}

QString focalLength(double millimetres) { return cFormatted("%.1f mm", asExiftoolReadsIt(millimetres)); }

QString digitalZoomRatio(double ratio) { return QString::number(ratio, 'g', 10); }

std::optional<QString> keyForDigitalZoom(double ratio)
{
    if (!ShotSettings::has(ratio) || asExiftoolReadsIt(ratio) <= 1)
        return std::nullopt;
    return digitalZoomRatio(ratio);
}

} // namespace ShotSettingsText

} // namespace orv
