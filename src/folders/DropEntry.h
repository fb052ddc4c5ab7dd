#pragma once

#include "folders/FolderToken.h"
#include "folders/ImportKeyStates.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace orv {

class MySingleFolder;

// One thing dropped or opened, handed from stage to stage of the import: a directory with its
// token, a track, a saved state, or a directory with some of its files (images) for a partial
// import.
struct DropEntry
{
    QString path;
    std::optional<FolderToken> bookmarkData; // directories only
    bool isGpx = false;
    bool isProject = false;
    QString displayName;
    KeyStatesAtImport keyStatesAtImport;
    QStringList images;
    MySingleFolder *oldFolder = nullptr;
    MySingleFolder *parent = nullptr;
    qint64 depth = 0;
    bool isErrorDone = false;
    // The directories above a subfolder in this import, to refuse one that leads back.
    QList<FileIdentity> ancestors;

    // Nothing for a directory that cannot be reached and for a package that is no saved state.
    static std::optional<DropEntry> pathAndBookmarkFromAccessable(const QString &path);
};

} // namespace orv
