#pragma once

#include "app/DateChangeCommands.h"

namespace orv {

// Items taken out of the working set, one user event: they leave their folders' lists (a group's
// dependent with its master) and their files stay as they are. Undo puts them back in their old
// places; redo takes them out again. The items stay owned by their folders meanwhile, as trashed
// ones do, and a kept working set leaves them out.
class RemoveCommand : public DateChangeCommand
{
public:
    struct Entry
    {
        MySinglePic *pic = nullptr;
        qsizetype index = 0; // in its folder's list, before it left
    };
    // The masters of the items given, each once; items gone already are passed over. Nothing
    // when none is left.
    static std::unique_ptr<RemoveCommand> forPics(const QList<MySinglePic *> &pics, DateChangeListener listener);

    static constexpr int commandId = 32;
    int id() const override { return commandId; }
    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;

private:
    RemoveCommand(QList<Entry> entries, DateChangeListener listener);
    void apply(bool forward) override;

    QList<Entry> m_entries; // in their folders' order
};

} // namespace orv
