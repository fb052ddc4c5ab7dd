#pragma once

#include "formats/ByteSource.h"
#include "formats/InPlaceWriter.h"
#include "formats/PicAttributes.h"

#include <QByteArray>
#include <QSet>
#include <QString>

#include <optional>

namespace orv {

// The XMP start test: a packet begins with "<?xpacket begin=" or "<x:xmpmeta ".
bool isXmpPacketStart(const ByteSource &file, qint64 offset);

struct XmpTextValue
{
    QByteArray text;
    quint32 offset = 0;
};

// What a sidecar (or any packet) tells beyond dates: which files it belongs to and where.
struct XmpSidecarMetadata
{
    QSet<QString> extensions;
    std::optional<XmpTextValue> gpsLatRef, gpsLonRef;
    std::optional<XmpTextValue> gpsLat, gpsLon;
    int gpsLatType = 0, gpsLonType = 0; // see verifiedXmpLocationDataType
    std::optional<XmpTextValue> gpsPosError;
    // Metres as a rational "n/d"; the ref "1" puts them below sea level.
    std::optional<XmpTextValue> gpsAltitude, gpsAltitudeRef;
    // xmp:Rating as a whole number from -1 (rejected) to 5; none when absent or anything else.
    std::optional<int> rating;
};

bool verifiedXmpLocationRefDataType(const QByteArray &text);
// 1: degrees with minutes (and seconds) as "48,51.25N"; 2: a decimal number "48.8566";
// 0: neither.
int verifiedXmpLocationDataType(const QByteArray &text);
bool isVerifiedXmpPosErrorDataType(const QByteArray &text);

// Reads XMP as text: it searches the packet for fixed tag names and records where each value
// lies, so that a date can later be overwritten in place with the same number of bytes.
class XmpLocator
{
public:
    explicit XmpLocator(const ByteSource &file) : m_file(file) {}

    // Packet starts, by container; nothing when the container holds no packet.
    std::optional<quint32> xmpStartOffsetFromJPGHeader();
    std::optional<quint32> xmpStartOffsetFromTIFHeader(qint64 headerOffset);
    std::optional<quint32> xmpStartOffsetFromWebPHeader(qint64 chunkOffset);
    std::optional<quint32> xmpStartOffsetFromSidecarFile(qint64 from = 0);

    // The stamps of the packet, keyed by the names of XmpDateInfos; each is the first
    // occurrence of its tag, kept only when it classifies as a stamp.
    XmpDateInfos readDates(qint64 packetStart);
    XmpSidecarMetadata readMetadata(qint64 packetStart);

    // The edits that make the packet say xmp:Rating `rating`, within the packet's length: a value
    // of the same width is overwritten; otherwise the old one is blanked and a description of
    // its own, holding the new one, goes before "</rdf:RDF>", where it takes the room of the
    // padding the packet keeps for writers. Only bytes from there on move, so no value the
    // import located changes place. Nothing when the packet has no end mark or too little room.
    std::optional<std::vector<ByteEdit>> ratingEdits(qint64 packetStart, int rating) const;

private:
    const ByteSource &m_file;
};

} // namespace orv
