#pragma once

#include "support/BoxBuilder.h"

#include <QList>
#include <QSize>

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

inline QByteArray headerTimes(int version, quint64 creation, quint64 modification)
{
    return version == 1 ? be64(creation) + be64(modification) : be32(quint32(creation)) + be32(quint32(modification));
}

// A track header with its times, and the fields between them and the pixel size.
inline QByteArray trackHeader(quint32 width, quint32 height, int version = 0, quint64 creation = 0,
                              quint64 modification = 0)
{
    return fullBox("tkhd", quint8(version), headerTimes(version, creation, modification)
                                                + QByteArray(version == 1 ? 68 : 64, '\0') + be32(width << 16)
                                                + be32(height << 16));
}

// A media box holding its media header: times, time scale, duration, language and quality.
inline QByteArray media(int version, quint64 creation, quint64 modification)
{
    return box("mdia", fullBox("mdhd", quint8(version), headerTimes(version, creation, modification) + be32(600)
                                                            + QByteArray(version == 1 ? 12 : 8, '\0')));
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
    // The tracks hold the movie header's times, as cameras write them.
    const auto [creation, modification] = shape.times.value_or(std::pair(0ull, 0ull));
    for (const QSize size : {QSize(0, 0), QSize(1440, 1080)})
        moov += box("trak", trackHeader(quint32(size.width()), quint32(size.height()), shape.version, creation, modification)
                                + media(shape.version, creation, modification));
    moov += metadata(entries) + userData;
    const QByteArray head = shape.ftyp ? box("ftyp", QByteArray("qt  ") + be32(0)) : QByteArray();
    return head + box("mdat", QByteArray(64, '\x5a')) + box("moov", moov);
}

} // namespace orv::test
