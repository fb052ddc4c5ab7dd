#pragma once

#include "ui/ImportErrorsDialog.h"

#include <QMainWindow>

#include <memory>

class QLabel;
class QStackedWidget;
class QTableView;
class QTreeView;

namespace orv {

class FolderListModel;
class ImportProgressPanel;
class ImportSheets;
class MyDroppedFolders;
class MySingleFolder;
struct ImportProgress;
class PicSortProxy;
class PicTableModel;
class Preferences;

// The one main window: the imported folders in a sidebar, the items of the folders selected in
// a sortable list, the import's progress in the status bar. Folders come in by the File menu,
// by drops from the file manager and from the command line.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(Preferences &prefs, QWidget *parent = nullptr);
    ~MainWindow() override;

    // Imports folders, and single files into the folders that hold them, with the keys held
    // when they were chosen or dropped.
    void importPaths(const QStringList &paths, Qt::KeyboardModifiers keys = Qt::NoModifier);
    bool isImporting() const;

    PicTableModel &picModel() const { return *m_picModel; }
    PicSortProxy &sortedPics() const { return *m_sortedPics; }
    FolderListModel &folderList() const { return *m_folderList; }

Q_SIGNALS:
    // Every import asked for has ended and what it found is on show.
    void importsFinished();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void buildMenus();
    QWidget *buildEmptyState();
    void buildFolderList();
    void buildPicTable();
    void connectImport();
    void openFolder();
    void openFiles();
    void showAbout();

    void folderAdded(const MySingleFolder *folder);
    void folderImported(const MySingleFolder *folder);
    void folderRemoved(const MySingleFolder *folder);
    void showProgress(const ImportProgress &progress);
    void importEnded();
    void showSelectedFolders();
    bool showsAllFolders() const;
    void refreshListState();

    std::unique_ptr<ImportSheets> m_sheets;
    MyDroppedFolders *m_import;
    // Collected while an import runs, shown once at its end.
    QList<FolderImportErrors> m_importErrors;
    FolderListModel *m_folderList;
    PicTableModel *m_picModel;
    PicSortProxy *m_sortedPics;
    QStackedWidget *m_pages;
    QTreeView *m_folderView;
    QTableView *m_picView;
    QLabel *m_emptyNote;
    QLabel *m_summary;
    ImportProgressPanel *m_progress;
};

} // namespace orv
