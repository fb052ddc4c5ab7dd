#include "ui/WorkingSetActions.h"

#include "app/AppController.h"
#include "folders/MySingleFolder.h"
#include "ui/EditActions.h"

#include <QAction>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

namespace orv {

WorkingSetActions::WorkingSetActions(AppController &controller, const EditActions &selection,
                                     SelectedFolders folders, QWidget *window)
    : QObject(window), m_controller(controller), m_selection(selection), m_folders(std::move(folders)),
      m_window(window)
{
}

void WorkingSetActions::addTo(QMenu &menu)
{
    QAction *items = menu.addAction(tr("Remove from Working Set"), this, &WorkingSetActions::removeSelectedPics);
    items->setObjectName(QStringLiteral("removePicsAction"));
    items->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_Delete));
    QAction *folders =
        menu.addAction(tr("Remove Folder from Working Set"), this, &WorkingSetActions::removeSelectedFolders);
    folders->setObjectName(QStringLiteral("removeFoldersAction"));
}

void WorkingSetActions::removeSelectedPics()
{
    m_controller.removePicsFromWorkingSet(m_selection.selectedPics());
}

void WorkingSetActions::removeSelectedFolders()
{
    const QList<MySingleFolder *> folders = m_folders();
    if (folders.isEmpty())
        return;
    const bool unsaved = std::any_of(folders.cbegin(), folders.cend(),
                                     [](const MySingleFolder *folder) { return folder->isUnsavedFolder(); });
    if (unsaved) {
        QMessageBox box(QMessageBox::Warning, tr("Remove Folder from Working Set"),
                        tr("%n folder(s) hold changes that are not saved. Removing them discards the "
                           "changes; this cannot be undone.",
                           nullptr, int(folders.size())),
                        QMessageBox::NoButton, m_window);
        QPushButton *remove = box.addButton(tr("Remove"), QMessageBox::DestructiveRole);
        box.setDefaultButton(box.addButton(QMessageBox::Cancel));
        box.exec();
        if (box.clickedButton() != remove)
            return;
    }
    if (!m_controller.removeFoldersFromWorkingSet(folders))
        QMessageBox::information(m_window, tr("Remove Folder from Working Set"),
                                 tr("Folders can be removed once the running import or save has ended."));
}

} // namespace orv
