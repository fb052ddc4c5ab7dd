#include "ui/MainWindow.h"

#include "app/AppController.h"
#include "core/LogController.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "folders/FolderPalette.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "places/ZonePlaces.h"
#include "thumbs/MyThumbsQueue.h"
#include "time/TimeZone.h"
#include "timeline/MyTimelinesController.h"
#include "ui/EditActions.h"
#include "ui/ErrorLogWindow.h"
#include "ui/FieldUndoRouter.h"
#include "ui/FolderListModel.h"
#include "ui/ImportProgressPanel.h"
#include "ui/ImportSheets.h"
#include "ui/MapWindow.h"
#include "ui/MovieActions.h"
#include "ui/MyTimeZonePickerController.h"
#include "ui/MyTimelineView.h"
#include "ui/OffsetBar.h"
#include "ui/PicSortProxy.h"
#include "ui/PicTableModel.h"
#include "ui/PreferencesWindow.h"
#include "ui/PreviewsBar.h"
#include "ui/QuickSelectionActions.h"
#include "ui/RenameSheet.h"
#include "ui/SaveSession.h"
#include "ui/StateSession.h"
#include "ui/TimelineDragHandler.h"
#include "ui/TimelinePane.h"
#include "ui/TrashActions.h"
#include "ui/MoveActions.h"
#include "ui/ViewingActions.h"
#include "ui/WorkingSetActions.h"

#include <QApplication>
#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace orv {

namespace {

enum Page : int { EmptyPage, FoldersPage };

// The local files and folders of a drag from a file manager; remote URLs are not imported.
QStringList localPaths(const QMimeData *mime)
{
    QStringList paths;
    if (!mime || !mime->hasUrls())
        return paths;
    for (const QUrl &url : mime->urls())
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    return paths;
}

} // namespace

MainWindow::MainWindow(Preferences &prefs, QWidget *parent)
    : QMainWindow(parent),
      m_prefs(prefs),
      m_sheets(std::make_unique<ImportSheets>(this, prefs)),
      m_controller(std::make_unique<AppController>(prefs, *m_sheets, LogController::defaultLogFilePath())),
      m_import(&m_controller->theDataSource()),
      m_folderList(new FolderListModel(FolderPalette::fromPreferences(prefs), this)),
      m_picModel(new PicTableModel(TimeZone::systemZone(), this)),
      m_sortedPics(new PicSortProxy(this)),
      m_pages(new QStackedWidget(this)),
      m_folderView(new QTreeView(this)),
      m_picView(new QTableView(this)),
      m_emptyNote(new QLabel(this)),
      m_summary(new QLabel(this)),
      m_progress(new ImportProgressPanel(this)),
      m_offsetBar(new OffsetBar(m_controller->dateChanges(), this)),
      m_editActions(new EditActions(*m_controller, *m_picView, *m_sortedPics, *m_picModel,
                                    [this] { return foldersOnShow(); }, this)),
      m_timeline(new TimelinePane(prefs, this))
{
    setTitle(tr("Orvelle"));
    // Most of the screen, for the timeline and the views around it.
    resize(screen()->availableSize().boundedTo(QSize(1920, 1200)) * 0.9);
    setAcceptDrops(true);

    m_states = new StateSession(*m_controller, *this);
    // The actions first: the bar above the list shows Save.
    buildMenus();
    buildToolBar();
    buildFolderList();
    buildPicTable();
    auto *splitter = new QSplitter(this);
    splitter->addWidget(m_folderView);
    splitter->addWidget(buildListPane());
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({300, 980});
    m_pages->insertWidget(EmptyPage, buildEmptyState());
    m_pages->insertWidget(FoldersPage, splitter);
    setCentralWidget(m_pages);

    statusBar()->addWidget(m_summary, 1);
    statusBar()->addPermanentWidget(m_progress);
    m_progress->hide();

    connectImport();
    connectController();
    connectTimeline();
    m_viewing = new ViewingActions(*m_controller, *m_timeline, *m_picView, *this);
    m_viewing->addTo(*menuBar());
    m_quickSelections = new QuickSelectionActions(
        *m_controller, *m_timeline, [this] { return foldersOnShow(); },
        [this](const QList<MySinglePic *> &pics) { handBackSelection(pics); }, *this);
    m_quickSelections->addTo(*this);
    connect(m_quickSelections, &QuickSelectionActions::radiusSelectionRequested, this, [this](double metres) {
        findChild<QAction *>(QStringLiteral("mapAction"))->trigger();
        findChild<MapWindow *>(QStringLiteral("mapWindow"), Qt::FindDirectChildrenOnly)->selectWithinRadius(metres);
    });
    // A side view like the others: the View menu shows and hides it too, before the map.
    m_viewMenu->insertAction(findChild<QAction *>(QStringLiteral("mapAction")), m_quickSelections->categoriesToggle());
    connect(m_picView->selectionModel(), &QItemSelectionModel::selectionChanged, m_editActions,
            &EditActions::refresh);
    connect(m_picView->selectionModel(), &QItemSelectionModel::currentChanged, m_editActions, &EditActions::refresh);
    connect(m_picView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MainWindow::showSelectionInSideViews);
    connect(m_timeline, &TimelinePane::picSelected, this, &MainWindow::showSelectionInSideViews);
    connect(&m_timeline->thumbs(), &MyThumbsQueue::thumbReady, m_previewsBar, &PreviewsBar::thumbReady);
    m_states->setThumbnails(m_timeline->thumbs());
    m_states->restoreWindowLayout();
    connectStates();
    // Undo and redo reach the window's stack from every field that holds no typing of its own.
    new FieldUndoRouter(*this);
    refreshListState();
    refreshUnsavedState();
    // Under writeRatingsToXMPOnSave a rating is work for the next save.
    connect(m_controller.get(), &AppController::ratingsChanged, this, &MainWindow::refreshUnsavedState);
    connect(&m_prefs, &Preferences::valueChanged, this, [this](const QString &key) {
        if (key == QLatin1String("writeRatingsToXMPOnSave"))
            refreshUnsavedState();
    });
}

// A running save and the import go first: their threads may still use the folders, the sheets
// and the models.
MainWindow::~MainWindow()
{
    delete m_save;
    m_controller.reset();
}

void MainWindow::buildMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&File"));
    QAction *open = file->addAction(tr("Open Folder…"), this, &MainWindow::openFolder);
    open->setObjectName(QStringLiteral("openFolderAction"));
    open->setShortcut(QKeySequence::Open);
    QAction *openFiles = file->addAction(tr("Open Files…"), this, &MainWindow::openFiles);
    openFiles->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O));
    m_states->addActions(*file);
    file->addSeparator();
    m_saveAction = file->addAction(tr("Save"), this, &MainWindow::save);
    m_saveAction->setObjectName(QStringLiteral("saveAction"));
    m_saveAction->setShortcut(QKeySequence::Save);
    m_saveAction->setToolTip(tr("Write the changed dates into the files"));
    QAction *rename = file->addAction(tr("Rename…"), this, &MainWindow::openRenameSheet);
    rename->setObjectName(QStringLiteral("renameAction"));
    rename->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R));
    file->addSeparator();
    (new TrashActions(*m_controller, *m_editActions, this))->addTo(*file);
    (new MoveActions(*m_controller, *m_editActions, this))->addTo(*file);
    (new WorkingSetActions(*m_controller, *m_editActions, [this] { return selectedFolders(); }, this))
        ->addTo(*file);
    file->addSeparator();
    QAction *preferences = file->addAction(tr("Preferences…"), this, [this] { PreferencesWindow::showFor(m_prefs, this); });
    preferences->setObjectName(QStringLiteral("preferencesAction"));
    preferences->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    // Through the window's close, so that unsaved changes are asked about.
    QAction *quit = file->addAction(tr("Quit"), this, &QWidget::close);
    quit->setObjectName(QStringLiteral("quitAction"));
    quit->setShortcut(QKeySequence::Quit);
    m_states->addQuitActions(*file);

    m_editActions->addTo(*menuBar());
    QAction *zones = menuBar()->addMenu(tr("&Time"))->addAction(tr("Time Zone Correction…"), this,
                                                                  &MainWindow::openTimeZonePicker);
    zones->setObjectName(QStringLiteral("timeZonePickerAction"));
    (new MovieActions(*m_controller, *m_editActions, this))->addTo(*menuBar()->addMenu(tr("&Movie")));
    menuBar()->addMenu(m_timeline->filterMenu());
    menuBar()->addMenu(m_timeline->stripsMenu());

    QMenu *view = menuBar()->addMenu(tr("&View"));
    buildSideViews(*view);
    m_viewMenu = view;
    QAction *map = view->addAction(tr("Map"), this, [this] {
        MapWindow &shown = MapWindow::showFor(
            *m_controller, [this] { return selection(); },
            [this] { return m_timeline->controller().source_filtered(); }, this);
        connect(&shown, &MapWindow::picsChosen, this, &MainWindow::handBackSelection, Qt::UniqueConnection);
    });
    map->setObjectName(QStringLiteral("mapAction"));
    map->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_M));

    QMenu *help = menuBar()->addMenu(tr("&Help"));
    QAction *keys = help->addAction(tr("Keyboard Shortcuts"), this, &MainWindow::showKeyboardHelp);
    keys->setObjectName(QStringLiteral("keyboardHelpAction"));
    keys->setShortcut(QKeySequence::HelpContents);
    ErrorLogWindow::addTo(*help, m_controller->log(), this);
    help->addAction(tr("About Orvelle"), this, &MainWindow::showAbout);
}

QWidget *MainWindow::buildEmptyState()
{
    auto *page = new QWidget(this);
    auto *title = new QLabel(tr("Drop folders of photos and movies here"), page);
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.6);
    title->setFont(titleFont);
    auto *hint = new QLabel(tr("Orvelle reads their dates, time zones and places. Nothing is "
                               "written to your files until you save."),
                            page);
    hint->setForegroundRole(QPalette::PlaceholderText);
    auto *open = new QPushButton(tr("Open Folder…"), page);
    connect(open, &QPushButton::clicked, this, &MainWindow::openFolder);

    auto *layout = new QVBoxLayout(page);
    layout->addStretch();
    layout->addWidget(title, 0, Qt::AlignHCenter);
    layout->addWidget(hint, 0, Qt::AlignHCenter);
    layout->addSpacing(16);
    layout->addWidget(open, 0, Qt::AlignHCenter);
    layout->addStretch();
    return page;
}

void MainWindow::buildFolderList()
{
    m_folderView->setModel(m_folderList);
    m_folderView->setRootIsDecorated(false);
    m_folderView->setUniformRowHeights(true);
    m_folderView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_folderView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_folderView->header()->setStretchLastSection(false);
    m_folderView->header()->setSectionResizeMode(FolderListModel::NameColumn, QHeaderView::Stretch);
    m_folderView->header()->setSectionResizeMode(FolderListModel::CountColumn, QHeaderView::ResizeToContents);
    m_folderView->header()->setSectionResizeMode(FolderListModel::MediaColumn, QHeaderView::ResizeToContents);
    connect(m_folderView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MainWindow::showSelectedFolders);
}

void MainWindow::buildPicTable()
{
    m_sortedPics->setSourceModel(m_picModel);
    m_picView->setModel(m_sortedPics);
    m_picView->setSortingEnabled(true);
    m_picView->sortByColumn(PicTableModel::DateColumn, Qt::AscendingOrder);
    m_picView->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_picView->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_picView->setShowGrid(false);
    m_picView->setAlternatingRowColors(true);
    m_picView->setWordWrap(false);
    m_picView->verticalHeader()->hide();
    // Fixed row heights let the view place 10,000 rows without measuring any of them.
    m_picView->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_picView->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);

    QHeaderView *header = m_picView->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->setStretchLastSection(true);
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // Widths from typical contents rather than measured over all rows, which would read every item.
    const auto widthOf = [this](const QString &sample) { return fontMetrics().horizontalAdvance(sample) + 16; };
    header->setMinimumSectionSize(widthOf(QStringLiteral("Folder")));
    header->resizeSection(PicTableModel::NameColumn, widthOf(QStringLiteral("DSC_0001-Edit.jpg")));
    header->resizeSection(PicTableModel::DateColumn, widthOf(QStringLiteral("2024-05-01 10:00:00 CEST")));
    header->resizeSection(PicTableModel::SourceColumn, widthOf(QStringLiteral("EXIF digitized date")));
    header->resizeSection(PicTableModel::CameraColumn, widthOf(QStringLiteral("Canon EOS 5D Mark")));
    header->resizeSection(PicTableModel::SizeColumn, widthOf(QStringLiteral("6000 × 4000")));
    header->resizeSection(PicTableModel::LocationColumn, widthOf(QStringLiteral("48.85837° N, 2.29448° W")));

    m_emptyNote->setForegroundRole(QPalette::PlaceholderText);
    auto *overlay = new QVBoxLayout(m_picView->viewport());
    overlay->addWidget(m_emptyNote, 0, Qt::AlignCenter);
}

QWidget *MainWindow::buildListPane()
{
    auto *pane = new QWidget(this);
    auto *save = new QToolButton(pane);
    save->setDefaultAction(m_saveAction);
    save->setToolButtonStyle(Qt::ToolButtonTextOnly);
    save->setObjectName(QStringLiteral("saveButton"));

    auto *bar = new QHBoxLayout;
    bar->setContentsMargins(8, 6, 8, 6);
    bar->addWidget(m_offsetBar, 1);
    bar->addWidget(save);
    auto *layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(bar);
    // The strip is the main pane; the list below it is a side view of the same items.
    auto *views = new QSplitter(Qt::Vertical, pane);
    views->addWidget(m_timeline);
    views->addWidget(m_picView);
    views->setStretchFactor(0, 3);
    views->setStretchFactor(1, 2);
    views->setSizes({400, 260});
    layout->addWidget(views, 1);
    return pane;
}

void MainWindow::connectImport()
{
    connect(m_import, &MyDroppedFolders::folderAdded, this, &MainWindow::folderAdded);
    connect(m_import, &MyDroppedFolders::folderImported, this, &MainWindow::folderImported);
    connect(m_import, &MyDroppedFolders::folderRemoved, this, &MainWindow::folderRemoved);
    connect(m_import, &MyDroppedFolders::importStarted, this, [this] {
        m_progress->showProgress(tr("Starting the import…"), 0, 0);
        m_progress->show();
        refreshUnsavedState();
    });
    connect(m_import, &MyDroppedFolders::importProgressChanged, this, &MainWindow::showProgress);
    connect(m_import, &MyDroppedFolders::importEnded, this, &MainWindow::importEnded);
    connect(m_progress, &ImportProgressPanel::cancelRequested, m_import, &MyDroppedFolders::cancelImports);
    connect(m_import, &MyDroppedFolders::dropRefused, this, &QApplication::beep);
    connect(m_import, &MyDroppedFolders::photosLibraryRefused, this, [this] {
        statusBar()->showMessage(tr("Files inside a photo library package are left out."), 8000);
    });
    connect(m_import, &MyDroppedFolders::tracksDropped, this, &MainWindow::linkDroppedTracks);
    connect(m_import, &MyDroppedFolders::statesDropped, m_states, &StateSession::openStates);
}

void MainWindow::linkDroppedTracks(const QStringList &paths)
{
    auto *reading = new QFutureWatcher<QList<GpxFile>>(this);
    connect(reading, &QFutureWatcherBase::finished, this, [this, reading] {
        reading->deleteLater();
        TrackLinks &links = m_controller->trackLinks();
        const TrackLinks::ImportedTracks imported = links.importFiles(reading->result());
        const QList<MySingleFolder *> folders = foldersOnShow();
        if (!imported.keys.isEmpty())
            links.linkTracks(folders, imported.keys);
        QString message = imported.keys.isEmpty()
                              ? tr("No new track in the GPX files.")
                              : tr("Linked %n track(s): %1 item(s) placed.", nullptr, int(imported.keys.size()))
                                    .arg(TrackLinks::placedBy(folders, imported.keys));
        const QString zone = imported.keys.isEmpty() ? QString() : m_controller->tracks().trackTimeZone(imported.keys.first());
        if (!TrackLinks::trackZoneChanges(folders, zone).isEmpty())
            message += QLatin1Char(' ') + tr("The track began in %1 and the camera wrote no time zone: \"Use "
                                             "Track's Zone\" in the Tracks list reads the dates there.")
                                              .arg(zone);
        if (!imported.problems.isEmpty())
            message += QLatin1Char(' ') + imported.problems.join(QStringLiteral("; "));
        statusBar()->showMessage(message, 15000);
        if (!imported.problems.isEmpty())
            m_controller->log().updateLogOnDiskWithErrorLog(imported.problems.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    });
    reading->setFuture(QtConcurrent::run([paths] {
        // The tracks' zones are looked up once they are read: the search data is built here,
        // off the window's thread, the first time.
        ZonePlaces::shared();
        return TrackLinks::readFiles(paths);
    }));
}

void MainWindow::importPaths(const QStringList &paths, Qt::KeyboardModifiers keys, bool addingToShelf)
{
    if (paths.isEmpty())
        return;
    // A save owns its folders until it ends.
    if (isSaving()) {
        QApplication::beep();
        return;
    }
    m_import->processDroppedFolders(paths, HeldKeys::fromModifiers(keys), addingToShelf);
}

bool MainWindow::isImporting() const
{
    return m_import->isImportInProgress();
}

void MainWindow::openFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Open Folder"));
    if (!folder.isEmpty())
        importPaths({folder}, QGuiApplication::keyboardModifiers());
}

void MainWindow::openFiles()
{
    const QStringList files = QFileDialog::getOpenFileNames(this, tr("Open Files"));
    importPaths(files, QGuiApplication::keyboardModifiers());
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!localPaths(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    if (localPaths(event->mimeData()).isEmpty() || isSaving())
        return;
    event->acceptProposedAction();
    dropPaths(event->mimeData(), event->modifiers(), false);
}

void MainWindow::dropPaths(const QMimeData *mime, Qt::KeyboardModifiers keys, bool addingToShelf)
{
    const QStringList paths = localPaths(mime);
    if (paths.isEmpty())
        return;
    // The keys that came with the drop, not those held a moment later. The import may ask
    // questions first; they wait until the file manager has seen its drop accepted.
    QTimer::singleShot(0, this, [this, paths, keys, addingToShelf] { importPaths(paths, keys, addingToShelf); });
}

void MainWindow::chooseFolderOf(MySinglePic *pic, bool adding)
{
    MySingleFolder *folder = MySingleFolder::of(*pic);
    if (!folder)
        return;
    QList<MySingleFolder *> folders = adding && !showsAllFolders() ? selectedFolders() : QList<MySingleFolder *>();
    if (!folders.contains(folder))
        folders.append(folder);
    selectFolders(folders);
    m_timeline->selectPic(pic);
}

void MainWindow::folderAdded(const MySingleFolder *folder)
{
    // Subfolders stand right after their parent, not at the end.
    m_folderList->insertFolder(int(m_import->droppedFolders().indexOf(folder)), folder);
    m_pages->setCurrentIndex(FoldersPage);
    if (!m_folderView->selectionModel()->hasSelection())
        showSelectedFolders();
    else if (showsAllFolders()) {
        m_picModel->addFolder(folder);
        m_offsetBar->showFolders(m_import->droppedFolders());
    }
    refreshListState();
}

void MainWindow::folderImported(const MySingleFolder *folder)
{
    m_folderList->folderChanged(folder);
    m_picModel->folderChanged(folder);
    m_offsetBar->refresh();
    if (!folder->importErrors.isEmpty())
        m_importErrors.append({folder->sfFolder, folder->sfFolderPath, folder->importErrors});
    m_timeline->showFolders(m_import->droppedFolders());
    refreshListState();
    // A folder restored from a kept state comes with its unsaved work.
    refreshUnsavedState();
}

void MainWindow::folderRemoved(const MySingleFolder *folder)
{
    m_picModel->removeFolder(folder);
    m_folderList->removeFolder(folder);
    m_timeline->showFolders(m_import->droppedFolders());
    if (m_folderList->folders().isEmpty())
        m_pages->setCurrentIndex(EmptyPage);
    // The folder may have been the one selected; its items may have been the selection, which
    // a model reset drops without a word.
    showSelectedFolders();
    refreshUnsavedState();
    showSelectionInSideViews();
}

void MainWindow::showProgress(const ImportProgress &progress)
{
    if (progress.foldersLeft == 0)
        return;
    const int waiting = progress.foldersLeft - 1;
    const QString text = waiting > 0
                             ? tr("Importing “%1” (folders waiting: %2)").arg(progress.folderName).arg(waiting)
                             : tr("Importing “%1”").arg(progress.folderName);
    m_progress->showProgress(text, int(progress.stepsDone), int(progress.stepsTotal));
    // An express import cannot stop halfway through a folder, but the folders waiting can.
    m_progress->setCancellable(progress.canAbort || waiting > 0);
}

void MainWindow::importEnded()
{
    m_progress->hide();
    m_offsetBar->refresh();
    refreshUnsavedState();
    if (!m_importErrors.isEmpty()) {
        auto *report = new ImportErrorsDialog(m_importErrors, this);
        report->setAttribute(Qt::WA_DeleteOnClose);
        report->open();
        m_importErrors.clear();
    }
    Q_EMIT importsFinished();
}

bool MainWindow::showsAllFolders() const
{
    const QModelIndexList rows = m_folderView->selectionModel()->selectedRows();
    return rows.isEmpty()
           || std::any_of(rows.cbegin(), rows.cend(),
                          [](const QModelIndex &row) { return FolderListModel::isAllFoldersRow(row.row()); });
}

void MainWindow::showSelectedFolders()
{
    // A click beside the rows clears the selection; the list then stands for all folders, and
    // the sidebar says so.
    if (!m_folderView->selectionModel()->hasSelection() && !m_folderList->folders().isEmpty()) {
        m_folderView->selectionModel()->select(m_folderList->index(0, 0),
                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
        return;
    }
    m_timeline->raiseFolders(showsAllFolders() ? QList<MySingleFolder *>() : selectedFolders());
    if (showsAllFolders()) {
        m_picModel->showFolders(m_folderList->folders());
        m_offsetBar->showFolders(m_import->droppedFolders());
        setTitle(tr("All Folders"));
        refreshListState();
        return;
    }
    QList<const MySingleFolder *> selected;
    for (const MySingleFolder *folder : m_folderList->folders())
        if (m_folderView->selectionModel()->isRowSelected(m_folderList->rowOf(folder)))
            selected.append(folder);
    m_picModel->showFolders(selected);
    m_offsetBar->showFolders(selectedFolders());
    setTitle(selected.size() == 1 ? selected.first()->sfFolder
                                  : tr("Folders: %1").arg(QLocale().toString(selected.size())));
    refreshListState();
}

void MainWindow::refreshListState()
{
    const QList<const MySingleFolder *> &shownFolders = m_picModel->shownFolders();
    // Which folder an item is in matters only while more than one is on show.
    m_picView->setColumnHidden(PicTableModel::FolderColumn, shownFolders.size() < 2);
    const int shown = m_picModel->rowCount();
    // An empty list says why rather than look broken.
    const bool importing = std::any_of(shownFolders.cbegin(), shownFolders.cend(),
                                       [](const MySingleFolder *folder) { return folder->sfPics < 0; });
    m_emptyNote->setText(importing ? tr("Importing…") : tr("No photos or movies here"));
    m_emptyNote->setVisible(shown == 0);
    m_editActions->refresh();
    const int folders = int(m_folderList->folders().size());
    m_summary->setText(folders == 0 ? QString()
                                    : tr("Items: %1  ·  Folders: %2")
                                          .arg(QLocale().toString(shown), QLocale().toString(folders)));
}

QList<MySingleFolder *> MainWindow::selectedFolders() const
{
    QList<MySingleFolder *> selected;
    for (MySingleFolder *folder : m_import->droppedFolders())
        if (m_folderView->selectionModel()->isRowSelected(m_folderList->rowOf(folder)))
            selected.append(folder);
    return selected;
}

void MainWindow::setTitle(const QString &title)
{
    // "[*]" is where the window shows that changes are not saved yet.
    setWindowTitle(title + QStringLiteral("[*]"));
}

QList<MySingleFolder *> MainWindow::foldersOnShow() const
{
    return showsAllFolders() ? m_import->droppedFolders() : selectedFolders();
}

void MainWindow::selectFolders(const QList<MySingleFolder *> &folders)
{
    QItemSelection rows;
    for (const MySingleFolder *folder : folders) {
        const QModelIndex row = m_folderList->index(m_folderList->rowOf(folder), 0);
        rows.select(row, row);
    }
    if (!rows.isEmpty())
        m_folderView->selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void MainWindow::connectController()
{
    connect(m_editActions, &EditActions::stepFoldersToShow, this, &MainWindow::selectFolders);
    connect(m_controller.get(), &AppController::reloadThumbs, this, &MainWindow::datesChanged);
    connect(m_controller.get(), &AppController::changedFolderEditMode, this,
            [this](MySingleFolder *folder) { datesChanged({folder}); });
    connect(m_controller.get(), &AppController::dateChangeRefused, this, &QApplication::beep);
    connect(m_controller.get(), &AppController::watchLimitReached, this, [this](const QString &path) {
        statusBar()->showMessage(tr("The system watches no more folders: changes made to %1 by other programs "
                                    "are found only when saving.")
                                     .arg(path),
                                 15000);
    });
}

void MainWindow::datesChanged(const QList<MySingleFolder *> &folders)
{
    for (const MySingleFolder *folder : folders) {
        m_picModel->folderChanged(folder);
        m_folderList->folderChanged(folder);
    }
    m_timeline->rebuild();
    m_offsetBar->refresh();
    m_editActions->refresh();
    refreshUnsavedState();
    showSelectionInSideViews();
}

void MainWindow::connectTimeline()
{
    const auto handleDrags = [this](MyTimelineView *view) {
        auto *handler = new TimelineDragHandler(*view, m_controller->dateChanges(), m_controller->uManager(),
                                                m_prefs.integerForKey(QStringLiteral("dragGapOuterEdges")));
        connect(handler, &TimelineDragHandler::dragGapOuterEdgesChanged, this,
                [this](qint64 index) { m_prefs.setInteger(QStringLiteral("dragGapOuterEdges"), index); });
        connect(handler, &TimelineDragHandler::outerEdgeStateChanged, this, [this](const QString &text) {
            if (text.isEmpty())
                statusBar()->clearMessage();
            else
                statusBar()->showMessage(text);
        });
    };
    handleDrags(&m_timeline->mainView());
    connect(m_timeline, &TimelinePane::viewAdded, this, handleDrags);
    m_sortedPics->setAcceptedPics([](const MySinglePic &pic) { return pic.indexInSource_filtered >= 0; });
    connect(m_timeline, &TimelinePane::filteredSourceChanged, this, [this] {
        m_sortedPics->refilter();
        refreshListState();
    });
    connect(m_timeline, &TimelinePane::picSelected, this, &MainWindow::showPicInList);
    showBackgroundWork();
    connect(m_timeline, &TimelinePane::folderChosen, this, &MainWindow::chooseFolderOf);
    connect(m_timeline, &TimelinePane::filesDropped, this, &MainWindow::dropPaths);
    connect(m_picView->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex &current) {
        m_timeline->selectPic(m_picModel->picAt(m_sortedPics->mapToSource(current).row()));
    });
}

void MainWindow::showBackgroundWork()
{
    auto *thumbnails = new QLabel(this);
    thumbnails->setObjectName(QStringLiteral("backgroundWork"));
    thumbnails->hide();
    statusBar()->addPermanentWidget(thumbnails);
    connect(&m_timeline->thumbs(), &MyThumbsQueue::remainingChanged, thumbnails, [thumbnails](int remaining) {
        thumbnails->setText(tr("Building thumbnails: %1 left").arg(QLocale().toString(remaining)));
        thumbnails->setVisible(remaining > 0);
    });
    connect(&m_timeline->thumbs(), &MyThumbsQueue::autoBGThumbGenerationStopped, this, [this] {
        statusBar()->showMessage(tr("The thumbnail memory is full: from now on thumbnails are built for what is "
                                    "on screen."),
                                 10000);
    });
}

void MainWindow::showPicInList(MySinglePic *pic)
{
    const int row = pic ? m_picModel->rowOf(pic) : -1;
    const QModelIndex index = row >= 0 ? m_sortedPics->mapFromSource(m_picModel->index(row, 0)) : QModelIndex();
    if (!index.isValid()) {
        m_picView->selectionModel()->clearSelection();
        return;
    }
    m_picView->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_picView->scrollTo(index);
}

void MainWindow::refreshUnsavedState()
{
    const QList<MySingleFolder *> &folders = m_import->droppedFolders();
    const bool unsaved = std::any_of(folders.cbegin(), folders.cend(), [this](const MySingleFolder *folder) {
        return folder->isUnsavedFolder() || m_controller->hasRatingsToWrite(*folder);
    });
    setWindowModified(unsaved);
    m_saveAction->setEnabled(unsaved && !isSaving() && !isImporting());
}

void MainWindow::openRenameSheet()
{
    if (isSaving() || isImporting())
        return;
    QList<MySinglePic *> pics = m_editActions->selectedPics();
    if (pics.isEmpty()) {
        for (const MySingleFolder *folder : foldersOnShow())
            pics.append(folder->sfPicDetails_fullArray);
    }
    if (pics.isEmpty())
        return;
    RenameSheet sheet(
        *m_controller, pics,
        [this](const QList<MySingleFolder *> &folders, const QStringList &problems) {
            datesChanged(folders);
            if (!problems.isEmpty())
                QMessageBox::warning(this, tr("Rename"), problems.join(QLatin1Char('\n')));
        },
        this);
    sheet.exec();
}

void MainWindow::save()
{
    if (isSaving() || isImporting())
        return;
    const QList<MySingleFolder *> unsaved = m_controller->unsavedFolders();
    if (unsaved.isEmpty())
        return;
    m_save = new SaveSession(unsaved, m_prefs, m_controller->log(),
                             [this](const MySinglePic &pic) { return thumbnailOf(pic); }, this);
    connect(m_save, &SaveSession::finished, this, [this, unsaved](bool completed) { saveEnded(unsaved, completed); });
    connect(m_save, &SaveSession::cancelledChoosing, this, &MainWindow::handBackSelection);
    m_saveAction->setEnabled(false);
    // The run's threads own the items until it ends: the list reads none of them, and the window
    // keeps its last picture.
    m_controller->saveWillStart();
    m_timeline->thumbs().setPaused(true);
    m_picModel->setItemsLocked(true);
    m_pages->setUpdatesEnabled(false);
    m_editActions->refresh();
    m_save->start();
}

void MainWindow::saveEnded(const QList<MySingleFolder *> &saved, bool completed)
{
    const bool cancelled = m_save->wasCancelled();
    m_save->deleteLater();
    m_save = nullptr;
    m_picModel->setItemsLocked(false);
    m_timeline->thumbs().setPaused(false);
    m_pages->setUpdatesEnabled(true);
    // The owner forgets what can no longer be undone and tells the views of every saved folder,
    // also of one whose failed items kept their change in separate mode.
    if (cancelled)
        m_controller->saveWasCancelled(saved);
    else
        m_controller->didSaveFolders(saved);
    Q_EMIT saveFinished();
    if (std::exchange(m_closeAfterSave, false) && completed)
        close();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // Read first: the quit command used counts for this quit only, also when it is refused.
    const QuitAnswer answer = m_states->quitAnswer(isWindowModified());
    switch (isSaving() ? QuitAnswer::Refuse : answer) {
    case QuitAnswer::Refuse:
        QApplication::beep();
        event->ignore();
        return;
    case QuitAnswer::KeepStateAndQuit:
        m_states->keepAtQuit();
        break;
    case QuitAnswer::QuitWithoutState:
        m_states->leaveNothingAtQuit();
        break;
    case QuitAnswer::Ask:
        if (!askToSaveBeforeClosing()) {
            event->ignore();
            return;
        }
        break;
    }
    m_states->lastActsAtQuit();
    event->accept();
}

// True when the window may close now.
bool MainWindow::askToSaveBeforeClosing()
{
    if (!isWindowModified())
        return true;
    QMessageBox question(QMessageBox::Warning, tr("Unsaved Changes"),
                         tr("Do you want to save the changed dates before quitting?"),
                         QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    question.setInformativeText(tr("If you don't save, your changes are kept for the next start. No file has been changed yet."));
    question.button(QMessageBox::Discard)->setText(tr("Don't Save"));
    QPushButton *leaving = question.addButton(tr("Quit Without Keeping"), QMessageBox::DestructiveRole);
    question.setDefaultButton(QMessageBox::Save);
    const int answer = question.exec();
    if (question.clickedButton() == leaving) {
        m_states->leaveNothingAtQuit();
        return true;
    }
    switch (answer) {
    case QMessageBox::Discard:
        m_states->keepAtQuit();
        return true;
    case QMessageBox::Save:
        save();
        m_closeAfterSave = isSaving();
        return false;
    default:
        return false;
    }
}

void MainWindow::showAbout()
{
    QMessageBox::about(this, tr("About Orvelle"),
                       tr("<b>Orvelle %1</b><p>Puts the dates, time zones, places and names of "
                          "your photos and movies in order.</p>")
                           .arg(QStringLiteral(ORV_VERSION)));
}

} // namespace orv

namespace orv {

// A sheet is not opened for a folder without items.
void MainWindow::openTimeZonePicker()
{
    const QList<MySingleFolder *> folders = foldersOnShow();
    if (folders.isEmpty() || folders.first()->count() == 0)
        return;
    MyTimeZonePickerController picker(m_controller->dateChanges(), *folders.first(), this);
    picker.exec();
}

} // namespace orv
