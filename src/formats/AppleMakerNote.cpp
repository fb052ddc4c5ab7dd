#include "formats/AppleMakerNote.h"

#include <QtEndian>

namespace orv {

namespace {

void appendBigEndian16(QByteArray &out, quint16 value)
{
    const quint16 big = qToBigEndian(value);
    out.append(reinterpret_cast<const char *>(&big), 2);
}

void appendBigEndian32(QByteArray &out, quint32 value)
{
    const quint32 big = qToBigEndian(value);
    out.append(reinterpret_cast<const char *>(&big), 4);
}

} // namespace

QByteArray appleMakerNoteWithContentIdentifier(QByteArrayView identifier)
{
    constexpr quint16 contentIdentifierTag = 17;
    constexpr quint16 asciiType = 2;
    QByteArray note("Apple iOS\0\0\x01MM", 14);
    appendBigEndian16(note, 1);
    const quint32 valueOffset = quint32(note.size()) + 12 + 4;
    appendBigEndian16(note, contentIdentifierTag);
    appendBigEndian16(note, asciiType);
    appendBigEndian32(note, quint32(identifier.size() + 1));
    appendBigEndian32(note, valueOffset);
    appendBigEndian32(note, 0); // no next directory
    note.append(identifier.data(), identifier.size());
    note.append('\0');
    return note;
}

} // namespace orv
