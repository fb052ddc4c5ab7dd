// TIFF and TIFF-based RAW files: the header scan, IFD0, the Exif and GPS IFDs, an embedded
// JPEG's header, the image tags and the XMP packet of tag 700.

#include "FuzzInput.h"
#include "formats/MySingleFolderDataReader.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    MySingleFolderDataReader reader;
    for (const int format : {TiffFormat, RawFormat}) {
        const DatesData dates = reader.savereadDates(source, format);
        if (dates.tiffHeader) {
            reader.imageTags(source, *dates.tiffHeader);
            reader.savereadXMPDates(source, format, dates.tiffHeader->offset);
        }
    }
    return 0;
}
