#pragma once

#include <QObject>

class QMenu;
class QWidget;

namespace orv {

class AppController;
class EditActions;

// "Move to Folder…" for the selected items: the user picks another imported folder, the files
// go there with their groups and sidecars, and Edit > Undo brings them back. What stayed is
// listed afterwards and kept in the error log.
class MoveActions : public QObject
{
    Q_OBJECT
public:
    MoveActions(AppController &controller, const EditActions &selection, QWidget *window);

    void addTo(QMenu &menu);
    void moveSelectionToFolder();

private:
    AppController &m_controller;
    const EditActions &m_selection;
    QWidget *m_window;
};

} // namespace orv
