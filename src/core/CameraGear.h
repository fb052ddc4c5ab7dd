#pragma once

#include "formats/TiffTagReader.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <memory>
#include <optional>

namespace orv {

class MySinglePic;

// The serial numbers and the lens an item was taken with. The items of one camera body and lens
// share one (see PicScanner), so an item holds a pointer, not three texts.
struct CameraGear
{
    QString pivBodySn;
    QString pivMakeModelLens; // the lens's make and model, joined as a camera's are
    QString lensSn;

    bool operator==(const CameraGear &other) const = default;
    bool isEmpty() const { return pivBodySn.isEmpty() && pivMakeModelLens.isEmpty() && lensSn.isEmpty(); }

    // Nothing when the tags name no serial and no lens; a serial of zeros names none.
    static std::optional<CameraGear> fromTags(const TiffImageTags &tags);
};

inline size_t qHash(const CameraGear &gear, size_t seed = 0)
{
    return qHashMulti(seed, gear.pivBodySn, gear.pivMakeModelLens, gear.lensSn);
}

// Lets the items of one camera and lens share their texts, so that an import or a restore of
// 100,000 items holds each camera's once. One per folder's scan or read, on its own thread.
class SharedCameraTexts
{
public:
    void share(MySinglePic &pic);
    // The record of that gear the items so far share; a new one for new gear, none for none.
    std::shared_ptr<const CameraGear> shared(std::optional<CameraGear> gear);

private:
    QSet<QString> m_makerModels;
    QHash<CameraGear, std::shared_ptr<const CameraGear>> m_gears;
};

// The texts exiftool prints by default for a shot's settings, which the command line and the
// sidebar show. Each takes a value that ShotSettings::has.
namespace ShotSettingsText {
QString exposureTime(double seconds); // "1/120" below a quarter second, else "0.5", "2"
QString fNumber(double value);        // "2.8"; "0.95" below 1
QString focalLength(double millimetres); // "4.2 mm"
QString digitalZoomRatio(double ratio);  // "1.5"
// The digital zoom worth a sidebar row: a ratio above 1. Nothing for 0 (the camera's "not
// used") and 1.
std::optional<QString> keyForDigitalZoom(double ratio);
} // namespace ShotSettingsText

} // namespace orv
