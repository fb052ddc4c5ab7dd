#pragma once

#include "folders/MySingleFolder.h"

#include <QList>
#include <QObject>

#include <functional>

class QAction;
class QMenu;
class QMenuBar;
class QTableView;

namespace orv {

class AppController;
class MySinglePic;
class PicSortProxy;
class PicTableModel;

// The Edit menu: Undo and Redo named after the step they take back or do again, Copy and Paste
// Date, Remove Date(s), the Align submenu, the switch between one offset for the folder and one
// per item, and the way to the previous or next changed item. Until the timeline exists, the
// list's selection is what these commands act on, and its current row is the selected item.
// Every change goes to the owner; this class only asks and shows.
class EditActions : public QObject
{
    Q_OBJECT
public:
    using FoldersOnShow = std::function<QList<MySingleFolder *>()>;

    EditActions(AppController &controller, QTableView &list, const PicSortProxy &rows, const PicTableModel &pics,
                FoldersOnShow foldersOnShow, QWidget *window);

    // The list and the folder list must have their models before the first refresh().
    void addTo(QMenuBar &menuBar);
    // Enables what the selection and the folders allow now.
    void refresh();

    // For the toolbar, once addTo() has made them.
    QAction *undoAction() const { return m_undo; }
    QAction *redoAction() const { return m_redo; }
    QMenu *alignMenu() const { return m_alignMenu; }
    // The list selects these items, current one first; the strip follows the current one.
    void selectPics(const QList<MySinglePic *> &pics, MySinglePic *current);
    // What the commands act on: the list's selected items, and its current row among them.
    QList<MySinglePic *> selectedPics() const;
    MySinglePic *selectedPic() const;

Q_SIGNALS:
    // An undone or redone step changed these folders: the sidebar is to show them (for a
    // folder offset always, for items when they are not on show).
    void stepFoldersToShow(const QList<orv::MySingleFolder *> &folders);

private:
    QAction *addAction(QMenu &menu, const QString &text, const char *name, void (EditActions::*slot)());
    // After an undo or redo: the folders of the step on show, its items selected.
    void showStep(int commandIndex);
    bool isSeparateMode(const QList<MySinglePic *> &pics) const;

    void copyDate();
    void pasteDate();
    void removeDate();
    void removeSelectedDates();
    void removeAllDates();
    void realign(int tag);
    void toggleSeparateMode();
    void previousChange();
    void nextChange();
    void goToChange(int step);
    void refreshAlignMenu();

    AppController &m_controller;
    QTableView &m_list;
    const PicSortProxy &m_rows;
    const PicTableModel &m_pics;
    FoldersOnShow m_foldersOnShow;
    QWidget *m_window;

    QAction *m_undo = nullptr;
    QAction *m_redo = nullptr;
    QAction *m_copyDate = nullptr;
    QAction *m_pasteDate = nullptr;
    QAction *m_removeDate = nullptr;
    QAction *m_removeSelectedDates = nullptr;
    QAction *m_removeAllDates = nullptr;
    QMenu *m_alignMenu = nullptr;
    QList<QAction *> m_alignActions; // by tag, 1 to 13
    QAction *m_collisionInfo = nullptr;
    QAction *m_separateMode = nullptr;
    QAction *m_previousChange = nullptr;
    QAction *m_nextChange = nullptr;
};

} // namespace orv
