#pragma once

#include "formats/ByteSource.h"

namespace orv {

// The save side's view of a media file: a FileByteSource under the name the byte proofs and the
// checksum repair were written against. Writes go through InPlaceWriter.
class FileReader final : public FileByteSource
{
public:
    using FileByteSource::FileByteSource;

    QByteArray readDataOfLength(qint64 length, qint64 offset) const { return read(offset, length); }
};

} // namespace orv
