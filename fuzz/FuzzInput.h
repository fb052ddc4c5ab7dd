#pragma once

#include "formats/ByteSource.h"

#include <cstddef>
#include <cstdint>

// The fuzzer's bytes as the source a walker reads; each target only says which walker runs.
#define ORV_FUZZ_WALKER(source)                                                                    \
    static void walk(const orv::ByteSource &source);                                              \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)            \
    {                                                                                              \
        walk(orv::MemoryByteSource(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)))); \
        return 0;                                                                                  \
    }                                                                                              \
    static void walk(const orv::ByteSource &source)
