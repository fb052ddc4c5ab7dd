// The RIFF chunk walk of a WebP file and the EXIF and XMP chunks it finds.

#include "FuzzInput.h"
#include "formats/MySingleFolderDataReader.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    MySingleFolderDataReader reader;
    const WebpChunkOffsets chunks = reader.riffHeaderDataForWebP(source);
    if (chunks.exifOffset) {
        const DatesData dates = reader.savereadDates(source, WebpFormat, *chunks.exifOffset);
        if (dates.tiffHeader)
            reader.imageTags(source, *dates.tiffHeader);
    }
    if (chunks.xmpOffset)
        reader.savereadXMPDates(source, WebpFormat, *chunks.xmpOffset);
    return 0;
}
