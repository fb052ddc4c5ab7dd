#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace orv {

// What went wrong while one folder was imported, gathered for one message per kind at the end
// instead of one per file. The import itself goes on: each problem leaves out or weakens one
// entry, never the rest.
class ImportErrors
{
public:
    enum Kind : int {
        ItemFailed = 1,                    // an item could not be completed
        SidecarWithoutExtensionMatch = 16, // a sidecar matched no item's extension
        SidecarWithoutItem = 17,           // a sidecar without any item
        FolderUnreadable = 100,            // the directory may not be listed
        FolderVanished,                    // the directory went away during the scan
        SubfolderLoop,                     // a subfolder leads back to a folder above it
        FileVanished,                      // listed, then gone before it could be read
        FileUnreadable,                    // no permission to read: dated by the file system only
        FileEmpty,                         // 0 bytes: dated by the file system only
        NameNotDecodable,                  // a name that is not valid text in this system's encoding
        NotARegularFile,                   // a pipe, a socket or a device: never opened
        LinkLeavesFolder,                  // a linked subfolder outside the folder: not followed
        SidecarUnreadable,                 // a sidecar that cannot be read: matched by its name alone
        ContentNotAsNamed,                 // no image of the kind its extension names: not imported
        ImageDataMissing,                  // a JPEG cut off before its image data: imported with its dates
    };

    struct Problem
    {
        Kind kind;
        QString path;
    };

    void add(Kind kind, const QString &path) { m_problems.append({kind, path}); }
    // The save and sidecar errors by their numbers; any other number is ignored.
    void addErrorID(int id, const QString &path);

    bool isEmpty() const { return m_problems.isEmpty(); }
    void clear() { m_problems.clear(); }
    QStringList paths(Kind kind) const;
    const QList<Problem> &problems() const { return m_problems; }

    // One readable line per kind that occurred, naming the paths (the first few of many).
    QStringList messages() const;
    // What a kind of problem did to count files or folders, in words.
    static QString describe(Kind kind, qsizetype count);

private:
    QList<Problem> m_problems;
};

} // namespace orv
