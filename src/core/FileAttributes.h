#pragma once

#include "formats/ByteSource.h"
#include "time/Instant.h"

#include <QString>

#include <optional>

namespace orv {

// The file system entry's dates and size as the scan records them. The creation date is the
// earlier of the birth time (where the file system keeps one) and the modification time.
struct FileAttributes
{
    Instant creationDate;
    Instant modificationDate;
    qint64 size = 0;
    bool isDirectory = false;
    bool isRegularFile = false;     // neither a folder nor a pipe, a socket or a device
    bool isExtensionHidden = false; // a leading dot hides the whole name

    // Nothing when the entry does not exist or cannot be examined.
    static std::optional<FileAttributes> read(const QString &path);
    // The same from a status already taken, so that a scan examines each file once.
    static std::optional<FileAttributes> fromStatus(const FileStatus &status, const QString &path);
};

} // namespace orv
