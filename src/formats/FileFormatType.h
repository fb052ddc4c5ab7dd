#pragma once

namespace orv {

// What kind of medium a file is, as stored with each item. The values are persisted.
enum FileFormatType : int {
    UnknownFormat = 0,
    JpegFormat = 1,
    HeicFormat = 2,
    RawFormat = 3,
    TiffFormat = 4,
    WebpFormat = 5,
    PictFormat = 6,
    GifFormat = 7,
    PngFormat = 8,
    AvifFormat = 9,
    // For one reader call only: the XMP of a CR3 file at a known offset.
    Cr3XmpFormat = 10,
    QuickTimeMovieFormat = 20,
    Mpeg4MovieFormat = 21,
    OtherMovieFormat = 50,
};

} // namespace orv
