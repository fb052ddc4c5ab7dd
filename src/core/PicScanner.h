#pragma once

#include "core/CameraGear.h"
#include "core/FileAttributes.h"
#include "core/FileFormat.h"
#include "core/ImportOptions.h"
#include "formats/AviLocator.h"
#include "formats/DatesData.h"
#include "formats/PicAttributes.h"
#include "formats/QuickTimeLocator.h"
#include "formats/TiffTagReader.h"
#include "formats/XmpLocator.h"

#include <QSet>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace orv {

struct FolderFacts;
class MySinglePic;

// Everything one file's bytes say, read without touching the model. Reading is the slow part
// and runs on many threads at once; turning facts into an item is cheap and runs in file order,
// so that fixed dates with steps come out the same on every run.
struct ScanFacts
{
    enum class Route {
        Still,        // a photo with its byte facts
        Unsupported,  // an item that shows but has no dates (spType 13)
        Movie,        // movies have their own reader
        Directory,
        GpxTrack,
        XmpSidecar,
        AaeSidecar,
        Skipped,      // not a medium, or a file to ignore
        Missing,      // vanished or unreadable entry
        NotRegularFile, // a pipe, a socket or a device: never opened
        NotAsNamed,   // the extension names an image kind whose signature the content lacks
    };

    QString path;
    Route route = Route::Skipped;
    std::optional<FileAttributes> attributes;
    FormatInfo format;
    DatesData dates;
    std::optional<XmpDateInfos> xmp;
    // The place of the file's own XMP packet, read where its GPS tags hold none.
    XmpSidecarMetadata xmpPlace;
    std::optional<quint32> xmpHeaderStartOffset; // the WebP XMP chunk
    // Known when the scan opened the file (stills); movies are opened by their own reader.
    std::optional<bool> readable;
    TiffImageTags image;
    // A movie's header: QuickTime and MPEG-4 boxes, or an AVI's RIFF chunks.
    std::optional<MovieHeaderData> movie;
    std::optional<RiffMovieData> riff;
};

// What turning facts into items needs besides the bytes, and what it gathers on the way. A
// folder's scan owns one on its own thread for the length of the scan, taken from the folder on
// the main thread when the scan starts; the folder takes the options, counts and paths back when
// the scan is published there. The scan never reads or writes the folder itself.
struct ItemScanContext
{
    FolderFacts *folder = nullptr; // handed to each item as its folder, never dereferenced here
    bool exifIgnored = false;
    bool mdtaDateEnabled = true;
    bool mvhdTimezoneCorrection = true;
    ImportOptions options;
    // Asked at most once, when the options hold no empty-tag answer; without it, the file date.
    std::function<ImportOptions()> askEmptyTagOptions;
    int fixedDates = 0;
    QSet<QString> gpxPaths, xmpSidecarPaths, aaeSidecarPaths;
    // The camera texts seen so far: the items of one camera share one text.
    SharedCameraTexts cameraTexts;
};

// The scan of one file: format, byte readers, the date priority chain, the empty-tag import
// options, GPS date and location, file attributes, camera text.
class PicScanner
{
public:
    // Safe to call from any thread; touches only the file.
    static ScanFacts readFacts(const QString &path, bool exifIgnored);

    // Runs in file order on the folder's scan thread. Answers nothing when the facts do not make
    // an item (sidecars, directories, skipped and vanished files, no date at all).
    static std::unique_ptr<MySinglePic> buildPic(const ScanFacts &facts, ItemScanContext &context);

    // After exiftool rewrote a still: every stored value, its offset and OLD date, the location
    // and the file's attributes are read again from the file as it now stands. A QuickTime or
    // MPEG-4 movie has its header values read again; one dated by its file alone that now holds
    // a metadata date is dated by that. False when the file no longer reads as it did.
    static bool refreshInternalData(MySinglePic &pic);

    // The rating other programs wrote as xmp:Rating: 5 makes a keeper, -1 a reject; the stars
    // between mean nothing here. A sidecar's rating, read after the packet, wins over the
    // packet's; an item the user rated keeps its rating. The file's value is kept as fileRating
    // either way.
    static void takeXmpRating(MySinglePic &pic, const XmpSidecarMetadata &xmp);
    // The place an XMP sidecar names becomes the item's: the sidecar is where places of a file
    // with one are saved, so it holds the newer word over the file's GPS tags. False when it
    // names none, and when the user moved the item's place and has not saved it yet.
    static bool takeSidecarPlace(MySinglePic &pic, const XmpSidecarMetadata &sidecar);

private:
    static std::unique_ptr<MySinglePic> buildPicOfRoute(const ScanFacts &facts, ItemScanContext &context);
};

} // namespace orv
