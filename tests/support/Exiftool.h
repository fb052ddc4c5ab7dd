#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <map>

namespace orv::test {

enum class ExiftoolGroups {
    Family0, // -G:  "EXIF:DateTimeOriginal", "XMP:CreateDate"
    Family1, // -G1: "ExifIFD:DateTimeOriginal", "IFD0:ModifyDate", "XMP-xmp:CreateDate"
};

// What exiftool read from one file, keyed "Group:Tag"; numbers are unconverted (-n).
struct ExiftoolTags
{
    QJsonObject json{};

    bool has(const QString &key) const { return json.contains(key); }
    // The value as text (a number too); empty when absent.
    QString string(const QString &key) const;
    // NaN when absent or not a number.
    double number(const QString &key) const;
};

// Runs `exiftool -j -n -G` (or -G1) with extraArguments on path. Throws std::runtime_error with
// the reason when exiftool is missing or answers no JSON.
ExiftoolTags exiftoolTags(const QString &path, ExiftoolGroups groups = ExiftoolGroups::Family0,
                          const QStringList &extraArguments = {});

// The same for many files in one exiftool run, keyed by the path exiftool was given.
std::map<QString, ExiftoolTags> exiftoolTagsOfFiles(const QStringList &paths,
                                                    ExiftoolGroups groups = ExiftoolGroups::Family0);

// The named tags as exiftool prints them by default ("1/120", "4.2 mm"; no -n), for many files in
// one run, keyed "Group:Tag" in family 1 groups (every group's, -a) and by the canonical path.
std::map<QString, ExiftoolTags> exiftoolPrintedTagsOfFiles(const QStringList &paths, const QStringList &tags);

enum class ExiftoolCheck {
    Read,     // what any read reports
    Validate, // -validate: also checksums, tag order, required tags
};

// Every warning exiftool gives for path, in its order (JSON output keeps only the first).
QStringList exiftoolWarnings(const QString &path, ExiftoolCheck check = ExiftoolCheck::Read);

struct ExiftoolValueLocation
{
    quint32 offset = 0;
    quint32 length = 0;
};

// Where exiftool found each tag's value bytes, from its -v3 -u dump, keyed by family 1 group:
// "IFD0:ModifyDate", "ExifIFD:DateTimeOriginal", "GPS:GPSLatitude", "IFD0:Exif_0x002e".
// Covers the hex-dumped TIFF directories, not XMP. Offsets are absolute in JPEG, TIFF and WebP;
// in a PNG eXIf chunk exiftool counts from the TIFF header.
std::map<QString, ExiftoolValueLocation> exiftoolValueLocations(const QString &path);

} // namespace orv::test
