// The JPEG segment walk, the TIFF walk behind its APP1 and the XMP packet it names.

#include "FuzzInput.h"
#include "formats/MySingleFolderDataReader.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    MySingleFolderDataReader reader;
    const DatesData dates = reader.savereadDates(source, JpegFormat);
    if (dates.tiffHeader)
        reader.imageTags(source, *dates.tiffHeader);
    if (dates.jpgXMPOffset)
        reader.savereadXMPDates(source, JpegFormat, *dates.jpgXMPOffset);
    return 0;
}
