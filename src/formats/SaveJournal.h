#pragma once

#include "formats/InPlaceWriter.h"

#include <QMutex>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orv {

// One file's in-place write, planned in full before any file of its run is touched.
struct PlannedWrite
{
    QString path;
    ByteProof proof;
    std::vector<ByteEdit> edits;
    // The modification time the file has now, and the one the write gives it.
    FileTime before;
    std::optional<FileTime> after;
    // Told, on the committing thread, whether the file holds the edits now and, if so, whether
    // its date was set.
    std::function<void(bool written, bool dateSet)> finished;
};

// One file's move to a new name in its folder, or into another folder, planned with the rest of
// its run.
struct PlannedRename
{
    QString folder;
    QString from;
    QString to;
    // The files of one item (a group, its sidecars) share a number: they move together or not
    // at all.
    int group = 0;
    // Set by the run: empty once the file has its new name, else why it has not.
    QString problem;
    // Where the file goes; empty: it stays in its folder. On another file system the file is
    // copied, synced and proven equal before its old name goes.
    QString toFolder;
};

// The record of one run of writes, kept on disk so that neither a kill nor a crash leaves a file
// half written without a trace, and so that the last run can be undone after a restart.
//
// A run is committed as a group: every file's patches are planned first, the journal takes them
// all in one write and one sync, the files are patched (each opened once, its proof read, its
// patches and date written), one sync of each file system makes them durable, and a synced mark
// says they are done. Before exiftool rewrites a file, the journal keeps the file as it is: a
// hard link in the journal's folder, a copy where no link can be made, recorded and synced
// before the tool runs. Every record is one line framed by its checksum, so a record is read
// whole or not at all: a torn last line is what a kill leaves, and damage anywhere else is
// reported, never skipped in silence.
//
// A run that did not end is finished first (`recover`): a file written in place only, whose
// every patch holds its old or its new bytes and whose other bytes match the proof, is brought
// to all new with the date the run meant to give it; a file that exiftool touched is put back as
// it was before the run, since the tool's step cannot be done again; anything else is left and
// named. `revert` undoes the last run, last entry first, under the same proofs, and is itself a
// run recorded in its place. The next run's end retires the last run's kept files.
//
// A rename run is journaled the same way: every move (folder, old, temporary and new name, device
// and inode; for a move into another folder that folder, and for one across file systems the
// content's hash) is recorded and synced before the first rename; all files then go to temporary
// names, and only then to their new ones, so swaps, chains and cycles of names work and no
// rename replaces a file. An unfinished rename run is finished from wherever each file stands,
// found by its inode; `revert` moves the names back.
//
// One run at a time: the journal is written only under its lock (`JournalLock`), which the caller
// of recover, revert and a save holds.
class SaveJournal
{
public:
    enum class RunKind { Save, Revert, Rename, Move };

    // The journal of runs in the application's data folder.
    static QString defaultPath();

    explicit SaveJournal(QString path, RunKind kind = RunKind::Save);
    ~SaveJournal();
    SaveJournal(const SaveJournal &) = delete;
    SaveJournal &operator=(const SaveJournal &) = delete;

    // Makes the run's journal beside the last one and proves that it takes a synced write. The
    // problem in words, naming the journal's folder and the cause, otherwise; nothing is left
    // behind then. The last journal stays in force until the run touches its first file.
    QString open();
    // Why the journal cannot be written; empty while it can.
    QString problem() const;

    // Any thread.
    void plan(PlannedWrite write);
    // Journals every planned write in one synced write, writes the files, syncs each file system
    // once, and marks them done; each planned write is told how it went. False: the journal
    // could not take them, and no file was touched.
    bool commit(FileWriteAccess &disk);

    // Journals every rename in one synced write, then moves all files to temporary names and
    // from there to their new ones, then marks them done; each rename's problem says how it
    // went. False: the journal could not take them, and no file was touched.
    bool renameAll(std::vector<PlannedRename> &renames);

    // Keeps the file as it is now, before exiftool writes it anew; for a file the tool is to
    // make, records that there was none, so that an undo takes it away. Nothing: the file cannot
    // be kept or the journal cannot be written, and the tool must not run.
    struct Kept
    {
        qint64 entry = 0;
        FileTime modified;
    };
    // `temporary` is where the tool writes before it renames, removed should a kill stop it.
    std::optional<Kept> keepOriginal(const QString &path, const QString &temporary = {});
    // The tool changed the file: what it left, so that an undo finds it unchanged since.
    void toolChanged(const Kept &kept, const QString &path);

    // The run's end mark; a run that touched no file leaves the previous journal as it was.
    void endRun();

    // What finishing or undoing a run did.
    struct Outcome
    {
        QStringList completed;                        // now hold the run's new bytes
        QStringList reverted;                         // now hold their bytes from before the run
        std::vector<std::pair<QString, QString>> left; // path and reason, in words
        bool hadRun = false;                          // a journal was there to act on
    };

    // Finishes a run that did not end. Without such a run, nothing happens.
    static Outcome recover(const QString &journalPath);
    // Undoes the last run. An unfinished one is finished first.
    static Outcome revert(const QString &journalPath);

private:
    bool append(const QByteArray &lines, bool sync);
    bool promote();
    void fail(const QString &what, int error);
    QString keptFolder() const;

    QString m_path;
    RunKind m_kind;
    QString m_runId;
    mutable QMutex m_mutex;
    int m_fd = -1;
    bool m_promoted = false;
    qint64 m_entries = 0;
    QString m_problem;
    std::vector<PlannedWrite> m_planned;
};

// The journal's lock: one run at a time writes files under one user, across processes. Held by
// a process, it is shared by all that process's holders.
class JournalLock
{
public:
    ~JournalLock();
    JournalLock(const JournalLock &) = delete;
    JournalLock &operator=(const JournalLock &) = delete;

    // Waits for another process's run to end, telling `waiting` first; without `wait`, nothing
    // when another process holds it. A lock that cannot be made is no lock: the journal's own
    // writes then say why.
    static std::shared_ptr<JournalLock> take(const QString &journalPath, bool wait,
                                             const std::function<void()> &waiting = {});

private:
    explicit JournalLock(int fd) : m_fd(fd) {}
    int m_fd;
};

} // namespace orv
