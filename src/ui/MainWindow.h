#pragma once

#include "app/QuitDecision.h"
#include "states/AdditionalData.h"
#include "ui/ImportErrorsDialog.h"

#include <QMainWindow>

#include <memory>

class QAction;
class QImage;
class QMenu;
class QLabel;
class QMimeData;
class QStackedWidget;
class QTableView;
class QTreeView;

namespace orv {

class AppController;
class EditActions;
class InfoView;
class PreviewsBar;
class FolderListModel;
class ImportProgressPanel;
class ImportSheets;
class MyDroppedFolders;
class MySingleFolder;
class MySinglePic;
struct ImportProgress;
class PicSortProxy;
class OffsetBar;
class PicTableModel;
class QuickSelectionActions;
class Preferences;
class SaveSession;
class StateSession;
class TimelinePane;
class ViewingActions;
struct RestoredView;

// The one main window: the imported folders in a sidebar, the items of the folders selected in
// a sortable list under the controls that shift their dates, the import's progress in the status
// bar. Folders come in by the File menu, by drops from the file manager and from the command
// line; their changes reach the files only by File > Save. The window only wires widgets to the
// owner of the working set (AppController), which makes every change and announces it.
class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(Preferences &prefs, QWidget *parent = nullptr);
    ~MainWindow() override;

    // Imports folders, and single files into the folders that hold them, with the keys held
    // when they were chosen or dropped.
    void importPaths(const QStringList &paths, Qt::KeyboardModifiers keys = Qt::NoModifier, bool addingToShelf = false);
    bool isImporting() const;
    bool isSaving() const { return m_save != nullptr; }
    // Saves every folder with unsaved changes.
    void save();

    PicTableModel &picModel() const { return *m_picModel; }
    StateSession &states() const { return *m_states; }
    PicSortProxy &sortedPics() const { return *m_sortedPics; }
    FolderListModel &folderList() const { return *m_folderList; }
    TimelinePane &timeline() const { return *m_timeline; }
    AppController &controller() const { return *m_controller; }
    InfoView &infoView() const { return *m_infoView; }
    PreviewsBar &previewsBar() const { return *m_previewsBar; }
    // The ratings, the grid and the full-screen view.
    ViewingActions &viewing() const { return *m_viewing; }
    // The Quick Selection menu and the Categories side view.
    QuickSelectionActions &quickSelections() const { return *m_quickSelections; }

Q_SIGNALS:
    // Every import asked for has ended and what it found is on show.
    void importsFinished();
    // A save has ended and the list shows what the files now hold.
    void saveFinished();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildMenus();
    QWidget *buildEmptyState();
    void buildFolderList();
    void buildPicTable();
    QWidget *buildListPane();
    void connectImport();
    void openFolder();
    void openFiles();
    void showAbout();

    // The window shell (MainWindowShell.cpp): the toolbar, the side views, the keyboard help,
    // and what the views around the timeline show of the selection.
    void buildToolBar();
    void buildSideViews(QMenu &viewMenu);
    void showKeyboardHelp();
    // The cached thumbnail of an item; a null image while it has none.
    QImage thumbnailOf(const MySinglePic &pic) const;
    // The info view and the previews bar follow the selection, except while a save owns the items.
    void showSelectionInSideViews();
    // Back from the pre-save summary: the items the user chose there are selected.
    void handBackSelection(const QList<MySinglePic *> &pics);
    // The selected items in the source's order: the list's, or the strip's when it holds more.
    QList<MySinglePic *> selection() const;

    void folderAdded(const MySingleFolder *folder);
    void folderImported(const MySingleFolder *folder);
    void folderRemoved(const MySingleFolder *folder);
    void showProgress(const ImportProgress &progress);
    void importEnded();
    // Dropped GPX files: read off the main thread, then their tracks are linked to the folders
    // on show, as one undo step, and the items show their places before the save.
    void linkDroppedTracks(const QStringList &paths);
    void showSelectedFolders();
    void openTimeZonePicker();
    // The rename sheet over the selected items, or all items on show without a selection.
    void openRenameSheet();
    bool showsAllFolders() const;
    void refreshListState();
    QList<MySingleFolder *> selectedFolders() const;
    // The selected folders, or all of them while the list shows all.
    QList<MySingleFolder *> foldersOnShow() const;
    // The sidebar selects exactly these folders.
    void selectFolders(const QList<MySingleFolder *> &folders);
    // Files dropped on the window or a strip, imported once the drop has been answered.
    void dropPaths(const QMimeData *mime, Qt::KeyboardModifiers keys, bool addingToShelf);
    // An item of a folder not on show chosen on the strip: its folder is shown (or added), the
    // item selected.
    void chooseFolderOf(MySinglePic *pic, bool adding);
    void setTitle(const QString &title);
    void connectController();
    void datesChanged(const QList<MySingleFolder *> &folders);
    void saveEnded(const QList<MySingleFolder *> &saved, bool completed);
    // The unsaved mark in the title and the Save action follow the folders.
    void refreshUnsavedState();
    bool askToSaveBeforeClosing();
    // The strip and the list show the same filtered source and select together.
    void connectTimeline();
    void showPicInList(MySinglePic *pic);
    // Work in the background (thumbnails) shows in the status bar while it goes on.
    void showBackgroundWork();

    // The view a kept state holds (MainWindowStates.cpp): taken at each write, shown again
    // after a restore, and what was in front at quit put in front at start.
    void connectStates();
    AdditionalData::ViewState viewState() const;
    void showRestoredView(const RestoredView &view, bool fromTray);
    void showViewAtLaunch(const ViewAtQuit &atQuit, bool stateRestored);

    Preferences &m_prefs;
    std::unique_ptr<ImportSheets> m_sheets;
    std::unique_ptr<AppController> m_controller;
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
    OffsetBar *m_offsetBar;
    EditActions *m_editActions;
    QAction *m_saveAction = nullptr;
    SaveSession *m_save = nullptr; // while a save runs
    // The user chose Save when closing: the window closes once the save has gone through.
    bool m_closeAfterSave = false;
    StateSession *m_states = nullptr;
    TimelinePane *m_timeline;
    InfoView *m_infoView = nullptr;
    PreviewsBar *m_previewsBar = nullptr;
    ViewingActions *m_viewing = nullptr;
    QuickSelectionActions *m_quickSelections = nullptr;
    QMenu *m_viewMenu = nullptr;
};

} // namespace orv
