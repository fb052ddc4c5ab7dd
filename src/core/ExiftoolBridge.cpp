#include "core/ExiftoolBridge.h"

#include "time/DateStampCodec.h"
#include "core/MySinglePic.h"
#include "core/NewDateCalculator.h"
#include "core/PicScanner.h"
#include "core/SaveQuestions.h"
#include "core/SaveSettings.h"
#include "core/StampEdits.h"
#include "formats/InPlaceWriter.h"
#include "formats/SaveJournal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <cmath>
#include <initializer_list>

namespace orv {

namespace {

QString translated(const char *text)
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

bool isSet(double value)
{
    return value != MySinglePic::notSetAccuracy;
}

// "-EXIF:" and the like; the new-place type names no group and lets exiftool choose.
QString tagPrefix(const char *group)
{
    return QLatin1Char('-') + QLatin1String(group) + (*group ? QLatin1String(":") : QLatin1String());
}

// A coordinate as exiftool takes it: EXIF an absolute value beside its ref, XMP a signed value.
QStringList coordinateLines(const char *group, const MySinglePic &source)
{
    const double lat = *source.gpsLat;
    const double lon = *source.gpsLong;
    const QString prefix = tagPrefix(group);
    if (QLatin1String(group) == QLatin1String("XMP"))
        return {prefix + QStringLiteral("GPSLatitude=") + number(lat, 14),
                prefix + QStringLiteral("GPSLongitude=") + number(lon, 14)};
    return {prefix + QStringLiteral("GPSLatitude=") + number(std::abs(lat), 14),
            prefix + QStringLiteral("GPSLatitudeRef=") + (lat < 0.0 ? u'S' : u'N'),
            prefix + QStringLiteral("GPSLongitude=") + number(std::abs(lon), 14),
            prefix + QStringLiteral("GPSLongitudeRef=") + (lon < 0.0 ? u'W' : u'E')};
}

// exiftool reads a ref given as a number by its sign: the signed altitude says above or below.
QStringList altitudeLines(const char *group, const MySinglePic &source)
{
    if (!isSet(source.newLocationAltitude))
        return {};
    const QString prefix = tagPrefix(group);
    return {prefix + QStringLiteral("GPSAltitude=") + number(std::abs(source.newLocationAltitude), 6),
            prefix + QStringLiteral("GPSAltitudeRef=") + number(source.newLocationAltitude, 6)};
}

QString accuracyLine(const char *group, double accuracy)
{
    return tagPrefix(group) + QStringLiteral("GPSHPositioningError=") +
           (accuracy == 0.0 ? QStringLiteral("0") : number(std::max(0.0, accuracy), 6));
}

// An action's condition that the group holds every one of the tags: "(defined $EXIF:GPSLatitude)".
QStringList definedCondition(const char *group, std::initializer_list<const char *> tags)
{
    QStringList defined;
    for (const char *tag : tags)
        defined << QStringLiteral("defined $%1:%2").arg(QLatin1String(group), QLatin1String(tag));
    return {QStringLiteral("-if"), QLatin1Char('(') + defined.join(QStringLiteral(" and ")) + QLatin1Char(')')};
}

// A new sidecar names the extension of the file it belongs to.
QStringList sidecarForLine(const MySinglePic &pic)
{
    return {QStringLiteral("-XMP:SidecarForExtension=") + QFileInfo(pic.spPath()).suffix().toUpper()};
}

} // namespace

bool ExiftoolBridge::willAddNewLocation(const MySinglePic &pic)
{
    if (pic.gpsLatOld)
        return false;
    return pic.isMovie() ? pic.singlePicAttributes.qtLocations.empty()
                         : !pic.singlePicAttributes.GPSLocation;
}

ExiftoolBridge::LocationArguments
ExiftoolBridge::updateLocationArguments(LocationType type, const MySinglePic &source,
                                        bool zeroAccuracyOnChange)
{
    const double accuracy = source.newLocationHAccuracy;
    // The accuracy a moved place leaves in the tags; nothing when they keep theirs.
    const bool changesAccuracy = isSet(accuracy) || zeroAccuracyOnChange;
    const double newAccuracy = isSet(accuracy) ? accuracy : 0.0;
    LocationArguments written;
    QStringList &lines = written.lines;
    switch (type) {
    case LocationType::New:
        lines << coordinateLines("", source) << altitudeLines("", source);
        if (isSet(accuracy))
            lines << accuracyLine("", accuracy);
        break;
    case LocationType::Exif:
    case LocationType::Xmp: {
        const char *group = type == LocationType::Exif ? "EXIF" : "XMP";
        lines << definedCondition(group, {"GPSLatitude", "GPSLongitude"})
              << coordinateLines(group, source) << altitudeLines(group, source);
        written.needsSeparateHaccRun = changesAccuracy;
        break;
    }
    case LocationType::Existing:
        lines << QStringLiteral("-wm") << QStringLiteral("w") << coordinateLines("EXIF", source)
              << coordinateLines("XMP", source) << altitudeLines("EXIF", source)
              << altitudeLines("XMP", source);
        if (changesAccuracy)
            lines << accuracyLine("EXIF", newAccuracy) << accuracyLine("XMP", newAccuracy);
        break;
    case LocationType::XmpAccuracy:
    case LocationType::ExifAccuracy: {
        if (!changesAccuracy)
            break;
        const char *group = type == LocationType::XmpAccuracy ? "XMP" : "EXIF";
        lines << definedCondition(group, {"GPSHPositioningError"}) << accuracyLine(group, newAccuracy);
        break;
    }
    }
    return written;
}

QStringList ExiftoolBridge::extendExifLocationArguments(const MySinglePic &pic)
{
    QStringList lines = altitudeLines("EXIF", pic);
    if (isSet(pic.newLocationHAccuracy))
        lines << accuracyLine("EXIF", pic.newLocationHAccuracy);
    return lines;
}

ExiftoolBridge::Acted ExiftoolBridge::tryAct(ToolStep step, const QStringList &arguments,
                                             MySinglePic &pic, const QString &path, QString &why)
{
    if (!XtController::isPassablePath(path)) {
        m_errors.addToolError(
            step, pic,
            translated(QT_TRANSLATE_NOOP("ExiftoolBridge",
                                         "a path with a line break cannot be given to exiftool")));
        return Acted::Refused;
    }
    // The tool would rewrite a read-only file all the same, for root even one without any write
    // bit; it is refused here.
    const QString file = pic.spPath();
    const auto isWritable = [](const QString &p) {
        return QFileInfo(p).isWritable() && InPlaceFile::hasWriteBit(p);
    };
    if (!isWritable(file) || (QFileInfo::exists(path) && !isWritable(path))) {
        m_errors.addErrorID(SaveErrorId::SaveCannotOpen, pic);
        return Acted::Refused;
    }
    // The journal keeps the file as it is, so that a kill or an undo finds it again: exiftool
    // writes a new file and renames it over this one, and the kept link holds the old bytes. A
    // sidecar the tool makes is recorded as absent, so that an undo takes it away.
    std::optional<SaveJournal::Kept> kept;
    if (m_journal) {
        kept = m_journal->keepOriginal(path, XtController::temporaryFileOf(path));
        if (!kept) {
            const QString problem = m_journal->problem();
            m_errors.addToolError(
                step, pic,
                problem.isEmpty()
                    ? translated(QT_TRANSLATE_NOOP(
                          "ExiftoolBridge",
                          "the file cannot be kept for an undo before exiftool writes it"))
                    : problem);
            return Acted::Refused;
        }
    }
    XtController::Action action;
    action.errorType = step;
    action.arguments = arguments;
    action.path = path;
    action.fast = path == file && pic.fileFormatType == PngFormat;
    const XtController::Outcome outcome = m_xt.run(action);
    if (!outcome.didChangeOnLastAction) {
        why =
            outcome.timedOut
                ? translated(QT_TRANSLATE_NOOP("ExiftoolBridge", "exiftool did not answer in time"))
                : outcome.error;
        return Acted::Unchanged;
    }
    // The tool wrote a new file: its modification date goes back to the one it had.
    if (const OptionalDate &stored = pic.singlePicAttributes.NSFileModificationDate;
        (kept || stored) && path == file) {
        if (const std::unique_ptr<InPlaceFile> written = InPlaceFile::open(file))
            written->setModificationTime(kept ? kept->modified : FileTime::fromInstant(*stored));
    }
    if (kept)
        m_journal->toolChanged(*kept, path);
    return Acted::Changed;
}

bool ExiftoolBridge::act(ToolStep step, const QStringList &arguments, MySinglePic &pic,
                         const QString &path)
{
    QString why;
    const Acted acted = tryAct(step, arguments, pic, path, why);
    if (acted == Acted::Unchanged)
        m_errors.addToolError(step, pic,
                              why.isEmpty() ? translated(QT_TRANSLATE_NOOP(
                                                  "ExiftoolBridge", "exiftool changed nothing"))
                                            : why);
    return acted == Acted::Changed;
}

bool ExiftoolBridge::refreshInternalData(MySinglePic &pic, ToolStep step)
{
    // The item's place is the one in force: a place still to be written in place must not give
    // way to the one the file holds now.
    const std::optional<double> lat = pic.gpsLat;
    const std::optional<double> lon = pic.gpsLong;
    const bool refreshed = PicScanner::refreshInternalData(pic);
    pic.gpsLat = lat;
    pic.gpsLong = lon;
    if (refreshed)
        return true;
    m_errors.addToolError(step, pic,
                          translated(QT_TRANSLATE_NOOP(
                              "ExiftoolBridge", "the file exiftool wrote cannot be read again")));
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
        m_errors.addToolError(ToolStep::AddExifDateTags, pic,
                              translated(QT_TRANSLATE_NOOP("ExiftoolBridge", "no date to add")));
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
        m_errors.addToolError(
            ToolStep::ExtendShortXmpStamps, pic,
            translated(QT_TRANSLATE_NOOP("ExiftoolBridge", "no stamp to extend")));
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
        m_errors.addToolError(ToolStep::AddExifDateTags, pic,
                              translated(QT_TRANSLATE_NOOP("ExiftoolBridge", "no date to add")));
        return false;
    }
    const QString value = stamp + offset;
    // A movie takes the metadata date the scan reads with its own offset.
    const QStringList lines =
        pic.isMovie() ? QStringList{QStringLiteral("-Keys:CreationDate=") + value}
                      : QStringList{QStringLiteral("-XMP-exif:DateTimeOriginal=") + value,
                                    QStringLiteral("-XMP-xmp:CreateDate=") + value};
    if (!act(ToolStep::AddExifDateTags, lines, pic, pic.spPath()) ||
        !refreshInternalData(pic, ToolStep::AddExifDateTags))
        return false;
    if (pic.isMovie())
        return true;
    if (pic.exifDateTimeOriginalOLD) {
        pic.exifDateTimeOriginalNEW = pic.exifDateTimeOriginalOLD;
        pic.exifDateTimeDigitizedNEW = pic.exifDateTimeDigitizedOLD;
        pic.spType = SpTypeExifOriginal;
    }
    return true;
}

QString ExiftoolBridge::sidecarToWrite(MySinglePic &pic, bool &isNew)
{
    const QStringList existing =
        pic.spSidecarPaths().filter(QStringLiteral(".xmp"), Qt::CaseInsensitive);
    isNew = existing.isEmpty();
    const QFileInfo file(pic.spPath());
    const QString path = isNew ? file.dir().filePath(file.completeBaseName() + QLatin1String(".xmp"))
                               : existing.first();
    if (isNew && QFileInfo::exists(path)) {
        m_errors.addToolError(ToolStep::SidecarExists, pic, path);
        return {};
    }
    return path;
}

bool ExiftoolBridge::updateXmpLocationInSidecar(MySinglePic &pic, bool isNewLocation)
{
    bool isNew = false;
    const QString path = sidecarToWrite(pic, isNew);
    if (path.isEmpty())
        return false;
    const ToolStep step =
        pic.hasAddedLocation ? ToolStep::AddLocationInSidecar : ToolStep::UpdateLocation;
    QStringList lines = coordinateLines("XMP", pic);
    if (isNew)
        lines << sidecarForLine(pic);
    lines << altitudeLines("XMP", pic);
    const double accuracy = pic.newLocationHAccuracy;
    if (isSet(accuracy))
        lines << accuracyLine("XMP", accuracy);
    if (!act(step, lines, pic, path))
        return false;
    // A sidecar that had a positioning error keeps none that no longer holds. A run of its own,
    // as "-wm w" in the same action would also keep a sidecar without a place from taking one.
    const bool zeroesAccuracy = !isSet(accuracy) && !isNew && !isNewLocation &&
                                m_settings.setPositioningErrorsToZeroOnChange;
    QString ignored;
    if (zeroesAccuracy &&
        tryAct(step, updateLocationArguments(LocationType::XmpAccuracy, pic, true).lines, pic, path,
               ignored) == Acted::Refused)
        return false;
    if (isNew)
        pic.spSidecarExtensions.append(QStringLiteral("xmp"));
    std::optional<double> &kept = pic.singlePicAttributes.GPSLocationXmpHPositioningError;
    if (isSet(accuracy))
        kept = std::max(0.0, accuracy);
    else if (m_settings.setPositioningErrorsToZeroOnChange)
        kept.reset();
    pic.takeSavedLocation();
    return true;
}

ExiftoolBridge::Acted ExiftoolBridge::updateLocation(LocationType type, MySinglePic &pic,
                                                     QString &why)
{
    const ToolStep step = type == LocationType::New ? ToolStep::AddLocation : ToolStep::UpdateLocation;
    const bool zero = m_settings.setPositioningErrorsToZeroOnChange;
    const LocationArguments written = updateLocationArguments(type, pic, zero);
    const Acted acted = tryAct(step, written.lines, pic, pic.spPath(), why);
    if (acted != Acted::Changed || !written.needsSeparateHaccRun)
        return acted;
    const LocationType accuracyType =
        type == LocationType::Exif ? LocationType::ExifAccuracy : LocationType::XmpAccuracy;
    QString ignored;
    const Acted accuracy =
        tryAct(step, updateLocationArguments(accuracyType, pic, zero).lines, pic, pic.spPath(), ignored);
    return accuracy == Acted::Refused ? Acted::Refused : Acted::Changed;
}

bool ExiftoolBridge::completeInPlaceLocation(MySinglePic &pic)
{
    const GpsLocationRecord &stored = *pic.singlePicAttributes.GPSLocation;
    const bool lacksAltitude = isSet(pic.newLocationAltitude) &&
                               (!stored.altitude_Offset || !stored.altitudeRef_Offset);
    const bool lacksAccuracy = isSet(pic.newLocationHAccuracy) && !stored.hPositioningError_Offset;
    bool changed = false;
    if (lacksAltitude || lacksAccuracy) {
        if (!act(ToolStep::UpdateLocation, extendExifLocationArguments(pic), pic, pic.spPath()))
            return false;
        changed = true;
    }
    if (m_settings.syncXMPDataOnSave) {
        // A file without an XMP place has no twin to keep in step.
        QString why;
        const Acted acted = updateLocation(LocationType::Xmp, pic, why);
        if (acted == Acted::Refused)
            return false;
        changed = changed || acted == Acted::Changed;
    }
    return !changed || refreshInternalData(pic, ToolStep::UpdateLocation);
}

bool ExiftoolBridge::updateFileLocation(MySinglePic &pic)
{
    const auto fail = [&](ToolStep step, const QString &why) {
        m_errors.addToolError(step, pic,
                              why.isEmpty() ? translated(QT_TRANSLATE_NOOP(
                                                  "ExiftoolBridge", "exiftool changed nothing"))
                                            : why);
        return false;
    };
    QString why;
    if (willAddNewLocation(pic)) {
        const Acted acted = updateLocation(LocationType::New, pic, why);
        if (acted == Acted::Unchanged)
            return fail(ToolStep::AddLocation, why);
        if (acted == Acted::Refused)
            return false;
    } else if (m_settings.syncXMPDataOnSave && !pic.singlePicAttributes.GPSLocation) {
        // Both places move together wherever the file has them; a file with neither keeps the
        // place beside it.
        const Acted acted = updateLocation(LocationType::Existing, pic, why);
        if (acted == Acted::Refused)
            return false;
        if (acted == Acted::Unchanged)
            return why.isEmpty() ? updateXmpLocationInSidecar(pic, false)
                                 : fail(ToolStep::UpdateLocation, why);
    } else {
        // The EXIF tags where the file has them, and the XMP place where it has one: always
        // under sync, otherwise only when no EXIF tag took the place. A file that took neither
        // fails.
        const Acted exif = updateLocation(LocationType::Exif, pic, why);
        if (exif == Acted::Refused)
            return false;
        Acted xmp = Acted::Unchanged;
        if (exif == Acted::Unchanged || m_settings.syncXMPDataOnSave)
            xmp = updateLocation(LocationType::Xmp, pic, why);
        if (xmp == Acted::Refused)
            return false;
        if (exif == Acted::Unchanged && xmp == Acted::Unchanged)
            return fail(ToolStep::UpdateLocation, why);
    }
    if (!refreshInternalData(pic, ToolStep::UpdateLocation))
        return false;
    pic.takeSavedLocation();
    return true;
}

bool ExiftoolSteps::ratingGoesToSidecar(const MySinglePic &pic, bool addRawLocationsOnlyInSidecars)
{
    return pic.hasXmpSidecar() || pic.isMovie() || (pic.isRaw() && addRawLocationsOnlyInSidecars);
}

bool ExiftoolBridge::saveRatingChange(MySinglePic &pic, int rating)
{
    const QStringList lines{QStringLiteral("-XMP-xmp:Rating=") + QString::number(rating)};
    if (!ratingGoesToSidecar(pic, m_settings.options.addRawLocationsOnlyInSidecars)) {
        if (!act(ToolStep::WriteRating, lines, pic, pic.spPath()) ||
            !refreshInternalData(pic, ToolStep::WriteRating))
            return false;
    } else {
        bool isNew = false;
        const QString sidecar = sidecarToWrite(pic, isNew);
        if (sidecar.isEmpty() ||
            !act(ToolStep::WriteRating, isNew ? lines + sidecarForLine(pic) : lines, pic, sidecar))
            return false;
        if (isNew)
            pic.spSidecarExtensions.append(QStringLiteral("xmp"));
    }
    pic.fileRating = qint8(rating);
    return true;
}

bool ExiftoolBridge::saveLocationChange(MySinglePic &pic, bool exifInPlace)
{
    if (!pic.gpsLat || !pic.gpsLong) {
        m_errors.addToolError(
            ToolStep::UpdateLocation, pic,
            translated(QT_TRANSLATE_NOOP("ExiftoolBridge", "no location to write")));
        return false;
    }
    if (exifInPlace && pic.singlePicAttributes.GPSLocation)
        return completeInPlaceLocation(pic);
    const bool isNewLocation = willAddNewLocation(pic);
    const bool useSidecar =
        pic.hasXmpSidecar() || pic.isMovie() ||
        (isNewLocation && pic.isRaw() && m_settings.options.addRawLocationsOnlyInSidecars);
    return useSidecar ? updateXmpLocationInSidecar(pic, isNewLocation) : updateFileLocation(pic);
}

} // namespace orv
