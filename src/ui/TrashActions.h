#pragma once

#include "app/PicTrashing.h"

#include <QObject>

class QAction;
class QMenu;
class QWidget;

namespace orv {

class AppController;
class EditActions;

// "Move to Trash" for the selected items, undone with Edit > Undo like every other change. When
// a file's file system has no trash it can write, the user chooses between deleting for good and
// keeping the files; what stayed is listed afterwards.
class TrashActions : public QObject, private TrashQuestions
{
    Q_OBJECT
public:
    TrashActions(AppController &controller, const EditActions &selection, QWidget *window);

    void addTo(QMenu &menu);
    void moveSelectionToTrash();

private:
    bool deleteWithoutTrash(const QStringList &paths) override;

    AppController &m_controller;
    const EditActions &m_selection;
    QWidget *m_window;
    QAction *m_action = nullptr;
};

} // namespace orv
