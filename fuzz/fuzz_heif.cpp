// HEIF and AVIF: the meta box, its item list and item locations.

#include "FuzzInput.h"
#include "formats/HeifLocator.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    preparedBMFFOffsets(source);
    return 0;
}
