#pragma once

#include "app/DateChangeCommands.h"
#include "trash/FreedesktopTrash.h"

#include <QStringList>

namespace orv {

// Items put in the desktop's trash, one user event: their files (a group's dependent and the
// sidecars along) are in the trash and the items have left their folders. Undo puts the files
// back where they were and the items in their old places; redo trashes them again. A file that
// cannot go or come back (the trash was emptied, another file took its name) keeps its item
// where its main file is, and is named in problems().
class TrashCommand : public DateChangeCommand
{
public:
    struct Entry
    {
        MySinglePic *pic = nullptr;
        QStringList paths;             // the main file first
        QList<TrashedFile> trashed;    // while in the trash
        qsizetype index = 0;           // in its folder's list, before it left
    };
    TrashCommand(QList<Entry> entries, const QString &text, DateChangeListener listener);

    static constexpr int commandId = 30;
    int id() const override { return commandId; }
    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;

    // The items in the trash now.
    QList<MySinglePic *> trashedPics() const;
    // What the last redo or undo could not do, one line per file: its path and the reason.
    const QStringList &problems() const { return m_problems; }

    // An item (with its dependent) marked as gone or back; folders recount after items left or
    // came back.
    static void setMovedToTrash(MySinglePic &pic, bool trashed);
    static void recountFolders(const QList<MySingleFolder *> &folders);

private:
    void apply(bool forward) override;
    bool moveToTrash(Entry &entry);
    bool putBack(Entry &entry);

    QList<Entry> m_entries; // in their folders' order
    QStringList m_problems;
};

} // namespace orv
