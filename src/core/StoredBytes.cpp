#include "core/StoredBytes.h"

#include "formats/FileReader.h"

#include <algorithm>

namespace orv {

namespace {

bool holds(FileReader &file, quint64 offset, const QByteArray &stored)
{
    return offset == 0 || file.readDataOfLength(stored.size(), qint64(offset)) == stored;
}

// A stamp is read as 19 bytes; the NUL after it is the stored record's, whatever the file has.
bool holdsStamp(FileReader &file, const std::optional<StampRecord> &stamp)
{
    if (!stamp || stamp->dateOffset == 0)
        return true;
    return file.readDataOfLength(19, stamp->dateOffset) + '\0' == stamp->dateData;
}

bool holdsOffsetTag(FileReader &file, const std::optional<OffsetTagRecord> &tag)
{
    return !tag || holds(file, tag->offsetOffset, tag->offsetData);
}

bool holdsLocation(FileReader &file, const GpsLocationRecord &r)
{
    return holds(file, r.latitudeRef_Offset, r.latitudeRef_Data) &&
           holds(file, r.latitude_Offset, r.latitude_Data) &&
           holds(file, r.longitudeRef_Offset, r.longitudeRef_Data) &&
           holds(file, r.longitude_Offset, r.longitude_Data) &&
           holds(file, r.altitudeRef_Offset, r.altitudeRef_Data) &&
           holds(file, r.altitude_Offset, r.altitude_Data) &&
           holds(file, r.hPositioningError_Offset, r.hPositioningError_Data);
}

bool holdsMovieStamp(FileReader &file, const BoxedOptional<MovieStampRecord> &stamp)
{
    return !stamp || holds(file, stamp->dateOffset, stamp->dateData);
}

bool holdsMovieValues(FileReader &file, const PicAttributes &a)
{
    return holdsMovieStamp(file, a.QTMetaDate) && holdsMovieStamp(file, a.QTMvhdCreaDate) &&
           holdsMovieStamp(file, a.QTMvhdModDate) && holdsMovieStamp(file, a.riffCreaDate) &&
           std::all_of(a.qtTrackTimes.begin(), a.qtTrackTimes.end(), [&file](const QtTrackTimeRecord &r) {
               return holds(file, r.time.dateOffset, r.time.dateData);
           }) &&
           std::all_of(a.qtLocations.begin(), a.qtLocations.end(), [&file](const QtLocationRecord &r) {
               return holds(file, r.text.dateOffset, r.text.dateData) &&
                      holds(file, r.hAccuracy.dateOffset, r.hAccuracy.dateData);
           });
}

} // namespace

bool StoredBytes::areXmpInfosUnchanged(const XmpDateInfos &infos, FileReader &file)
{
    return std::all_of(infos.begin(), infos.end(), [&file](const auto &entry) {
        return holds(file, entry.second.offset, entry.second.data);
    });
}

bool StoredBytes::areUnchanged(const PicAttributes &a, FileReader &file)
{
    return (!a.xmpDateInfos || areXmpInfosUnchanged(*a.xmpDateInfos, file)) &&
           holdsStamp(file, a.TIFFDateTime) && holdsOffsetTag(file, a.TIFFOffsetTime) &&
           holdsStamp(file, a.ExifDateTimeOriginal) &&
           holdsOffsetTag(file, a.ExifOffsetTimeOriginal) &&
           holdsStamp(file, a.ExifDateTimeDigitized) &&
           holdsOffsetTag(file, a.ExifOffsetTimeDigitized) &&
           (!a.GPSTimeStamp || holds(file, a.GPSTimeStamp->dateOffset, a.GPSTimeStamp->dateData)) &&
           (!a.GPSDateStamp || holds(file, a.GPSDateStamp->dateOffset, a.GPSDateStamp->dateData)) &&
           (!a.GPSLocation || holdsLocation(file, *a.GPSLocation)) &&
           (!a.IPTCDateCreated || (holds(file, a.IPTCDateCreated->blockOffset, a.IPTCDateCreated->blockData) &&
                                   holds(file, a.IPTCDateCreated->digestOffset, a.IPTCDateCreated->digestData))) &&
           holdsMovieValues(file, a);
}

ByteProof StoredBytes::proof(const PicAttributes &a, qint64 length)
{
    ByteProof proof{length, {}};
    const auto add = [&proof](quint64 offset, const QByteArray &bytes) {
        if (offset != 0 && !bytes.isEmpty())
            proof.ranges.emplace_back(qint64(offset), bytes);
    };
    if (a.xmpDateInfos) {
        for (const auto &[key, record] : *a.xmpDateInfos)
            add(record.offset, record.data);
    }
    for (const std::optional<StampRecord> *stamp :
         {&a.TIFFDateTime, &a.ExifDateTimeOriginal, &a.ExifDateTimeDigitized}) {
        if (*stamp)
            add((*stamp)->dateOffset, (*stamp)->dateData.left(19));
    }
    for (const std::optional<OffsetTagRecord> *tag :
         {&a.TIFFOffsetTime, &a.ExifOffsetTimeOriginal, &a.ExifOffsetTimeDigitized}) {
        if (*tag)
            add((*tag)->offsetOffset, (*tag)->offsetData);
    }
    if (a.GPSTimeStamp)
        add(a.GPSTimeStamp->dateOffset, a.GPSTimeStamp->dateData);
    if (a.GPSDateStamp)
        add(a.GPSDateStamp->dateOffset, a.GPSDateStamp->dateData);
    for (const BoxedOptional<MovieStampRecord> *stamp : {&a.QTMetaDate, &a.QTMvhdCreaDate, &a.QTMvhdModDate, &a.riffCreaDate}) {
        if (*stamp)
            add((*stamp)->dateOffset, (*stamp)->dateData);
    }
    for (const QtTrackTimeRecord &track : a.qtTrackTimes)
        add(track.time.dateOffset, track.time.dateData);
    if (a.IPTCDateCreated) {
        add(a.IPTCDateCreated->blockOffset, a.IPTCDateCreated->blockData);
        add(a.IPTCDateCreated->digestOffset, a.IPTCDateCreated->digestData);
    }
    if (a.GPSLocation) {
        const GpsLocationRecord &r = *a.GPSLocation;
        add(r.latitudeRef_Offset, r.latitudeRef_Data);
        add(r.latitude_Offset, r.latitude_Data);
        add(r.longitudeRef_Offset, r.longitudeRef_Data);
        add(r.longitude_Offset, r.longitude_Data);
        add(r.altitudeRef_Offset, r.altitudeRef_Data);
        add(r.altitude_Offset, r.altitude_Data);
        add(r.hPositioningError_Offset, r.hPositioningError_Data);
    }
    return proof;
}

} // namespace orv
