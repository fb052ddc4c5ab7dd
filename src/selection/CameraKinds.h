#pragma once

#include <QString>

#include <optional>

namespace orv {

class MySinglePic;

// The settings of a shot the sidebar groups items by, numbered as its rows are.
enum class ShotSetting : int { FNumber = 1, FocalLength = 2, ExposureTime = 3, DigitalZoom = 4, Iso = 5 };
inline constexpr ShotSetting allShotSettings[] = {ShotSetting::FNumber, ShotSetting::FocalLength,
                                                  ShotSetting::ExposureTime, ShotSetting::DigitalZoom,
                                                  ShotSetting::Iso};

// How the quick selections and the sidebar sort items by what took them: the camera with its
// body's serial number, the lens with its own, and the settings of the shot. "-" stands for a
// camera, lens or serial the file does not name.
class CameraKinds
{
public:
    static inline const QString unknown = QStringLiteral("-");

    static QString cameraOf(const MySinglePic &pic);
    static QString bodySnOf(const MySinglePic &pic);
    static QString lensOf(const MySinglePic &pic);
    static QString lensSnOf(const MySinglePic &pic);
    // The setting as exiftool prints it ("2.8", "4.2 mm", "1/120", "1.5", "100"); nothing where
    // the file names none, for a digital zoom that zoomed nothing, and for an ISO of 0.
    static std::optional<QString> settingOf(const MySinglePic &pic, ShotSetting setting);

    // Names as shown, translated: the unknown ones say so; a serial stands for itself.
    static QString cameraName(const QString &camera);
    static QString lensName(const QString &lens);
    static QString serialName(const QString &serial);
    static QString settingName(ShotSetting setting);
    // A value of settingOf as a row shows it: "f/2.8", "1/120 s".
    static QString settingValueName(ShotSetting setting, const QString &value);
    // The number a value of settingOf stands for, so that values sort as numbers.
    static double settingOrder(ShotSetting setting, const QString &value);
};

} // namespace orv
