#pragma once

#include <QString>

namespace orv {

// Moves a file to another name in its folder without ever replacing a file of that name: the
// kernel's no-replace rename where the file system has it, else a hard link and the old name's
// removal, else (a file system without links) a rename after a check that the name is free.
// Each call spends one write of InPlaceWriter's budget, so the test hook that stops the writers
// dead stops renames too. Answers 0, or the errno of the failure (EEXIST: the name is taken).
int renameWithoutReplacing(const QString &folder, const QString &from, const QString &to);

// The same from one folder into another of the same file system.
int moveWithoutReplacing(const QString &fromFolder, const QString &from, const QString &toFolder, const QString &to);

// A copy of `from` at `to`, a name that must be free: bytes, mode and modification time, on the
// disk before it answers true. For another file system, where no rename or link reaches. A
// failed copy leaves nothing at `to`.
bool copyWithItsTimes(const QString &from, const QString &to);

// Whether a rename can take the file at `path` into `folder`.
bool isOnOneFileSystem(const QString &path, const QString &folder);

// The reason for a failed rename in words.
QString renameFailureText(int error, const QString &to);

} // namespace orv
