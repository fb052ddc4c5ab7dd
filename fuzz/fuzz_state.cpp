// A state's folders file: the root map, each folder's map, its items with their byte records,
// and the references between them (group partners, zones, the quick selection). The same bytes
// go to the additional data reader: its tracks' point columns.

#include "folders/MySingleFolder.h"
#include "states/AdditionalData.h"
#include "states/FolderCoder.h"
#include "states/SavedFolders.h"

#include <cstddef>
#include <cstdint>

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const SavedFolders::ReadResult state = SavedFolders::read(bytes, QStringLiteral("fuzz"));
    // What was taken must write again: every reference it followed points into the folder.
    for (const auto &folder : state.folders)
        FolderCoder::write(*folder);
    const AdditionalData::ReadResult additional = AdditionalData::read(bytes, QStringLiteral("fuzz"));
    QList<const MyGpxTrack *> tracks;
    for (const MyGpxTrack &track : additional.importedTracks)
        tracks.append(&track);
    AdditionalData::write(tracks, additional.view);
    return 0;
}
