#pragma once

#include "app/DateChangeCommands.h"

#include <functional>
#include <memory>
#include <vector>

namespace orv {

class MyDroppedFolders;

// The folders a restored state brought into the working set, one undo step: undo takes them
// out of the list again, with every unsaved change they carry, and redo brings the same folders
// back, so the steps made on them after the restore redo as they were.
class RestoreStateCommand : public DateChangeCommand
{
public:
    // While the command moves its folders in or out, movingFolders is set: their history is not
    // theirs to lose then.
    // followed, when given, is told after each move: true when the folders came in, false when
    // they left (a state opened from the tray goes back there when its opening is undone).
    RestoreStateCommand(MyDroppedFolders &dataSource, std::vector<std::unique_ptr<MySingleFolder>> folders,
                        bool &movingFolders, const QString &text, DateChangeListener listener,
                        std::function<void(bool)> followed = {});

    static constexpr int commandId = 40;
    int id() const override { return commandId; }
    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override { return m_folders; }

private:
    // Shared by the copies that a rebuilt history makes: the folders out of the list while the
    // restore is undone.
    using Held = std::vector<std::unique_ptr<MySingleFolder>>;
    RestoreStateCommand(const RestoreStateCommand &other, QList<MySingleFolder *> folders);
    void apply(bool forward) override;
    void move(bool forward);

    MyDroppedFolders &m_dataSource;
    std::shared_ptr<Held> m_held;
    QList<MySingleFolder *> m_folders;
    bool &m_movingFolders;
    std::function<void(bool)> m_followed;
};

} // namespace orv
