#include "core/FileFormat.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

namespace orv {

namespace {

const FormatInfo jpeg{1, QStringLiteral("public.jpeg")};
const FormatInfo heic{2, QStringLiteral("public.heic")};
const FormatInfo heif{2, QStringLiteral("public.heif")};
const FormatInfo raw{3, QStringLiteral("public.camera-raw-image")};
const FormatInfo tiff{4, QStringLiteral("public.tiff")};
const FormatInfo webp{5, QStringLiteral("org.webmproject.webp")};
const FormatInfo pict{6, QStringLiteral("com.apple.pict")};
const FormatInfo gif{7, QStringLiteral("com.compuserve.gif")};
const FormatInfo png{8, QStringLiteral("public.png")};
const FormatInfo avif{9, QStringLiteral("public.avif")};
const FormatInfo quickTime{20, QStringLiteral("com.apple.quicktime-movie")};
const FormatInfo mpeg4{21, QStringLiteral("public.mpeg-4")};

const QHash<QString, FormatInfo> &extensionTable()
{
    static const QHash<QString, FormatInfo> table = [] {
        QHash<QString, FormatInfo> t;
        for (const char *e : {"jpg", "jpeg", "jpe", "jfif"})
            t.insert(QLatin1String(e), jpeg);
        for (const char *e : {"heic", "heics"})
            t.insert(QLatin1String(e), heic);
        for (const char *e : {"heif", "heifs", "hif"})
            t.insert(QLatin1String(e), heif);
        for (const char *e : {"cr2", "cr3", "crw", "nef", "nrw", "arw", "srf", "sr2", "dng", "orf",
                              "rw2", "raf", "pef", "srw", "x3f", "mrw", "3fr", "erf", "kdc", "dcr",
                              "mos", "iiq", "rwl", "fff", "mef", "raw", "gpr", "ari", "cap"})
            t.insert(QLatin1String(e), raw);
        for (const char *e : {"tif", "tiff"})
            t.insert(QLatin1String(e), tiff);
        t.insert(QStringLiteral("webp"), webp);
        for (const char *e : {"pict", "pct", "pic"})
            t.insert(QLatin1String(e), pict);
        t.insert(QStringLiteral("gif"), gif);
        t.insert(QStringLiteral("png"), png);
        t.insert(QStringLiteral("avif"), avif);
        for (const char *e : {"mov", "qt"})
            t.insert(QLatin1String(e), quickTime);
        for (const char *e : {"mp4", "m4v"})
            t.insert(QLatin1String(e), mpeg4);
        for (const char *e : {"avi", "mts", "m2ts", "mkv", "wmv", "mpg", "mpeg", "3gp", "3g2",
                              "webm", "flv", "vob", "m2v", "mod", "tod", "insv"})
            t.insert(QLatin1String(e), FormatInfo{50, QStringLiteral("public.movie")});
        return t;
    }();
    return table;
}

// Magic numbers contain NUL bytes, so their length comes from the literal, not from strlen.
template <qsizetype N>
bool startsWith(const QByteArray &head, const char (&magic)[N], qsizetype at = 0)
{
    const QByteArrayView m(magic, N - 1);
    return head.size() >= at + m.size() && QByteArrayView(head).sliced(at, m.size()) == m;
}

std::optional<FormatInfo> isoMediaBrand(const QByteArray &head)
{
    if (!startsWith(head, "ftyp", 4))
        return std::nullopt;
    const QByteArray brand = head.mid(8, 4);
    if (brand == "crx ")
        return raw;
    if (brand == "avif" || brand == "avis")
        return avif;
    if (brand == "heic" || brand == "heix" || brand == "heim" || brand == "heis" || brand == "hevc"
        || brand == "hevx")
        return heic;
    if (brand == "mif1" || brand == "msf1") {
        // The compatible brands name what the items really are.
        const QByteArray brands = head.mid(16, 32);
        if (brands.contains("avif"))
            return avif;
        return brands.contains("heic") ? heic : heif;
    }
    return std::nullopt;
}

} // namespace

FormatInfo FileFormat::fileFormatTypeForMediumAtPath(const QString &path)
{
    return extensionTable().value(QFileInfo(path).suffix().toLower());
}

std::optional<FormatInfo> FileFormat::typeStringForImageAtPath(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return typeStringForImage(file.read(64), file.size(), path);
}

std::optional<FormatInfo> FileFormat::typeStringForImage(const QByteArray &head, qint64 length,
                                                         const QString &path)
{
    if (startsWith(head, "\xFF\xD8\xFF"))
        return jpeg;
    if (startsWith(head, "II*\0") || startsWith(head, "MM\0*") || startsWith(head, "IIRO")
        || startsWith(head, "IIRS") || startsWith(head, "IIU\0") || startsWith(head, "II\x2B\0")) {
        const bool plainTiff = startsWith(head, "II*\0") || startsWith(head, "MM\0*");
        const bool rawByExtension = fileFormatTypeForMediumAtPath(path).fileFormatType == raw.fileFormatType;
        return plainTiff && !rawByExtension ? tiff : raw;
    }
    if (startsWith(head, "FUJIFILMCCD-RAW") || startsWith(head, "FOVb") || startsWith(head, "\0MRM")
        || startsWith(head, "II\x1A\0\0\0HEAPCCDR"))
        return raw;
    if (startsWith(head, "GIF87a") || startsWith(head, "GIF89a"))
        return gif;
    if (startsWith(head, "\x89PNG\r\n\x1A\n"))
        return png;
    if (startsWith(head, "RIFF") && startsWith(head, "WEBP", 8))
        return webp;
    if (auto iso = isoMediaBrand(head))
        return iso;
    if (fileFormatTypeForMediumAtPath(path).fileFormatType == pict.fileFormatType && length > 512)
        return pict;
    return std::nullopt;
}

} // namespace orv
