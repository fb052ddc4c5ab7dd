// The window's shell around the timeline: toolbar, side views, keyboard help, and the selection
// they show.

#include "ui/MainWindow.h"

#include "core/MySinglePic.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"
#include "ui/EditActions.h"
#include "ui/InfoView.h"
#include "ui/KeyboardHelp.h"
#include "ui/MapWindow.h"
#include "ui/PicTableModel.h"
#include "ui/PreviewsBar.h"
#include "ui/TimelinePane.h"
#include "ui/TrackListView.h"

#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>

namespace orv {

namespace {

// The theme's icon where the desktop has one, the style's own otherwise.
QIcon iconFor(const QWidget &window, const char *themeName, QStyle::StandardPixmap fallback)
{
    return QIcon::fromTheme(QLatin1String(themeName), window.style()->standardIcon(fallback));
}

} // namespace

void MainWindow::buildToolBar()
{
    QToolBar *bar = addToolBar(tr("Main"));
    bar->setObjectName(QStringLiteral("mainToolBar"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [&](const char *name, const char *themeName, QStyle::StandardPixmap fallback) {
        QAction *action = findChild<QAction *>(QLatin1String(name));
        action->setIcon(iconFor(*this, themeName, fallback));
        bar->addAction(action);
        return action;
    };
    add("openFolderAction", "document-open", QStyle::SP_DirOpenIcon);
    add("saveAction", "document-save", QStyle::SP_DialogSaveButton);
    bar->addSeparator();
    m_editActions->undoAction()->setIcon(iconFor(*this, "edit-undo", QStyle::SP_ArrowBack));
    m_editActions->redoAction()->setIcon(iconFor(*this, "edit-redo", QStyle::SP_ArrowForward));
    // Steady labels; the tooltip names the step.
    m_editActions->undoAction()->setIconText(tr("Undo"));
    m_editActions->redoAction()->setIconText(tr("Redo"));
    bar->addAction(m_editActions->undoAction());
    bar->addAction(m_editActions->redoAction());
    bar->addSeparator();
    QAction *align = m_editActions->alignMenu()->menuAction();
    align->setIcon(iconFor(*this, "format-justify-fill", QStyle::SP_FileDialogListView));
    bar->addAction(align);
    // The whole button opens the rules; the reason it is off shows in its tooltip.
    if (auto *button = qobject_cast<QToolButton *>(bar->widgetForAction(align)))
        button->setPopupMode(QToolButton::InstantPopup);
    add("timeZonePickerAction", "preferences-system-time", QStyle::SP_ComputerIcon);
}

void MainWindow::buildSideViews(QMenu &viewMenu)
{
    const auto thumbnail = [this](const MySinglePic &pic) { return thumbnailOf(pic); };
    m_infoView = new InfoView(m_prefs, *m_picModel, this);
    m_previewsBar = new PreviewsBar(thumbnail, this);
    connect(m_previewsBar, &PreviewsBar::picClicked, this, [this](MySinglePic *pic) {
        m_editActions->selectPics({pic}, pic);
    });

    auto *info = new QDockWidget(tr("Info"), this);
    info->setObjectName(QStringLiteral("infoDock"));
    info->setWidget(m_infoView);
    addDockWidget(Qt::RightDockWidgetArea, info);
    auto *previews = new QDockWidget(tr("Previews"), this);
    previews->setObjectName(QStringLiteral("previewsDock"));
    previews->setWidget(m_previewsBar);
    addDockWidget(Qt::BottomDockWidgetArea, previews);
    resizeDocks({info}, {420}, Qt::Horizontal);
    auto *tracks = new QDockWidget(tr("Tracks"), this);
    tracks->setObjectName(QStringLiteral("tracksDock"));
    tracks->setWidget(new TrackListView(
        *m_controller, [this] { return foldersOnShow(); }, [this] { return m_editActions->selectedPics(); }, tracks));
    addDockWidget(Qt::BottomDockWidgetArea, tracks);
    tabifyDockWidget(previews, tracks);
    previews->raise();

    const QList<QToolBar *> bars = findChildren<QToolBar *>();
    for (QToolBar *bar : bars)
        viewMenu.addAction(bar->toggleViewAction());
    viewMenu.addAction(info->toggleViewAction());
    viewMenu.addAction(previews->toggleViewAction());
    viewMenu.addAction(tracks->toggleViewAction());
    info->toggleViewAction()->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_I));
}

void MainWindow::showKeyboardHelp()
{
    if (auto *open = findChild<KeyboardHelp *>()) {
        open->raise();
        open->activateWindow();
        return;
    }
    auto *help = new KeyboardHelp(*menuBar(), this);
    help->setAttribute(Qt::WA_DeleteOnClose);
    help->show();
}

QImage MainWindow::thumbnailOf(const MySinglePic &pic) const
{
    const ThumbEntry *entry = m_timeline->thumbs().cache().entry(pic.sessionUniqueId);
    // The side views show thumbnails at about the strip's middle size.
    constexpr int sideViewSide = 126;
    return entry ? entry->decodedForSide(sideViewSide) : QImage();
}

void MainWindow::showSelectionInSideViews()
{
    if (isSaving())
        return;
    m_infoView->showPic(m_editActions->selectedPic());
    m_previewsBar->showPics(selection());
    if (auto *map = findChild<MapWindow *>(QStringLiteral("mapWindow"), Qt::FindDirectChildrenOnly))
        map->refresh();
}

QList<MySinglePic *> MainWindow::selection() const
{
    const QList<MySinglePic *> listed = m_editActions->selectedPics();
    // Several items chosen on the strip are the selection too, in the strip's order.
    const QSet<MySinglePic *> &onStrip = m_timeline->controller().theTimelineView_1().multiSelection();
    QList<MySinglePic *> chosen = onStrip.size() > listed.size() ? onStrip.values() : listed;
    std::sort(chosen.begin(), chosen.end(),
              [](const MySinglePic *a, const MySinglePic *b) { return a->indexInSource_full < b->indexInSource_full; });
    return chosen;
}

void MainWindow::handBackSelection(const QList<MySinglePic *> &pics)
{
    m_editActions->selectPics(pics, pics.first());
    m_timeline->selectPics(pics, pics.first());
    showSelectionInSideViews();
}

} // namespace orv
