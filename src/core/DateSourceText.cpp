#include "core/DateSourceText.h"

#include "core/MySinglePic.h"

#include <QCoreApplication>

namespace orv {

QString DateSourceText::forPic(const MySinglePic &pic)
{
    auto translated = [](const char *text) {
        return QCoreApplication::translate("imageType", text);
    };
    switch (pic.spType) {
    case SpTypeExifOriginal:
        return pic.isCreaXmp ? translated(QT_TRANSLATE_NOOP("imageType", "XMP creation date"))
                             : translated(QT_TRANSLATE_NOOP("imageType", "EXIF original date"));
    case SpTypeExifDigitized:
        return pic.isDigiXmp ? translated(QT_TRANSLATE_NOOP("imageType", "XMP digitized date"))
                             : translated(QT_TRANSLATE_NOOP("imageType", "EXIF digitized date"));
    case SpTypeTiffDateTime:
        return pic.isModiXmp ? translated(QT_TRANSLATE_NOOP("imageType", "XMP modify date"))
                             : translated(QT_TRANSLATE_NOOP("imageType", "TIFF date"));
    case SpTypeFileDatePreferredOverTiff:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "file creation date (TIFF date is later)"));
    case SpTypeEmptyOriginalFileDate:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "file creation date (EXIF original date is empty)"));
    case SpTypeEmptyDigitizedFileDate:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "file creation date (EXIF digitized date is empty)"));
    case SpTypeEmptyTiffFileDate:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "file creation date (TIFF date is empty)"));
    case SpTypeEmptyOriginalFixedDate:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "fixed date (EXIF original date is empty)"));
    case SpTypeEmptyDigitizedFixedDate:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "fixed date (EXIF digitized date is empty)"));
    case SpTypeEmptyTiffFixedDate:
        return translated(QT_TRANSLATE_NOOP("imageType", "fixed date (TIFF date is empty)"));
    case SpTypeNoTagsFileDate:
        return translated(QT_TRANSLATE_NOOP("imageType", "file creation date (no date tags)"));
    case SpTypeNoTagsImportOptionDate:
        return translated(QT_TRANSLATE_NOOP("imageType", "import option date (no date tags)"));
    case SpTypeUnsupportedPhoto:
        return translated(QT_TRANSLATE_NOOP("imageType", "no date (unsupported or not read)"));
    case SpTypeMovieFileDate:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "file creation date (movie without date)"));
    case SpTypeRiff:
        return translated(QT_TRANSLATE_NOOP("imageType", "AVI date"));
    case SpTypeMvhdCreation:
        return translated(QT_TRANSLATE_NOOP("imageType", "movie header creation date"));
    case SpTypeMvhdModification:
        return translated(QT_TRANSLATE_NOOP("imageType", "movie header modification date"));
    case SpTypeFileDatePreferredOverMvhd:
        return translated(QT_TRANSLATE_NOOP(
            "imageType", "file creation date (movie modification date is later)"));
    case SpTypeMvhdZeroFileDate:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "file creation date (movie header dates are zero)"));
    case SpTypeMvhdZeroFixedDate:
        return translated(
            QT_TRANSLATE_NOOP("imageType", "fixed date (movie header dates are zero)"));
    case SpTypeMdta:
        return translated(QT_TRANSLATE_NOOP("imageType", "QuickTime creation date"));
    case SpTypeMovieExifIgnored:
        return translated(QT_TRANSLATE_NOOP("imageType", "no date (movie not read)"));
    case SpTypeIptcDateCreated:
        return pic.isCreaXmp ? translated(QT_TRANSLATE_NOOP("imageType", "XMP IPTC creation date"))
                             : translated(QT_TRANSLATE_NOOP("imageType", "IPTC creation date"));
    default:
        return translated(QT_TRANSLATE_NOOP("imageType", "unknown"));
    }
}

} // namespace orv
