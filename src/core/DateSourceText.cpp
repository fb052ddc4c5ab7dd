#include "core/DateSourceText.h"

#include "core/MySinglePic.h"

#include <QCoreApplication>

namespace orv {

QString DateSourceText::forPic(const MySinglePic &pic)
{
    auto tr = [](const char *text) { return QCoreApplication::translate("imageType", text); };
    switch (pic.spType) {
    case SpTypeExifOriginal:
        return pic.isCreaXmp ? tr("XMP creation date") : tr("EXIF original date");
    case SpTypeExifDigitized:
        return pic.isDigiXmp ? tr("XMP digitized date") : tr("EXIF digitized date");
    case SpTypeTiffDateTime:
        return pic.isModiXmp ? tr("XMP modify date") : tr("TIFF date");
    case SpTypeFileDatePreferredOverTiff:
        return tr("file creation date (TIFF date is later)");
    case SpTypeEmptyOriginalFileDate:
        return tr("file creation date (EXIF original date is empty)");
    case SpTypeEmptyDigitizedFileDate:
        return tr("file creation date (EXIF digitized date is empty)");
    case SpTypeEmptyTiffFileDate:
        return tr("file creation date (TIFF date is empty)");
    case SpTypeEmptyOriginalFixedDate:
        return tr("fixed date (EXIF original date is empty)");
    case SpTypeEmptyDigitizedFixedDate:
        return tr("fixed date (EXIF digitized date is empty)");
    case SpTypeEmptyTiffFixedDate:
        return tr("fixed date (TIFF date is empty)");
    case SpTypeNoTagsFileDate:
        return tr("file creation date (no date tags)");
    case SpTypeNoTagsImportOptionDate:
        return tr("import option date (no date tags)");
    case SpTypeUnsupportedPhoto:
        return tr("no date (unsupported or not read)");
    case SpTypeMovieFileDate:
        return tr("file creation date (movie without date)");
    case SpTypeRiff:
        return tr("AVI date");
    case SpTypeMvhdCreation:
        return tr("movie header creation date");
    case SpTypeMvhdModification:
        return tr("movie header modification date");
    case SpTypeFileDatePreferredOverMvhd:
        return tr("file creation date (movie modification date is later)");
    case SpTypeMvhdZeroFileDate:
        return tr("file creation date (movie header dates are zero)");
    case SpTypeMvhdZeroFixedDate:
        return tr("fixed date (movie header dates are zero)");
    case SpTypeMdta:
        return tr("QuickTime creation date");
    case SpTypeMovieExifIgnored:
        return tr("no date (movie not read)");
    case SpTypeIptcDateCreated:
        return pic.isCreaXmp ? tr("XMP IPTC creation date") : tr("IPTC creation date");
    default:
        return tr("unknown");
    }
}

} // namespace orv
