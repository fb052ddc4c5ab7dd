// QuickTime and MP4 headers: both roads through the top level, with and without the ftyp demand.

#include "FuzzInput.h"
#include "formats/QuickTimeLocator.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    quicktimeHeaderDataForMovie(source, true);
    quicktimeHeaderDataForMovie(source, false);
    return 0;
}
