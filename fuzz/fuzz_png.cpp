// PNG chunks: eXIf, the XMP iTXt, raw profiles in tEXt, zTXt and iTXt, the text chunks and the
// checksum a save would write.

#include "FuzzInput.h"
#include "formats/MySingleFolderDataReader.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    MySingleFolderDataReader reader;
    const DatesData dates = reader.savereadDates(source, PngFormat);
    if (dates.tiffHeader)
        reader.imageTags(source, *dates.tiffHeader);
    reader.savereadXMPDates(source, PngFormat, 0);
    PngLocator png(source);
    png.tEXtData();
    png.chunkCrcEdit(PngLocator::ChunkKind::Exif);
    png.chunkCrcEdit(PngLocator::ChunkKind::Xmp);
    return 0;
}
