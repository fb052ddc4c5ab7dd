#pragma once

#include "formats/ByteSource.h"

#include <optional>

namespace orv {

// Offsets of the chunk headers (type and size) of the metadata chunks of a WebP file.
struct WebpChunkOffsets
{
    std::optional<quint32> exifOffset;
    std::optional<quint32> xmpOffset;
};

class WebpLocator
{
public:
    explicit WebpLocator(const ByteSource &file) : m_file(file) {}

    WebpChunkOffsets riffHeaderData();

private:
    const ByteSource &m_file;
};

} // namespace orv
