#pragma once

#include "support/BoxBuilder.h"

#include <QList>

#include <optional>
#include <utility>

namespace orv::test {

// A QuickTime movie as a phone writes it, box by box: a movie header of either version, a sound
// and a picture track, the metadata keys with their item list, and udta places. Every part can
// be left out or changed, so the readers and the save meet exactly the bytes a test wants.

// Seconds since 1904 of 2021-04-10 10:44:00 UTC.
constexpr quint64 aprilTenth = 3700896240ull;

struct MovieShape
{
    int version = 0;
    std::optional<std::pair<quint64, quint64>> times = std::pair(aprilTenth, aprilTenth + 2);
    QByteArray creationDate = "2021-04-10T11:43:59+0100";
    QByteArray location = "+52.2097-000.8955+103.640/";
    QByteArray userDataLocation = "+51.4169-000.0806/";
    QByteArray itemListLocation = "+33.1268-117.3273/";
    bool ftyp = true;
};

inline QByteArray movieHeader(int version, quint64 creation, quint64 modification)
{
    const QByteArray times = version == 1 ? be64(creation) + be64(modification) + be32(600) + be64(1200)
                                          : be32(quint32(creation)) + be32(quint32(modification)) + be32(600) + be32(1200);
    return fullBox("mvhd", quint8(version), times + QByteArray(80, '\0'));
}

inline QByteArray trackHeader(quint32 width, quint32 height)
{
    return fullBox("tkhd", 0, QByteArray(72, '\0') + be32(width << 16) + be32(height << 16));
}

inline QByteArray dataBox(const QByteArray &value) { return box("data", be32(1) + be32(0) + value); }

inline QByteArray metadata(const QList<std::pair<QByteArray, QByteArray>> &entries)
{
    QByteArray keys = be32(quint32(entries.size()));
    QByteArray items;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        keys += be32(quint32(8 + entries[i].first.size())) + "mdta" + entries[i].first;
        items += box(be32(quint32(i + 1)), dataBox(entries[i].second));
    }
    return box("meta", box("hdlr", QByteArray(24, '\0')) + fullBox("keys", 0, keys) + box("ilst", items));
}

inline QByteArray movie(const MovieShape &shape)
{
    using Entry = std::pair<QByteArray, QByteArray>;
    QList<Entry> entries{{"com.apple.quicktime.make", "Apple"}};
    if (!shape.creationDate.isEmpty())
        entries.append(Entry("com.apple.quicktime.creationdate", shape.creationDate));
    if (!shape.location.isEmpty()) {
        entries.append(Entry("com.apple.quicktime.location.accuracy.horizontal", "65.000000"));
        entries.append(Entry("com.apple.quicktime.location.ISO6709", shape.location));
    }
    entries.append(Entry("com.apple.quicktime.content.identifier", "E905E6C6-C747-4805-942F-9904A0281F02"));
    const QByteArray xyz("\xA9xyz");
    const QByteArray userData = box(
        "udta", box(xyz, be16(quint16(shape.userDataLocation.size())) + be16(0x15c7) + shape.userDataLocation)
                    + fullBox("meta", 0, box("hdlr", QByteArray(24, '\0'))
                                             + box("ilst", box(xyz, dataBox(shape.itemListLocation)))));
    QByteArray moov = shape.times ? movieHeader(shape.version, shape.times->first, shape.times->second) : QByteArray();
    moov += box("trak", trackHeader(0, 0)) + box("trak", trackHeader(1440, 1080)) + metadata(entries) + userData;
    const QByteArray head = shape.ftyp ? box("ftyp", QByteArray("qt  ") + be32(0)) : QByteArray();
    return head + box("mdat", QByteArray(64, '\x5a')) + box("moov", moov);
}

} // namespace orv::test
