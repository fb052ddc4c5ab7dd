// AVI: the RIFF list walk to the IDIT and ISFT chunks.

#include "FuzzInput.h"
#include "formats/AviLocator.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    riffHeaderDataForMovie(source);
    return 0;
}
