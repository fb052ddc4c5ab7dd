#pragma once

#include "formats/InPlaceWriter.h"
#include "formats/PicAttributes.h"

namespace orv {

class FileReader;

// The proof that a file still holds what the import saw: every stored value, read again at its
// offset with its stored length, is equal byte for byte. An offset of 0 stands for no value.
class StoredBytes
{
public:
    // EXIF and TIFF stamps, offset tags, GPS stamps and location, the movie stamps (QuickTime
    // metadata date, movie, track and media header times, AVI IDIT) and location texts, the XMP
    // stamps and IPTC's creation date.
    static bool areUnchanged(const PicAttributes &attributes, FileReader &file);
    static bool areXmpInfosUnchanged(const XmpDateInfos &infos, FileReader &file);
    // The same values as ranges of a file of `length` bytes, for a journal to prove it by later.
    static ByteProof proof(const PicAttributes &attributes, qint64 length);
};

} // namespace orv
