#pragma once

#include <QDialog>
#include <QList>

class QListWidget;
class QPushButton;

namespace orv {

class AppController;
class MySingleFolder;

// The folders of the working set that could not be found, after a restore: the user points each
// at its new place (an external disk mounted elsewhere), which is taken only when it is the same
// directory or holds the folder's files; or discards it with its unsaved work; or leaves it
// disconnected for later, its work kept.
class ReconnectionSheet : public QDialog
{
    Q_OBJECT
public:
    ReconnectionSheet(AppController &controller, QWidget *parent);

    static QList<MySingleFolder *> disconnectedFolders(const AppController &controller);

private:
    void refresh();
    MySingleFolder *selectedFolder() const;
    void reconnectSelected();
    void discardSelected();

    AppController &m_controller;
    QListWidget *m_list;
    QPushButton *m_reconnect;
    QPushButton *m_discard;
    QList<MySingleFolder *> m_folders;
};

} // namespace orv
