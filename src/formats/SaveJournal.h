#pragma once

#include "formats/InPlaceWriter.h"

#include <QFile>
#include <QMutex>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace orv {

// The record of one run of in-place writes, kept on disk so that neither a kill nor a crash
// leaves a file half written without a trace, and so that the last run can be undone after a
// restart.
//
// Before the first byte of a file is written, the run appends the file's path, its length and
// modification date, the proof of its other bytes and every patch (offset, old bytes, new bytes)
// and syncs the journal; once the file itself is synced, a mark says it is done; the run's end
// is the last mark. One line per record, so a record torn by a kill is simply not there: its
// file was not yet touched.
//
// A journal found without its end is finished first (`recover`): a file whose every patch holds
// either its old or its new bytes, and whose other bytes match the proof, is brought to all new;
// any other file is left as it is and named. `revert` undoes the last finished run file by file
// under the same proof and is itself a run, recorded in its place.
//
// Appends may come from many saving threads at once; each waits only for its own entry to reach
// the disk.
class SaveJournal
{
public:
    enum class RunKind { Save, Revert };

    // The journal of runs in the application's data folder.
    static QString defaultPath();

    explicit SaveJournal(QString path, RunKind kind = RunKind::Save);
    ~SaveJournal();
    SaveJournal(const SaveJournal &) = delete;
    SaveJournal &operator=(const SaveJournal &) = delete;

    // Records a file's planned edits and waits for the record to reach the disk. The first file
    // of a run replaces the previous run's journal. Nothing: the journal cannot be written, and
    // the file must not be either.
    std::optional<qint64> beginFile(const QString &path, const ByteProof &proof,
                                    const std::vector<ByteEdit> &edits);
    void fileDone(qint64 entry);
    // The run's end mark; a run that wrote no file leaves the previous journal as it was.
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
    bool append(const QByteArray &line, bool sync);

    QString m_path;
    RunKind m_kind;
    QMutex m_mutex;
    QFile m_file;
    qint64 m_entries = 0;
    bool m_broken = false;
};

} // namespace orv
