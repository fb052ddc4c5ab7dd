// CR3: the uuid boxes that hold the TIFF directories and the XMP packet.

#include "FuzzInput.h"
#include "formats/Cr3Locator.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    preparedCF3Offsets(source);
    return 0;
}
