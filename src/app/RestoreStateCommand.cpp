#include "app/RestoreStateCommand.h"

#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"

#include <QScopedValueRollback>

namespace orv {

RestoreStateCommand::RestoreStateCommand(MyDroppedFolders &dataSource, std::vector<std::unique_ptr<MySingleFolder>> folders,
                                         bool &movingFolders, const QString &text, DateChangeListener listener,
                                         std::function<void(bool)> followed)
    : DateChangeCommand(text, std::move(listener)), m_dataSource(dataSource), m_held(std::make_shared<Held>()),
      m_movingFolders(movingFolders), m_followed(std::move(followed))
{
    for (std::unique_ptr<MySingleFolder> &folder : folders) {
        m_folders.append(folder.get());
        m_held->push_back(std::move(folder));
    }
}

RestoreStateCommand::RestoreStateCommand(const RestoreStateCommand &other, QList<MySingleFolder *> folders)
    : DateChangeCommand(other.text(), other.m_listener), m_dataSource(other.m_dataSource), m_held(other.m_held),
      m_folders(std::move(folders)), m_movingFolders(other.m_movingFolders), m_followed(other.m_followed)
{
}

std::unique_ptr<DateChangeCommand> RestoreStateCommand::withoutFolder(const MySingleFolder *folder) const
{
    QList<MySingleFolder *> rest = m_folders;
    rest.removeOne(const_cast<MySingleFolder *>(folder));
    if (rest.isEmpty())
        return nullptr;
    return std::unique_ptr<DateChangeCommand>(new RestoreStateCommand(*this, std::move(rest)));
}

void RestoreStateCommand::apply(bool forward)
{
    move(forward);
    if (m_followed)
        m_followed(forward);
}

void RestoreStateCommand::move(bool forward)
{
    const QScopedValueRollback moving(m_movingFolders, true);
    if (forward) {
        Held back;
        for (MySingleFolder *folder : std::as_const(m_folders)) {
            const auto held = std::ranges::find_if(*m_held, [folder](const auto &each) { return each.get() == folder; });
            if (held != m_held->end()) {
                back.push_back(std::move(*held));
                m_held->erase(held);
            }
        }
        m_dataSource.adoptRestoredFolders(std::move(back));
        return;
    }
    for (MySingleFolder *folder : std::as_const(m_folders))
        if (std::unique_ptr<MySingleFolder> released = m_dataSource.releaseFolder(folder))
            m_held->push_back(std::move(released));
}

} // namespace orv
