#include "ui/StateTrayWindow.h"

#include "core/Preferences.h"

#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QIcon>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace orv {

using namespace Qt::StringLiterals;

namespace {

const QString subfolderKey = u"stateTraySubfolderPath"_s;
const QString sortTypeKey = u"stateTraySortType"_s;
const QString sortDirectionKey = u"stateTraySortDirection"_s;
constexpr int previewSize = 96;
// The folder of states brought back after a crash is named for the file system; the tray shows
// it by its meaning.
QString shownFolderName(const QString &name)
{
    return name == StateTray::toVerifyName ? StateTrayWindow::tr("States to Verify") : name;
}

QString dateText(const OptionalDate &date)
{
    return date ? QLocale().toString(QDateTime::fromSecsSinceEpoch(qint64(date->wholeSeconds())), QLocale::ShortFormat)
                : QString();
}

} // namespace

StateTrayWindow::StateTrayWindow(StateTray &tray, Preferences &prefs, QWidget *parent)
    : QDialog(parent), m_tray(tray), m_prefs(prefs), m_location(new QLabel(this)), m_list(new QListWidget(this)),
      m_sortType(new QComboBox(this)), m_sortDirection(new QToolButton(this)),
      m_open(new QPushButton(tr("Open"), this)), m_rename(new QPushButton(tr("Rename…"), this)),
      m_note(new QPushButton(tr("Note…"), this)), m_delete(new QPushButton(tr("Move to Trash"), this))
{
    setObjectName(u"stateTrayWindow"_s);
    setWindowTitle(tr("State Tray"));
    m_list->setObjectName(u"stateTrayList"_s);
    m_list->setIconSize(QSize(previewSize, previewSize));
    m_list->setSpacing(2);
    m_list->setWordWrap(true);

    m_sortType->addItem(tr("Name"), 1);
    m_sortType->addItem(tr("First Date"), 2);
    m_sortType->addItem(tr("Last Date"), 3);
    m_sortType->addItem(tr("Kept On"), 4);
    m_sortType->setCurrentIndex(std::max(0, m_sortType->findData(int(m_prefs.integerForKey(sortTypeKey)))));
    m_sortDirection->setCheckable(true);
    m_sortDirection->setChecked(m_prefs.integerForKey(sortDirectionKey) != 0);
    m_sortDirection->setToolTip(tr("Ascending"));
    m_sortDirection->setArrowType(m_sortDirection->isChecked() ? Qt::UpArrow : Qt::DownArrow);

    auto *store = new QPushButton(tr("Keep Working Set"), this);
    store->setObjectName(u"stateTrayStore"_s);
    store->setToolTip(tr("Keeps the folders and every unsaved change here, and empties the window"));
    auto *newFolder = new QPushButton(tr("New Folder…"), this);
    m_open->setObjectName(u"stateTrayOpen"_s);
    m_open->setDefault(true);

    auto *top = new QHBoxLayout;
    top->addWidget(m_location, 1);
    top->addWidget(new QLabel(tr("Sort by"), this));
    top->addWidget(m_sortType);
    top->addWidget(m_sortDirection);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(store);
    buttons->addWidget(newFolder);
    buttons->addStretch(1);
    for (QPushButton *button : {m_rename, m_note, m_delete, m_open})
        buttons->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    resize(560, 620);

    connect(store, &QPushButton::clicked, this, [this] { Q_EMIT storeRequested(currentFolderPath()); });
    connect(newFolder, &QPushButton::clicked, this, &StateTrayWindow::makeFolder);
    connect(m_open, &QPushButton::clicked, this, &StateTrayWindow::rowActivated);
    connect(m_list, &QListWidget::itemActivated, this, &StateTrayWindow::rowActivated);
    connect(m_rename, &QPushButton::clicked, this, &StateTrayWindow::renameSelected);
    connect(m_note, &QPushButton::clicked, this, &StateTrayWindow::editNoteOfSelected);
    connect(m_delete, &QPushButton::clicked, this, &StateTrayWindow::deleteSelected);
    connect(m_sortType, &QComboBox::currentIndexChanged, this, &StateTrayWindow::sortChanged);
    connect(m_sortDirection, &QToolButton::toggled, this, &StateTrayWindow::sortChanged);
    connect(m_list, &QListWidget::itemSelectionChanged, this, &StateTrayWindow::selectionChanged);
    refreshData();
}

QString StateTrayWindow::currentFolderPath() const
{
    const QString root = m_tray.appStateTrayRootPath();
    const QString path = QDir::cleanPath(root + u'/' + m_prefs.stringForKey(subfolderKey));
    // A remembered folder that went away, or one outside the tray, shows the root.
    return QFileInfo(path).isDir() && (path == root || m_tray.isUnderRoot(path)) ? path : root;
}

void StateTrayWindow::showFolder(const QString &path)
{
    const QString relative = QDir(m_tray.appStateTrayRootPath()).relativeFilePath(path);
    m_prefs.setValue(subfolderKey, relative == u"."_s ? u"/"_s : relative);
    refreshData();
}

void StateTrayWindow::refreshData()
{
    const QString folder = currentFolderPath();
    const QString relative = QDir(m_tray.appStateTrayRootPath()).relativeFilePath(folder);
    m_location->setText(relative == u"."_s ? tr("State Tray") : tr("State Tray / %1").arg(shownFolderName(relative)));
    QList<TrayRow> all = m_tray.refreshData(folder);
    QList<TrayRow> folders, states;
    for (TrayRow &row : all)
        (row.type == TrayRow::Type::State ? states : folders).append(std::move(row));
    StateTray::sortStateArray(folders, 101, true);
    StateTray::sortStateArray(states, m_sortType->currentData().toInt(), m_sortDirection->isChecked());
    m_rows = folders + states;
    m_list->clear();
    for (const TrayRow &row : std::as_const(m_rows))
        addRow(row);
    selectionChanged();
}

QString StateTrayWindow::previewText(const TrayRow &row)
{
    const TrayPreview &preview = row.preview;
    QStringList lines{row.sortName};
    QStringList counts{tr("%n folder(s)", nullptr, int(preview.folderCount))};
    if (preview.images)
        counts.append(tr("%n photo(s)", nullptr, int(preview.images)));
    if (preview.movies)
        counts.append(tr("%n movie(s)", nullptr, int(preview.movies)));
    if (preview.unsavedChanges)
        counts.append(tr("%n unsaved", nullptr, int(preview.unsavedChanges)));
    if (preview.keepers)
        counts.append(tr("%n keeper(s)", nullptr, int(preview.keepers)));
    lines.append(counts.join(u" · "_s));
    if (preview.fromDate)
        lines.append(tr("%1 – %2").arg(dateText(preview.fromDate), dateText(preview.toDate)));
    if (preview.isUndeletedState)
        lines.append(tr("Brought back after the program ended unexpectedly"));
    return lines.join(u'\n');
}

void StateTrayWindow::addRow(const TrayRow &row)
{
    auto *item = new QListWidgetItem(m_list);
    switch (row.type) {
    case TrayRow::Type::Superfolder:
        item->setText(tr("Up"));
        item->setIcon(style()->standardIcon(QStyle::SP_FileDialogToParent));
        break;
    case TrayRow::Type::Subfolder:
        item->setText(shownFolderName(row.sortName));
        item->setIcon(style()->standardIcon(QStyle::SP_DirIcon));
        break;
    case TrayRow::Type::State: {
        item->setText(previewText(row));
        item->setToolTip(row.preview.additionalInfos);
        QPixmap image(QDir(row.path).filePath(StateFiles::previewImageName));
        if (!image.isNull())
            item->setIcon(QIcon(image.scaled(previewSize, previewSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
        break;
    }
    }
}

const TrayRow *StateTrayWindow::selectedRow() const
{
    const int row = m_list->currentRow();
    return row >= 0 && row < m_rows.size() && m_list->currentItem()->isSelected() ? &m_rows[row] : nullptr;
}

void StateTrayWindow::selectionChanged()
{
    const TrayRow *row = selectedRow();
    const bool isState = row && row->type == TrayRow::Type::State;
    m_open->setEnabled(row != nullptr);
    m_rename->setEnabled(isState);
    m_note->setEnabled(isState);
    m_delete->setEnabled(row && row->type != TrayRow::Type::Superfolder);
}

void StateTrayWindow::rowActivated()
{
    const TrayRow *row = selectedRow();
    if (!row)
        return;
    if (row->type == TrayRow::Type::State)
        Q_EMIT openRequested(row->path);
    else
        showFolder(QDir::cleanPath(row->path));
}

void StateTrayWindow::renameSelected()
{
    const TrayRow *row = selectedRow();
    if (!row || row->type != TrayRow::Type::State)
        return;
    bool ok = false;
    const QString title = QInputDialog::getText(this, tr("Rename State"), tr("Title of the state:"), QLineEdit::Normal,
                                                row->sortName, &ok);
    if (!ok)
        return;
    if (const QString problem = m_tray.setUserData(row->path, title.trimmed(), row->preview.additionalInfos);
        !problem.isEmpty())
        QMessageBox::warning(this, tr("State Not Renamed"), problem);
    refreshData();
}

void StateTrayWindow::editNoteOfSelected()
{
    const TrayRow *row = selectedRow();
    if (!row || row->type != TrayRow::Type::State)
        return;
    bool ok = false;
    const QString note = QInputDialog::getMultiLineText(this, tr("Note"), tr("Note on the state:"),
                                                        row->preview.additionalInfos, &ok);
    if (!ok)
        return;
    if (const QString problem = m_tray.setUserData(row->path, row->preview.altFolderName, note); !problem.isEmpty())
        QMessageBox::warning(this, tr("Note Not Kept"), problem);
    refreshData();
}

void StateTrayWindow::deleteSelected()
{
    const TrayRow *row = selectedRow();
    if (!row || row->type == TrayRow::Type::Superfolder)
        return;
    if (const QString problem = m_tray.deleteStateAtPath(row->path); !problem.isEmpty())
        QMessageBox::warning(this, tr("Not Moved to the Trash"), problem);
    refreshData();
}

void StateTrayWindow::makeFolder()
{
    bool ok = false;
    const QString name = QInputDialog::getText(this, tr("New Folder"), tr("Name of the folder:"), QLineEdit::Normal,
                                               QString(), &ok)
                             .trimmed();
    if (!ok || name.isEmpty())
        return;
    if (name.contains(u'/') || name.startsWith(u'.') || !QDir(currentFolderPath()).mkdir(name))
        QMessageBox::warning(this, tr("New Folder"), tr("A folder named “%1” cannot be made here.").arg(name));
    refreshData();
}

void StateTrayWindow::sortChanged()
{
    m_prefs.setValue(sortTypeKey, m_sortType->currentData().toInt());
    m_prefs.setValue(sortDirectionKey, m_sortDirection->isChecked() ? 1 : 0);
    m_sortDirection->setArrowType(m_sortDirection->isChecked() ? Qt::UpArrow : Qt::DownArrow);
    refreshData();
}

} // namespace orv
