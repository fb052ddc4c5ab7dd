#pragma once

// The bytes a fuzzer hands over, as the in-memory source every locator reads.

#include "formats/ByteSource.h"

#include <cstddef>
#include <cstdint>

namespace orv::fuzz {

inline MemoryByteSource sourceOf(const uint8_t *data, size_t size)
{
    return MemoryByteSource(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
}

} // namespace orv::fuzz
