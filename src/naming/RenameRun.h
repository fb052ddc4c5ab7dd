#pragma once

#include "naming/NameGenerator.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

namespace orv {

class MySinglePic;
class Preferences;

// Error ids a rename gives an item, read with the save's at the end of a run.
namespace RenameErrorId {
// The move failed, the folder cannot be written, or the new name cannot be a file's name.
constexpr int MoveFailed = 5;
// The name was taken and a number was added.
constexpr int NumberAdded = 8;
// A file of the item (its extension given) does not exist.
constexpr int ExtensionMissing = 14;
// A leading dot stays in the name.
constexpr int FrontDotKept = 18;
} // namespace RenameErrorId

// One item's part of a run: all its files (the main one first, then its group's and sidecars),
// their present and new names in their folder.
struct RenameItem
{
    MySinglePic *pic = nullptr;
    QString folder;
    QStringList from, to;
    int numberAdded = 0;  // 0: the name was free
    QList<int> errorIds;  // RenameErrorId
    QString problem;      // why the item stays as it is; empty while it moves
    bool renamed = false; // set by the run
    // The folder the files go to; empty: they stay in theirs.
    QString toFolder;

    bool moves() const { return problem.isEmpty() && (from != to || !toFolder.isEmpty()); }
};

// Renames files by a template, safely: the whole plan is computed and checked before the first
// rename, the run is journaled (see SaveJournal::renameAll) and goes through temporary names, so
// swaps, chains and cycles of names work and no file is ever replaced. Names that differ only in
// case count as one name, in the plan and against the files that stay, so a plan holds on a
// file system that folds case.
class RenameRun
{
public:
    struct Counter
    {
        // 1: one count over the whole run; otherwise each folder counts for itself.
        int counterType = 0;
        int startValue = 1;

        // "counterType", and the start: "renameCounterStartValue" under "renameCounterStartOption"
        // 2 or 3, else 1.
        static Counter fromPreferences(const Preferences &prefs);
    };
    RenameRun(NameSettings settings, Counter counter);

    // The item's files, by name: its own, then those of its group and its sidecars.
    static QStringList filesOf(const MySinglePic &pic);

    // The items in the order their counter counts: by the new date, then by path.
    static QList<MySinglePic *> inDateOrder(QList<MySinglePic *> pics);

    // Every item's new names, in the order given (the counter follows it); a name taken by a file
    // that stays or by an earlier item of the plan gets the next free number, " 2", " 3", the
    // same for all files of an item. No file is touched.
    std::vector<RenameItem> plan(const QList<MySinglePic *> &pics) const;

    // The final check of a plan before anything is renamed: two items given one name, a name
    // held by a file that stays, a name that is empty, longer than 255 bytes or holds '/' or a
    // NUL. Each clash in words, naming both files; empty when the plan may run.
    static QStringList checkPlan(const std::vector<RenameItem> &items);

    // Journals and renames every item that moves, and gives the items their new names. False,
    // with the problem in `problem`, when the journal cannot be written: nothing was renamed.
    static bool execute(std::vector<RenameItem> &items, const QString &journalPath, QString &problem);

private:
    NameSettings m_settings;
    Counter m_counter;
};

} // namespace orv
