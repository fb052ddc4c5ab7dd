#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace orv {

// A file put in a trash folder, with what it takes to put it back.
struct TrashedFile
{
    QString originalPath; // absolute
    QString trashedPath;  // in the trash's files/ folder
    QString infoPath;     // its .trashinfo in the trash's info/ folder
};

// The desktop's trash in the freedesktop.org layout, so that a file
// manager lists, restores and empties what we put there. A file goes to the home trash
// ($XDG_DATA_HOME/Trash) when it lies on the same file system; otherwise to its volume's trash:
// $topdir/.Trash/$uid where the administrator made a sticky, non-link .Trash, else
// $topdir/.Trash-$uid, made on demand. Files are renamed, never copied: a trash on another file
// system than the file's is never used.
class FreedesktopTrash
{
public:
    // The home trash's folder: $XDG_DATA_HOME/Trash, by default ~/.local/share/Trash.
    static QString homeTrash();

    // The trash folder a file at this path goes to, made if needed; nothing when no trash on its
    // file system can be written (the caller asks before deleting instead).
    static std::optional<QString> trashFor(const QString &path);

    // Moves one file or folder into its trash and records where it came from. Nothing, with the
    // reason in *error, when there is no trash for it or the move fails; the file then stays.
    static std::optional<TrashedFile> moveToTrash(const QString &path, QString *error,
                                                  const QDateTime &deletionDate = QDateTime::currentDateTime());

    // Puts a trashed file back where it was and drops its .trashinfo. Never replaces a file that
    // has taken its place since; false, with the reason, then or when the trash no longer has it.
    static bool restore(const TrashedFile &file, QString *error);

    // The .trashinfo text: the path percent-encoded (relative to the volume's top for a volume
    // trash) and the deletion date in local time, to the second.
    static QByteArray trashInfo(const QString &pathInInfo, const QDateTime &deletionDate);
};

} // namespace orv
