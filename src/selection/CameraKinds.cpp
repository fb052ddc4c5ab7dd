#include "selection/CameraKinds.h"

#include "core/MakerModel.h"
#include "core/MySinglePic.h"

#include <QCoreApplication>

namespace orv {

namespace {

QString translated(const char *text) { return QCoreApplication::translate("CameraKinds", text); }

QString orUnknown(const QString &text) { return text.isEmpty() ? CameraKinds::unknown : text; }

} // namespace

QString CameraKinds::cameraOf(const MySinglePic &pic) { return orUnknown(pic.pivMakeModel); }
QString CameraKinds::bodySnOf(const MySinglePic &pic) { return orUnknown(pic.pivBodySn()); }
QString CameraKinds::lensOf(const MySinglePic &pic) { return orUnknown(pic.pivMakeModelLens()); }
QString CameraKinds::lensSnOf(const MySinglePic &pic) { return orUnknown(pic.lensSn()); }

std::optional<QString> CameraKinds::settingOf(const MySinglePic &pic, ShotSetting setting)
{
    const ShotSettings &shot = pic.pivShotSettings;
    const auto ifNamed = [](double value, QString (*text)(double)) -> std::optional<QString> {
        return ShotSettings::has(value) ? std::optional(text(value)) : std::nullopt;
    };
    switch (setting) {
    case ShotSetting::FNumber: return ifNamed(shot.fNumber, ShotSettingsText::fNumber);
    case ShotSetting::FocalLength: return ifNamed(shot.focalLength, ShotSettingsText::focalLength);
    case ShotSetting::ExposureTime: return ifNamed(shot.exposureTime, ShotSettingsText::exposureTime);
    case ShotSetting::DigitalZoom: return ShotSettingsText::keyForDigitalZoom(shot.digitalZoomRatio);
    case ShotSetting::Iso: return shot.iso ? std::optional(QString::number(shot.iso)) : std::nullopt;
    }
    return std::nullopt;
}

QString CameraKinds::cameraName(const QString &camera)
{
    return camera == unknown ? translated(QT_TRANSLATE_NOOP("CameraKinds", "No Camera"))
                             : MakerModel::WA_displayOptimizedModelMake(camera);
}

QString CameraKinds::lensName(const QString &lens)
{
    return lens == unknown ? translated(QT_TRANSLATE_NOOP("CameraKinds", "No Lens")) : lens;
}

QString CameraKinds::serialName(const QString &serial)
{
    return serial == unknown ? translated(QT_TRANSLATE_NOOP("CameraKinds", "No Serial Number")) : serial;
}

QString CameraKinds::settingName(ShotSetting setting)
{
    switch (setting) {
    case ShotSetting::FNumber: return translated(QT_TRANSLATE_NOOP("CameraKinds", "Aperture"));
    case ShotSetting::FocalLength: return translated(QT_TRANSLATE_NOOP("CameraKinds", "Focal Length"));
    case ShotSetting::ExposureTime: return translated(QT_TRANSLATE_NOOP("CameraKinds", "Exposure Time"));
    case ShotSetting::DigitalZoom: return translated(QT_TRANSLATE_NOOP("CameraKinds", "Digital Zoom"));
    case ShotSetting::Iso: return translated(QT_TRANSLATE_NOOP("CameraKinds", "ISO"));
    }
    return {};
}

QString CameraKinds::settingValueName(ShotSetting setting, const QString &value)
{
    switch (setting) {
    case ShotSetting::FNumber: return QStringLiteral("f/") + value;
    case ShotSetting::ExposureTime: return translated(QT_TRANSLATE_NOOP("CameraKinds", "%1 s")).arg(value);
    case ShotSetting::DigitalZoom: return value + QChar(0x00D7); // the multiplication sign
    case ShotSetting::FocalLength:
    case ShotSetting::Iso: return value;
    }
    return value;
}

double CameraKinds::settingOrder(ShotSetting setting, const QString &value)
{
    if (setting == ShotSetting::ExposureTime && value.startsWith(QLatin1String("1/")))
        return 1.0 / value.mid(2).toDouble();
    // "4.2 mm": the number before the unit.
    return value.section(QLatin1Char(' '), 0, 0).toDouble();
}

} // namespace orv
