#include "core/CameraGear.h"

#include "core/MakerModel.h"
#include "core/MySinglePic.h"

#include <algorithm>
#include <charconv>

namespace orv {

namespace {

// Cameras write a serial of zeros where they know none, as Canon's bodies do for many lenses.
QString namedSerial(const QString &serial)
{
    const bool zeros = std::all_of(serial.cbegin(), serial.cend(), [](QChar c) { return c == u'0'; });
    return zeros ? QString() : serial;
}

} // namespace

std::optional<CameraGear> CameraGear::fromTags(const TiffImageTags &tags)
{
    CameraGear gear{namedSerial(tags.bodySerial), QString(), namedSerial(tags.lensSerial)};
    if (!tags.lensMake.isEmpty() || !tags.lensModel.isEmpty())
        gear.pivMakeModelLens = MakerModel::completeMakerModelStringFromMaker(tags.lensMake, tags.lensModel);
    return gear.isEmpty() ? std::nullopt : std::optional(std::move(gear));
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

std::shared_ptr<const CameraGear> SharedCameraTexts::shared(std::optional<CameraGear> gear)
{
    if (!gear)
        return nullptr;
    std::shared_ptr<const CameraGear> &shared = m_gears[*gear];
    if (!shared)
        shared = std::make_shared<const CameraGear>(std::move(*gear));
    return shared;
}

namespace ShotSettingsText {

namespace {

// As C's printf prints in the "C" locale whatever the user's ("%.1f" rounds an exact half to
// even, as exiftool's sprintf does; QString::asprintf rounds it up).
QString printed(double value, std::chars_format format, int precision)
{
    char text[64];
    const std::to_chars_result end = std::to_chars(text, text + sizeof text, value, format, precision);
    return QString::fromLatin1(text, end.ptr - text);
}

// exiftool divides a rational out to ten significant digits before it prints it.
double asExiftoolReadsIt(double value)
{
    char text[64];
    const std::to_chars_result end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 10);
    std::from_chars(text, end.ptr, value);
    return value;
}

} // namespace

QString exposureTime(double seconds)
{
    const double secs = asExiftoolReadsIt(seconds);
    if (secs > 0 && secs < 0.25001)
        return QStringLiteral("1/%1").arg(qint64(0.5 + 1 / secs));
    QString text = printed(secs, std::chars_format::fixed, 1);
    if (text.endsWith(QLatin1String(".0")))
        text.chop(2);
    return text;
}

QString fNumber(double value)
{
    const double f = asExiftoolReadsIt(value);
    if (f <= 0)
        return digitalZoomRatio(f);
    return printed(f, std::chars_format::fixed, f < 1 ? 2 : 1);
}

QString focalLength(double millimetres)
{
    return printed(asExiftoolReadsIt(millimetres), std::chars_format::fixed, 1) + QStringLiteral(" mm");
}

QString digitalZoomRatio(double ratio) { return printed(ratio, std::chars_format::general, 10); }

std::optional<QString> keyForDigitalZoom(double ratio)
{
    if (!ShotSettings::has(ratio) || asExiftoolReadsIt(ratio) <= 1)
        return std::nullopt;
    return digitalZoomRatio(ratio);
}

} // namespace ShotSettingsText

} // namespace orv
