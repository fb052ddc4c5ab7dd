#include "core/ExiftoolBridge.h"

#include "time/DateStampCodec.h"
#include "core/MySinglePic.h"
#include "core/NewDateCalculator.h"
#include "core/PicScanner.h"
#include "core/SaveQuestions.h"
#include "core/SaveSettings.h"
#include "core/StampEdits.h"
#include "formats/InPlaceWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <cmath>

namespace orv {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("ExiftoolBridge", text);
}

// "2024:05:01 10:00:00" and "+02:00", as the date has them in `zone`; empty for no date.
std::pair<QString, QString> exifStampAndOffset(const OptionalDate &date, const TimeZone &zone)
{
    if (!date || date->isSentinel())
        return {};
    const ExifStampWithOffset written = DateStampCodec::exifWithOffsetDatasFromDate(*date, zone);
    return {QString::fromLatin1(DateStampCodec::unterminatedStringDataFromData(written.stamp)),
            QString::fromLatin1(DateStampCodec::unterminatedStringDataFromData(written.offset))};
}

// The tag each XMP stamp key stands for.
QString xmpTagForKey(const QString &key)
{
    static const std::map<QString, QString> tags = {
        {QStringLiteral("ExifDateTimeDigitized"), QStringLiteral("-XMP-exif:DateTimeDigitized")},
        {QStringLiteral("ExifDateTimeOriginal"), QStringLiteral("-XMP-exif:DateTimeOriginal")},
        {QStringLiteral("PhotoshopDateCreated"), QStringLiteral("-XMP-photoshop:DateCreated")},
        {QStringLiteral("TiffDateTime"), QStringLiteral("-XMP-tiff:DateTime")},
        {QStringLiteral("XmpCreateDate"), QStringLiteral("-XMP-xmp:CreateDate")},
        {QStringLiteral("XmpMetadataDate"), QStringLiteral("-XMP-xmp:MetadataDate")},
        {QStringLiteral("XmpModifyDate"), QStringLiteral("-XMP-xmp:ModifyDate")},
    };
    const auto found = tags.find(key);
    return found == tags.end() ? QString() : found->second;
}

bool carriesExif(qint64 format)
{
    return format == JpegFormat || format == TiffFormat || format == PngFormat;
}

QString number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

} // namespace

QStringList ExiftoolBridge::locationArguments(const MySinglePic &pic, bool forXmp)
{
    const double lat = *pic.gpsLat;
    const double lon = *pic.gpsLong;
    QStringList lines;
    if (forXmp) {
        lines << QStringLiteral("-XMP:GPSLatitude=") + number(lat, 14)
              << QStringLiteral("-XMP:GPSLongitude=") + number(lon, 14);
    } else {
        lines << QStringLiteral("-GPSLatitude=") + number(std::abs(lat), 14)
              << QStringLiteral("-GPSLatitudeRef=") + (lat < 0.0 ? u'S' : u'N')
              << QStringLiteral("-GPSLongitude=") + number(std::abs(lon), 14)
              << QStringLiteral("-GPSLongitudeRef=") + (lon < 0.0 ? u'W' : u'E');
    }
    const QString group = forXmp ? QStringLiteral("-XMP:") : QStringLiteral("-");
    if (pic.newLocationAltitude != MySinglePic::notSetAccuracy)
        lines << group + QStringLiteral("GPSAltitude=") + number(std::abs(pic.newLocationAltitude), 6)
              << group + QStringLiteral("GPSAltitudeRef=") +
                     (pic.newLocationAltitude < 0.0 ? u'1' : u'0');
    if (pic.newLocationHAccuracy != MySinglePic::notSetAccuracy)
        lines << group + QStringLiteral("GPSHPositioningError=") +
                     number(std::max(0.0, pic.newLocationHAccuracy), 6);
    return lines;
}

bool ExiftoolBridge::act(ToolStep step, const QStringList &arguments, MySinglePic &pic,
                         const QString &path)
{
    if (!XtController::isPassablePath(path)) {
        m_errors.addToolError(step, pic, tr("a path with a line break cannot be given to exiftool"));
        return false;
    }
    // The tool would rewrite a read-only file all the same; it is refused here.
    const QString file = pic.spPath();
    if (!QFileInfo(file).isWritable() ||
        (QFileInfo::exists(path) && !QFileInfo(path).isWritable())) {
        m_errors.addErrorID(SaveErrorId::SaveCannotOpen, pic);
        return false;
    }
    XtController::Action action;
    action.errorType = step;
    action.arguments = arguments;
    action.path = path;
    action.fast = path == file && pic.fileFormatType == PngFormat;
    const XtController::Outcome outcome = m_xt.run(action);
    if (!outcome.didChangeOnLastAction) {
        m_errors.addToolError(step, pic,
                              outcome.timedOut        ? tr("exiftool did not answer in time")
                              : outcome.error.isEmpty() ? tr("exiftool changed nothing")
                                                        : outcome.error);
        return false;
    }
    // The tool wrote a new file: its modification date goes back to the stored one.
    if (const OptionalDate &stored = pic.singlePicAttributes.NSFileModificationDate;
        stored && path == file) {
        if (const std::unique_ptr<InPlaceFile> written = InPlaceFile::open(file))
            written->setModificationDate(*stored);
    }
    return true;
}

bool ExiftoolBridge::refreshInternalData(MySinglePic &pic, ToolStep step)
{
    if (PicScanner::refreshInternalData(pic))
        return true;
    m_errors.addToolError(step, pic, tr("the file exiftool wrote cannot be read again"));
    return false;
}

bool ExiftoolBridge::completeFullExifDateTags(MySinglePic &pic)
{
    const TimeZone zone = StampEdits(pic, m_settings).zoneForNewStamps();
    const quint64 bits = pic.tagAddType;
    QStringList lines;
    const auto add = [&](const char *dateTag, const char *offsetTag, const OptionalDate &date) {
        const auto [stamp, offset] = exifStampAndOffset(date, zone);
        if (stamp.isEmpty())
            return;
        lines << QLatin1String(dateTag) + QLatin1Char('=') + stamp;
        if (!offset.isEmpty())
            lines << QLatin1String(offsetTag) + QLatin1Char('=') + offset;
    };
    if (bits & TagAddExifOriginal)
        add("-ExifIFD:DateTimeOriginal", "-ExifIFD:OffsetTimeOriginal", pic.exifDateTimeOriginalNEW);
    if (bits & TagAddExifDigitized)
        add("-ExifIFD:CreateDate", "-ExifIFD:OffsetTimeDigitized", pic.exifDateTimeDigitizedNEW);
    if ((bits & TagAddTiffDateTime) || pic.isModiXmp)
        add("-IFD0:ModifyDate", "-ExifIFD:OffsetTime", pic.tiffDateTimeNEW);
    if (lines.isEmpty()) {
        m_errors.addToolError(ToolStep::AddExifDateTags, pic, tr("no date to add"));
        return false;
    }
    if (!act(ToolStep::AddExifDateTags, lines, pic, pic.spPath()))
        return false;

    removeExifDateTimeAddition(pic);
    pic.didAddExifDateTimeTags = true;
    if (!refreshInternalData(pic, ToolStep::AddExifDateTags))
        return false;
    // The added tags hold their new dates already.
    if (bits & TagAddExifOriginal)
        pic.exifDateTimeOriginalNEW = pic.exifDateTimeOriginalOLD;
    if (bits & TagAddExifDigitized)
        pic.exifDateTimeDigitizedNEW = pic.exifDateTimeDigitizedOLD;
    if (bits & TagAddTiffDateTime)
        pic.tiffDateTimeNEW = pic.tiffDateTimeOLD;
    if (pic.exifDateTimeOriginalOLD)
        pic.spType = SpTypeExifOriginal;
    return true;
}

bool ExiftoolBridge::extendShortXmpDateTags(MySinglePic &pic,
                                            const std::map<QString, QString> &supportStamps)
{
    QStringList lines;
    for (const auto &[key, text] : supportStamps) {
        const QString tag = xmpTagForKey(key);
        if (!tag.isEmpty() && !text.isEmpty())
            lines << tag + QLatin1Char('=') + text;
    }
    if (lines.isEmpty()) {
        m_errors.addToolError(ToolStep::ExtendShortXmpStamps, pic, tr("no stamp to extend"));
        return false;
    }
    return act(ToolStep::ExtendShortXmpStamps, lines, pic, pic.spPath()) &&
           refreshInternalData(pic, ToolStep::ExtendShortXmpStamps);
}

bool ExiftoolBridge::mayAddDateTagsToFileDatedItems()
{
    const QMutexLocker lock(&m_questionMutex);
    if (!m_mayAddDateTags)
        m_mayAddDateTags = m_questions.addDateTagsToFileDatedItems();
    return *m_mayAddDateTags;
}

bool ExiftoolBridge::addDateTagsForFileDate(MySinglePic &pic)
{
    const OptionalDate date = pic.fileCreationDateNEW;
    if (carriesExif(pic.fileFormatType)) {
        pic.shouldAddExifDateTimeTags = true;
        pic.tagAddType = TagAddExifOriginal | TagAddExifDigitized;
        pic.exifDateTimeOriginalNEW = pic.exifDateTimeDigitizedNEW = date;
        return completeFullExifDateTags(pic);
    }
    const TimeZone zone = StampEdits(pic, m_settings).zoneForNewStamps();
    const auto [stamp, offset] = exifStampAndOffset(date, zone);
    if (stamp.isEmpty()) {
        m_errors.addToolError(ToolStep::AddExifDateTags, pic, tr("no date to add"));
        return false;
    }
    const QString value = stamp + offset;
    const QStringList lines = {QStringLiteral("-XMP-exif:DateTimeOriginal=") + value,
                               QStringLiteral("-XMP-xmp:CreateDate=") + value};
    if (!act(ToolStep::AddExifDateTags, lines, pic, pic.spPath()) ||
        !refreshInternalData(pic, ToolStep::AddExifDateTags))
        return false;
    if (pic.exifDateTimeOriginalOLD) {
        pic.exifDateTimeOriginalNEW = pic.exifDateTimeOriginalOLD;
        pic.exifDateTimeDigitizedNEW = pic.exifDateTimeDigitizedOLD;
        pic.spType = SpTypeExifOriginal;
    }
    return true;
}

bool ExiftoolBridge::updateXmpLocationInSidecar(MySinglePic &pic)
{
    const QStringList existing =
        pic.spSidecarPaths().filter(QStringLiteral(".xmp"), Qt::CaseInsensitive);
    const bool isNew = existing.isEmpty();
    const QFileInfo file(pic.spPath());
    const QString path = isNew ? file.dir().filePath(file.completeBaseName() + QLatin1String(".xmp"))
                               : existing.first();
    if (isNew && QFileInfo::exists(path)) {
        m_errors.addToolError(ToolStep::SidecarExists, pic, path);
        return false;
    }
    const ToolStep step =
        pic.hasAddedLocation ? ToolStep::AddLocationInSidecar : ToolStep::UpdateLocation;
    QStringList lines = locationArguments(pic, true);
    if (isNew)
        lines << QStringLiteral("-XMP:SidecarForExtension=") + file.suffix().toUpper();
    if (!act(step, lines, pic, path))
        return false;
    if (isNew)
        pic.spSidecarExtensions.append(QStringLiteral("xmp"));
    pic.takeSavedLocation();
    return true;
}

bool ExiftoolBridge::saveLocationChange(MySinglePic &pic)
{
    if (!pic.gpsLat || !pic.gpsLong) {
        m_errors.addToolError(ToolStep::UpdateLocation, pic, tr("no location to write"));
        return false;
    }
    const bool willAddNewLocation = !pic.singlePicAttributes.GPSLocation;
    const bool useSidecar =
        pic.hasXmpSidecar() || pic.isMovie() ||
        (willAddNewLocation && pic.isRaw() && m_settings.options.addRawLocationsOnlyInSidecars);
    if (useSidecar)
        return updateXmpLocationInSidecar(pic);
    const ToolStep step = willAddNewLocation ? ToolStep::AddLocation : ToolStep::UpdateLocation;
    if (!act(step, locationArguments(pic, false), pic, pic.spPath()) ||
        !refreshInternalData(pic, step))
        return false;
    pic.takeSavedLocation();
    return true;
}

} // namespace orv
