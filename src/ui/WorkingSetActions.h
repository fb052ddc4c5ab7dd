#pragma once

#include <QList>
#include <QObject>

#include <functional>

class QMenu;
class QWidget;

namespace orv {

class AppController;
class EditActions;
class MySingleFolder;

// Taking items and folders out of the working set, their files untouched: "Remove from Working
// Set" for the selected items (undone with Edit > Undo), and "Remove Folder from Working Set"
// for the folders selected in the sidebar, which asks first when they hold unsaved changes, as
// those and the folders' history go with them.
class WorkingSetActions : public QObject
{
    Q_OBJECT
public:
    using SelectedFolders = std::function<QList<MySingleFolder *>()>;

    WorkingSetActions(AppController &controller, const EditActions &selection, SelectedFolders folders,
                      QWidget *window);

    void addTo(QMenu &menu);
    void removeSelectedPics();
    void removeSelectedFolders();

private:
    AppController &m_controller;
    const EditActions &m_selection;
    SelectedFolders m_folders;
    QWidget *m_window;
};

} // namespace orv
