#pragma once

#include "support/MediaFile.h"

#include <QByteArray>
#include <QString>
#include <map>
#include <vector>

namespace orv::test {

// One XMP property by its qualified name, e.g. {"exif:DateTimeOriginal",
// "2024-05-01T10:00:00+02:00"}. The prefixes exif, xmp, tiff, photoshop and crs are declared with
// their usual namespaces. The value is written verbatim, so malformed stamps can be placed on
// purpose.
struct XmpProperty
{
    QString name{};
    QString value{};
};

enum class XmpForm {
    Attributes, // exif:DateTimeOriginal="..."
    Elements,   // <exif:DateTimeOriginal>...</exif:DateTimeOriginal>
};

struct XmpShape
{
    std::vector<XmpProperty> properties{}; // written in this order
    XmpForm form = XmpForm::Attributes;
    bool wrapped = true; // inside <?xpacket begin ...?> ... <?xpacket end="w"?>
};

// Packet bytes and, for every property, the offset of its value's first byte from the packet start.
struct XmpPacket
{
    QByteArray bytes{};
    std::map<QString, quint32> valueOffsets{};

    // Any bytes as a packet, with no offsets known.
    static XmpPacket raw(QByteArray bytes) { return {std::move(bytes), {}}; }
};

XmpPacket buildXmp(const XmpShape &recipe);

// Records a packet placed at the absolute offset packetStart: xmpPacket and every xmpValues entry.
void placeXmp(MediaOffsets &offsets, quint32 packetStart, const XmpPacket &packet);

// A standalone .xmp sidecar file holding the packet.
MediaFile buildXmpSidecar(const XmpShape &recipe);

} // namespace orv::test
