#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace orv {

// The Apple maker note of a new still that is half of a Live Photo: "Apple iOS", version 1,
// big-endian, one directory entry, tag 17, the content identifier it shares with its movie.
// Offsets count from the note's first byte, as the phones write them; TiffTagReader reads it back.
QByteArray appleMakerNoteWithContentIdentifier(QByteArrayView identifier);

} // namespace orv
