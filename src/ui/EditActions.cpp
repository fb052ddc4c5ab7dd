#include "ui/EditActions.h"

#include "app/AppController.h"
#include "app/DatePasteboard.h"
#include "core/DateDisplay.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "core/SaveSettings.h"
#include "folders/MySingleFolder.h"
#include "ui/PicSortProxy.h"
#include "ui/PicTableModel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QItemSelectionModel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QTableView>

namespace orv {

namespace {

constexpr int firstCopyTag = int(AlignTag::ExifDigitizedOld);
constexpr int lastTag = int(AlignTag::FileModificationNew);

struct AlignEntry
{
    AlignTag tag;
    const char *text;
    const char *name;
};

const AlignEntry alignEntries[] = {
    {AlignTag::MatchingGaps, QT_TRANSLATE_NOOP("EditActions", "By Matching Gaps"), "alignByMatchingGaps"},
    {AlignTag::MinimizingGaps, QT_TRANSLATE_NOOP("EditActions", "By Minimizing Gaps"), "alignByMinimizingGaps"},
    {AlignTag::Filename, QT_TRANSLATE_NOOP("EditActions", "By File Name"), "alignByFilename"},
    {AlignTag::Reversing, QT_TRANSLATE_NOOP("EditActions", "By Reversing"), "alignByReversing"},
    {AlignTag::ReversingIntervals, QT_TRANSLATE_NOOP("EditActions", "By Reversing Intervals"), "alignByReversingAlt"},
    {AlignTag::ExifDigitizedOld, QT_TRANSLATE_NOOP("EditActions", "EXIF Digitized Date (File)"), "copyExifDigitizedOld"},
    {AlignTag::ExifDigitizedNew, QT_TRANSLATE_NOOP("EditActions", "EXIF Digitized Date (New)"), "copyExifDigitizedNew"},
    {AlignTag::TiffDateTimeOld, QT_TRANSLATE_NOOP("EditActions", "TIFF Date (File)"), "copyTiffDateTimeOld"},
    {AlignTag::TiffDateTimeNew, QT_TRANSLATE_NOOP("EditActions", "TIFF Date (New)"), "copyTiffDateTimeNew"},
    {AlignTag::FileCreationOld, QT_TRANSLATE_NOOP("EditActions", "File Creation Date (File)"), "copyFileCreationOld"},
    {AlignTag::FileCreationNew, QT_TRANSLATE_NOOP("EditActions", "File Creation Date (New)"), "copyFileCreationNew"},
    {AlignTag::FileModificationOld, QT_TRANSLATE_NOOP("EditActions", "File Modification Date (File)"),
     "copyFileModificationOld"},
    {AlignTag::FileModificationNew, QT_TRANSLATE_NOOP("EditActions", "File Modification Date (New)"),
     "copyFileModificationNew"},
};

} // namespace

EditActions::EditActions(AppController &controller, QTableView &list, const PicSortProxy &rows,
                         const PicTableModel &pics, FoldersOnShow foldersOnShow, QWidget *window)
    : QObject(window),
      m_controller(controller),
      m_list(list),
      m_rows(rows),
      m_pics(pics),
      m_foldersOnShow(std::move(foldersOnShow)),
      m_window(window)
{
}

QAction *EditActions::addAction(QMenu &menu, const QString &text, const char *name, void (EditActions::*slot)())
{
    QAction *action = menu.addAction(text, this, slot);
    action->setObjectName(QLatin1String(name));
    return action;
}

void EditActions::addTo(QMenuBar &menuBar)
{
    QMenu *edit = menuBar.addMenu(tr("&Edit"));
    QUndoStack &stack = m_controller.uManager();
    QAction *undo = stack.createUndoAction(edit, tr("Undo"));
    undo->setObjectName(QStringLiteral("undoAction"));
    undo->setShortcut(QKeySequence::Undo);
    QAction *redo = stack.createRedoAction(edit, tr("Redo"));
    redo->setObjectName(QStringLiteral("redoAction"));
    // Ctrl+Y as well, the redo key of most editors, whatever the platform's own is.
    QList<QKeySequence> redoKeys = QKeySequence::keyBindings(QKeySequence::Redo);
    if (!redoKeys.contains(QKeySequence(Qt::CTRL | Qt::Key_Y)))
        redoKeys.append(QKeySequence(Qt::CTRL | Qt::Key_Y));
    redo->setShortcuts(redoKeys);
    edit->addAction(undo);
    edit->addAction(redo);
    m_undo = undo;
    m_redo = redo;
    connect(undo, &QAction::triggered, this, [this, &stack] { showStep(stack.index()); });
    connect(redo, &QAction::triggered, this, [this, &stack] { showStep(stack.index() - 1); });
    edit->addSeparator();

    m_copyDate = addAction(*edit, tr("Copy Date"), "copyDateAction", &EditActions::copyDate);
    m_copyDate->setShortcut(QKeySequence::Copy);
    m_pasteDate = addAction(*edit, tr("Paste Date…"), "pasteDateAction", &EditActions::pasteDate);
    m_pasteDate->setShortcut(QKeySequence::Paste);
    m_removeDate = addAction(*edit, tr("Remove Date"), "removeDateAction", &EditActions::removeDate);
    m_removeSelectedDates =
        addAction(*edit, tr("Remove Dates of Selection"), "removeSelectedDatesAction", &EditActions::removeSelectedDates);
    m_removeAllDates = addAction(*edit, tr("Remove All Changes"), "removeAllDatesAction", &EditActions::removeAllDates);
    edit->addSeparator();

    m_alignMenu = edit->addMenu(tr("Align"));
    m_alignMenu->setObjectName(QStringLiteral("alignMenu"));
    m_alignMenu->menuAction()->setObjectName(QStringLiteral("alignAction"));
    m_alignMenu->setToolTipsVisible(true);
    QMenu *copyMenu = nullptr;
    for (const AlignEntry &entry : alignEntries) {
        if (int(entry.tag) == firstCopyTag) {
            copyMenu = m_alignMenu->addMenu(tr("Copy Other File Date"));
            copyMenu->setObjectName(QStringLiteral("copyOtherFileDateMenu"));
            copyMenu->setToolTipsVisible(true);
        }
        QMenu &menu = copyMenu ? *copyMenu : *m_alignMenu;
        QAction *action = menu.addAction(QCoreApplication::translate("EditActions", entry.text));
        action->setObjectName(QLatin1String(entry.name));
        connect(action, &QAction::triggered, this, [this, tag = int(entry.tag)] { realign(tag); });
        m_alignActions.append(action);
    }
    m_collisionInfo = new QAction(tr("Identical times: the order of the items among them is undecided."), this);
    m_collisionInfo->setEnabled(false);
    connect(m_alignMenu, &QMenu::aboutToShow, this, &EditActions::refreshAlignMenu);
    edit->addSeparator();

    m_separateMode = addAction(*edit, tr("Change Items One by One"), "separateModeAction",
                               &EditActions::toggleSeparateMode);
    m_separateMode->setCheckable(true);
    m_separateMode->setToolTip(tr("Each item takes its own change instead of the folder offset"));
    m_previousChange = addAction(*edit, tr("Previous Changed Item"), "previousChangeAction", &EditActions::previousChange);
    m_previousChange->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_BracketLeft));
    m_nextChange = addAction(*edit, tr("Next Changed Item"), "nextChangeAction", &EditActions::nextChange);
    m_nextChange->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_BracketRight));

    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &EditActions::refresh);
}

QList<MySinglePic *> EditActions::selectedPics() const
{
    QList<MySinglePic *> pics;
    if (!m_list.selectionModel())
        return pics;
    for (const QModelIndex &row : m_list.selectionModel()->selectedRows())
        if (MySinglePic *pic = m_pics.picAt(m_rows.mapToSource(row).row()))
            pics.append(pic);
    return pics;
}

MySinglePic *EditActions::selectedPic() const
{
    const QModelIndex current = m_list.currentIndex();
    if (current.isValid() && m_list.selectionModel()->isRowSelected(current.row()))
        return m_pics.picAt(m_rows.mapToSource(current).row());
    const QList<MySinglePic *> pics = selectedPics();
    return pics.isEmpty() ? nullptr : pics.first();
}

void EditActions::selectPics(const QList<MySinglePic *> &pics, MySinglePic *current)
{
    QItemSelection selection;
    for (const MySinglePic *pic : pics) {
        const int row = m_pics.rowOf(pic);
        if (row < 0)
            continue;
        const QModelIndex index = m_rows.mapFromSource(m_pics.index(row, 0));
        selection.select(index, index);
    }
    QItemSelectionModel &model = *m_list.selectionModel();
    model.select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (current && m_pics.rowOf(current) >= 0) {
        const QModelIndex index = m_rows.mapFromSource(m_pics.index(m_pics.rowOf(current), 0));
        model.setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        m_list.scrollTo(index);
    }
}

// The user sees what was undone or redone: its folders on show and its items selected.
void EditActions::showStep(int commandIndex)
{
    const auto *step = dynamic_cast<const DateChangeCommand *>(m_controller.uManager().command(commandIndex));
    if (!step)
        return;
    const QList<MySingleFolder *> folders = step->folders();
    const QList<MySingleFolder *> onShow = m_foldersOnShow();
    const auto *items = dynamic_cast<const PicOffsetCommand *>(step);
    if (!items || !std::all_of(folders.cbegin(), folders.cend(), [&onShow](MySingleFolder *f) { return onShow.contains(f); }))
        Q_EMIT stepFoldersToShow(folders);
    if (items)
        selectPics(items->pics(), items->pics().value(0));
}

bool EditActions::isSeparateMode(const QList<MySinglePic *> &pics) const
{
    return !pics.isEmpty() && std::all_of(pics.cbegin(), pics.cend(), [](const MySinglePic *pic) {
        const MySingleFolder *folder = MySingleFolder::of(*pic);
        return folder && folder->sfEditMode == MySingleFolder::EditSeparately && !folder->isEXIFIgnored();
    });
}

void EditActions::refresh()
{
    if (!m_copyDate)
        return;
    const QList<MySinglePic *> pics = selectedPics();
    MySinglePic *selected = selectedPic();
    const bool blocked = m_controller.isStandardBlocked();
    const bool separate = !blocked && isSeparateMode(pics);

    m_copyDate->setEnabled(selected != nullptr);
    m_pasteDate->setEnabled(!blocked && selected && DatePasteboard::hasPasteDate(QApplication::clipboard()->mimeData()));
    m_removeDate->setEnabled(separate && selected && selected->singlePicModification != 0.0);
    m_removeSelectedDates->setEnabled(separate && std::any_of(pics.cbegin(), pics.cend(), [](const MySinglePic *p) {
                                          return p->singlePicModification != 0.0;
                                      }));
    // The rules themselves say when they apply; a disabled command says why in its tooltip.
    for (int tag = 1; tag <= lastTag; ++tag) {
        const AlignTag rule = isCopyOtherFileDate(AlignTag(tag)) ? AlignTag::ReversingIntervals : AlignTag(tag);
        const QString reason = DateAlignment::whyNotAlign(rule, pics, selected, blocked);
        m_alignActions[tag - 1]->setEnabled(reason.isEmpty());
        m_alignActions[tag - 1]->setToolTip(reason);
    }
    const QString alignReason = DateAlignment::whyAlignIsOff(pics, selected, blocked);
    m_alignMenu->setEnabled(alignReason.isEmpty());
    m_alignMenu->menuAction()->setToolTip(alignReason.isEmpty()
                                              ? tr("Align the selected items by a rule: each takes its own date")
                                              : tr("Align is off: %1").arg(alignReason));

    const QList<MySingleFolder *> folders = m_foldersOnShow();
    m_removeAllDates->setEnabled(!blocked && std::any_of(folders.cbegin(), folders.cend(), [](const MySingleFolder *f) {
        return f->isTogetherDateUIModified() || f->singlePicModeImages > 0;
    }));
    const bool switchable = !blocked && !folders.isEmpty()
                            && std::all_of(folders.cbegin(), folders.cend(), [](const MySingleFolder *f) {
                                   return f->count() > 0 && !f->isEXIFIgnored();
                               });
    m_separateMode->setEnabled(switchable);
    m_separateMode->setChecked(!folders.isEmpty() && std::all_of(folders.cbegin(), folders.cend(), [](const MySingleFolder *f) {
                                   return f->sfEditMode == MySingleFolder::EditSeparately;
                               }));
    const bool anyChanged = std::any_of(folders.cbegin(), folders.cend(), [](const MySingleFolder *f) {
        return f->sfEditMode == MySingleFolder::EditSeparately && f->singlePicModeImages > 0;
    });
    m_previousChange->setEnabled(anyChanged);
    m_nextChange->setEnabled(anyChanged);
}

// Colliding stamps turn minimizing into separating, and the orders of name and reversal into
// guesses: the menu says so while the selection holds them.
void EditActions::refreshAlignMenu()
{
    refresh();
    const QList<MySinglePic *> sorted = DateAlignment::sortedThumbsArray(selectedPics());
    const bool collision = DateAlignment::areThereIdenticalTimesIn(sorted);
    m_alignActions[int(AlignTag::MinimizingGaps) - 1]->setText(collision ? tr("Separate Identical Times")
                                                                         : tr("By Minimizing Gaps"));
    for (const AlignTag tag : {AlignTag::Filename, AlignTag::Reversing}) {
        QFont font = m_alignActions[int(tag) - 1]->font();
        font.setBold(collision);
        m_alignActions[int(tag) - 1]->setFont(font);
    }
    m_alignMenu->removeAction(m_collisionInfo);
    if (collision)
        m_alignMenu->addAction(m_collisionInfo);

    const QList<MySinglePic *> selection = selectedPics();
    const bool copyEnabled = m_alignActions[firstCopyTag - 1]->isEnabled();
    const QList<AlignTag> offered =
        copyEnabled ? DateAlignment::validateForAlignByCopyingOtherFileDate(
                          selection, SaveSettings::fromPreferences(m_controller.prefs(), currentInstant()).options)
                    : QList<AlignTag>();
    for (int tag = firstCopyTag; tag <= lastTag; ++tag)
        m_alignActions[tag - 1]->setEnabled(offered.contains(AlignTag(tag)));
    if (QMenu *copyMenu = m_alignMenu->findChild<QMenu *>(QStringLiteral("copyOtherFileDateMenu"))) {
        copyMenu->setTitle(selection.size() < 2 ? tr("Copy Other Date of the File")
                                                : tr("Copy Other Date of Each File"));
        copyMenu->setEnabled(!offered.isEmpty());
    }
}

void EditActions::copyDate()
{
    if (const MySinglePic *pic = selectedPic()) {
        if (std::unique_ptr<QMimeData> mime = DatePasteboard::copy(*pic))
            QApplication::clipboard()->setMimeData(mime.release());
    }
}

// Until the date popover exists, a pasted date is confirmed here before it reaches the model.
void EditActions::pasteDate()
{
    MySinglePic *selected = selectedPic();
    const OptionalDate date = DatePasteboard::pastedDate(QApplication::clipboard()->mimeData());
    if (!selected || !date)
        return;
    const QString shown = DateDisplay::localDateTime(date, TimeZone::systemZone());
    QMessageBox question(QMessageBox::Question, tr("Paste Date"),
                         tr("Give the selected item the date %1?").arg(shown), QMessageBox::Ok | QMessageBox::Cancel,
                         m_window);
    question.setObjectName(QStringLiteral("pasteDateQuestion"));
    if (question.exec() == QMessageBox::Ok)
        m_controller.dateChanges().changeDatesToDate(selected, selectedPics(), *date);
}

void EditActions::removeDate()
{
    m_controller.dateChanges().removeDate(selectedPic(), selectedPics());
}

void EditActions::removeSelectedDates()
{
    m_controller.dateChanges().removeSelectedDates(selectedPics(), selectedPic());
}

// The reset of the mode the folders on show are in.
void EditActions::removeAllDates()
{
    const QList<MySingleFolder *> folders = m_foldersOnShow();
    QList<MySingleFolder *> together, separate;
    for (MySingleFolder *folder : folders)
        (folder->sfEditMode == MySingleFolder::EditTogether ? together : separate).append(folder);
    if (!together.isEmpty())
        m_controller.dateChanges().dateValuesReset(together);
    if (!separate.isEmpty())
        m_controller.dateChanges().dateValuesResetSingleMode(separate);
}

void EditActions::realign(int tag)
{
    const QList<MySinglePic *> selection = selectedPics();
    MySinglePic *main = selectedPic();
    const NewDateOptions options = SaveSettings::fromPreferences(m_controller.prefs(), currentInstant()).options;
    m_controller.dateChanges().realignSelection(AlignTag(tag), selection, main, options);
    selectPics(selection, main);
}

void EditActions::toggleSeparateMode()
{
    const bool separate = m_separateMode->isChecked();
    m_controller.dateChanges().changeEditMode(m_foldersOnShow(), separate ? MySingleFolder::EditSeparately
                                                                          : MySingleFolder::EditTogether);
    // In folder mode the folder moves as a whole: a selection of several items means nothing.
    if (!separate) {
        MySinglePic *selected = selectedPic();
        selectPics(selected ? QList<MySinglePic *>{selected} : QList<MySinglePic *>(), selected);
    }
}

void EditActions::previousChange()
{
    goToChange(-1);
}

void EditActions::nextChange()
{
    goToChange(1);
}

void EditActions::goToChange(int step)
{
    const int rows = m_rows.rowCount();
    int row = m_list.currentIndex().isValid() ? m_list.currentIndex().row() : (step > 0 ? -1 : rows);
    for (row += step; row >= 0 && row < rows; row += step) {
        MySinglePic *pic = m_pics.picAt(m_rows.mapToSource(m_rows.index(row, 0)).row());
        if (pic && pic->spSingleFolder->sfEditMode == MySingleFolder::EditSeparately && pic->singlePicModification != 0.0) {
            selectPics({pic}, pic);
            return;
        }
    }
    QApplication::beep();
}

} // namespace orv
