#pragma once

#include <QString>

#include <optional>

namespace orv {

// Which directory a path names, independent of its name: a symlink, a bind mount or a rename
// leaves it unchanged.
struct FileIdentity
{
    quint64 device = 0;
    quint64 inode = 0;

    // Nothing when the path does not exist; symlinks are followed.
    static std::optional<FileIdentity> of(const QString &path);
    bool operator==(const FileIdentity &) const = default;
};

// Why a directory could not be reached. Two reasons stay for the rest of the run: a directory
// the user may not enter will not open by retrying, and a mount that went away stays away until
// it is mounted again, which the user does, not the scan.
enum class FolderAccessError : qint64 {
    None = 0,
    Missing = 1,
    Unreachable = 65,
    Refused = -128,
};

// The persistent grant to a folder: where it was and which directory it was. Linux has no
// grants, so access is a plain permission test; the identity lets the token follow the folder
// when it was renamed within its parent, and tells a stale token (a different directory now
// under the same name) from a good one.
class FolderToken
{
public:
    FolderToken() = default;

    // Nothing for a path that is no reachable directory.
    static std::optional<FolderToken> forPath(const QString &path);
    // A token for a directory inside the parent's, made only while the parent still resolves:
    // the single files of a partial import take their grant from their folder's parent.
    static std::optional<FolderToken> derived(const FolderToken &parent, const QString &path);
    // A token as a saved state kept it: resolved when the state is restored.
    static FolderToken stored(const QString &path, FileIdentity identity) { return FolderToken(path, identity); }

    struct Resolution
    {
        QString path;           // empty on failure
        bool isStale = false;   // another directory stands at the path; rebuild the token
        FolderAccessError error = FolderAccessError::None;
    };
    Resolution resolve() const;

    // The directory may be listed and its files opened.
    static bool isAccessible(const QString &directory);
    static bool isSticky(FolderAccessError error)
    {
        return error == FolderAccessError::Unreachable || error == FolderAccessError::Refused;
    }

    bool isNull() const { return m_path.isEmpty(); }
    const QString &path() const { return m_path; }
    const FileIdentity &identity() const { return m_identity; }
    bool operator==(const FolderToken &) const = default;

private:
    FolderToken(QString path, FileIdentity identity) : m_path(std::move(path)), m_identity(identity) {}
    // The renamed directory, when its parent still holds it under another name.
    QString renamedPath() const;

    QString m_path;
    FileIdentity m_identity;
};

} // namespace orv
