// An XMP sidecar or packet: the packet search, the date stamps and the sidecar's other facts.

#include "FuzzInput.h"
#include "formats/XmpLocator.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const MemoryByteSource source = fuzz::sourceOf(data, size);
    XmpLocator xmp(source);
    if (const std::optional<quint32> start = xmp.xmpStartOffsetFromSidecarFile(0)) {
        xmp.readDates(*start);
        xmp.readMetadata(*start);
    }
    return 0;
}
