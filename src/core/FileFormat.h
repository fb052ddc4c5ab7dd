#pragma once

#include <QString>

#include <optional>

namespace orv {

// A file's kind as the rest of the system sees it: the fileFormatType number and the uniform
// type identifier string kept for the info panel.
struct FormatInfo
{
    int fileFormatType = 0;
    QString typeString;
    bool operator==(const FormatInfo &) const = default;
};

class FileFormat
{
public:
    // From the extension alone; unknown extensions give type 0 with an empty type string.
    static FormatInfo fileFormatTypeForMediumAtPath(const QString &path);
    // From the first bytes of the file; nothing when the content is not a known still image.
    // TIFF-based RAW files carry a TIFF signature, so the extension decides between the two.
    static std::optional<FormatInfo> typeStringForImageAtPath(const QString &path);
    // The same from the file's first bytes (64 are enough) and its length.
    static std::optional<FormatInfo> typeStringForImage(const QByteArray &head, qint64 length,
                                                        const QString &path);
    static bool isMovieType(int fileFormatType) { return fileFormatType >= 20; }
};

} // namespace orv
