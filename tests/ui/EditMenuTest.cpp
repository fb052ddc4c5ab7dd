// The real window, offscreen: an offset, an alignment and a removal are each undone and redone
// from the Edit menu, and the list shows every state; during a save the list reads no item and
// nothing changes, and afterwards nothing of the saved folder can be undone.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "ui/FolderListModel.h"
#include "ui/PicTableModel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QSpinBox>
#include <QTableView>
#include <QToolButton>
#include <QTreeView>
#include <QDir>
#include <QMenu>

using namespace orv;
using namespace orv::test;

namespace {

class EditMenuTest : public WindowFixture
{
protected:
    void importThree()
    {
        writeJpeg(QStringLiteral("a"), "2024:05:01 10:00:00");
        writeJpeg(QStringLiteral("b"), "2024:05:01 10:00:01");
        writeJpeg(QStringLiteral("c"), "2024:05:01 10:10:00");
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
        ASSERT_EQ(window->picModel().rowCount(), 3);
    }

    QAction &action(const char *name) const
    {
        auto *found = window->findChild<QAction *>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

    // The list's times of day, in row order (the list sorts by date).
    QStringList times() const
    {
        QStringList shown;
        for (const QString &cell : shownColumn(PicTableModel::DateColumn))
            shown.append(cell.mid(11, 8));
        return shown;
    }

    // The date shown in the row of the item with that name.
    QString timeOf(const QString &name) const
    {
        const QStringList names = shownColumn(PicTableModel::NameColumn);
        return times().value(names.indexOf(name));
    }

    void selectRows(const QStringList &names, const QString &current)
    {
        QTableView &list = *window->findChild<QTableView *>();
        QItemSelectionModel &selection = *list.selectionModel();
        selection.clearSelection();
        const QStringList shown = shownColumn(PicTableModel::NameColumn);
        for (const QString &name : names)
            selection.select(list.model()->index(int(shown.indexOf(name)), 0),
                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
        selection.setCurrentIndex(list.model()->index(int(shown.indexOf(current)), 0), QItemSelectionModel::NoUpdate);
    }

    void undo() { action("undoAction").trigger(); }
    void redo() { action("redoAction").trigger(); }
};

TEST_F(EditMenuTest, AnOffsetAnAlignmentAndARemovalAreUndoneAndRedoneFromTheMenu)
{
    importThree();
    const QStringList original{"10:00:00", "10:00:01", "10:10:00"};
    ASSERT_EQ(times(), original);
    EXPECT_FALSE(action("undoAction").isEnabled());

    window->findChild<QSpinBox *>(QStringLiteral("offsetHours"))->setValue(1);
    EXPECT_EQ(times(), (QStringList{"11:00:00", "11:00:01", "11:10:00"}));
    EXPECT_EQ(action("undoAction").text(), QStringLiteral("Undo Date Change"));
    undo();
    EXPECT_EQ(times(), original);
    EXPECT_EQ(window->findChild<QSpinBox *>(QStringLiteral("offsetHours"))->value(), 0) << "the controls follow";
    redo();
    EXPECT_EQ(times(), (QStringList{"11:00:00", "11:00:01", "11:10:00"}));
    undo();

    action("separateModeAction").trigger();
    EXPECT_TRUE(action("separateModeAction").isChecked());
    selectRows({"a.jpg", "b.jpg", "c.jpg"}, QStringLiteral("a.jpg"));
    ASSERT_TRUE(action("alignByMatchingGaps").isEnabled());
    action("alignByMatchingGaps").trigger();
    EXPECT_EQ(times(), (QStringList{"10:00:00", "10:05:00", "10:10:00"}));
    EXPECT_EQ(action("undoAction").text(), QStringLiteral("Undo Align by Matching Gaps"));
    undo();
    EXPECT_EQ(times(), original);
    redo();
    EXPECT_EQ(timeOf(QStringLiteral("b.jpg")), QStringLiteral("10:05:00"));

    selectRows({"b.jpg"}, QStringLiteral("b.jpg"));
    ASSERT_TRUE(action("removeDateAction").isEnabled());
    action("removeDateAction").trigger();
    EXPECT_EQ(timeOf(QStringLiteral("b.jpg")), QStringLiteral("10:00:01"));
    EXPECT_EQ(action("undoAction").text(), QStringLiteral("Undo Remove Date"));
    undo();
    EXPECT_EQ(timeOf(QStringLiteral("b.jpg")), QStringLiteral("10:05:00"));
    redo();
    EXPECT_EQ(timeOf(QStringLiteral("b.jpg")), QStringLiteral("10:00:01"));
    EXPECT_FALSE(window->isWindowModified()) << "every change taken back is no change";
    undo();
    EXPECT_TRUE(window->isWindowModified());
}

TEST_F(EditMenuTest, ResetsTakeBackTheChangesOfEitherModeAsOneStep)
{
    importThree();
    window->findChild<QSpinBox *>(QStringLiteral("offsetHours"))->setValue(3);
    window->findChild<QToolButton *>(QStringLiteral("offsetReset"))->click();
    EXPECT_EQ(times(), (QStringList{"10:00:00", "10:00:01", "10:10:00"}));
    EXPECT_EQ(action("undoAction").text(), QStringLiteral("Undo Reset Folder Offset"));

    action("separateModeAction").trigger();
    selectRows({"a.jpg", "b.jpg", "c.jpg"}, QStringLiteral("a.jpg"));
    action("alignByReversing").trigger();
    EXPECT_EQ(timeOf(QStringLiteral("a.jpg")), QStringLiteral("10:10:00"));
    ASSERT_TRUE(action("removeAllDatesAction").isEnabled());
    action("removeAllDatesAction").trigger();
    EXPECT_EQ(timeOf(QStringLiteral("a.jpg")), QStringLiteral("10:00:00"));
    EXPECT_EQ(action("undoAction").text(), QStringLiteral("Undo Reset Dates"));
    EXPECT_FALSE(action("removeAllDatesAction").isEnabled());
}

TEST_F(EditMenuTest, ADateCopiedFromOneItemIsPastedOntoAnotherAndTheChangedItemsAreFound)
{
    importThree();
    action("separateModeAction").trigger();
    selectRows({"c.jpg"}, QStringLiteral("c.jpg"));
    action("copyDateAction").trigger();
    ASSERT_TRUE(QApplication::clipboard()->mimeData()->hasFormat(QStringLiteral("orvelle.desktopPasteboardDateData")));

    selectRows({"a.jpg"}, QStringLiteral("a.jpg"));
    ASSERT_TRUE(action("pasteDateAction").isEnabled());
    answers.answerNext([](QDialog &question) { clickButton(question, QStringLiteral("OK")); });
    action("pasteDateAction").trigger();
    EXPECT_EQ(timeOf(QStringLiteral("a.jpg")), QStringLiteral("10:10:00"));
    EXPECT_EQ(answers.asked, QStringList{"QMessageBox"});

    QTableView &list = *window->findChild<QTableView *>();
    const auto currentName = [&] {
        return list.model()->index(list.currentIndex().row(), PicTableModel::NameColumn).data().toString();
    };
    selectRows({"b.jpg"}, QStringLiteral("b.jpg"));
    action("nextChangeAction").trigger();
    EXPECT_EQ(currentName(), QStringLiteral("a.jpg"));
    selectRows({"c.jpg"}, QStringLiteral("c.jpg"));
    action("previousChangeAction").trigger();
    EXPECT_EQ(currentName(), QStringLiteral("a.jpg"));

    undo();
    EXPECT_EQ(timeOf(QStringLiteral("a.jpg")), QStringLiteral("10:00:00"));
}

TEST_F(EditMenuTest, TheAlignMenuTurnsToSeparatingWhenTheSelectionHoldsIdenticalTimes)
{
    writeJpeg(QStringLiteral("a"), "2024:05:01 10:00:00");
    writeJpeg(QStringLiteral("b"), "2024:05:01 10:00:00");
    writeJpeg(QStringLiteral("c"), "2024:05:01 10:00:07");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    action("separateModeAction").trigger();
    auto *align = window->findChild<QMenu *>(QStringLiteral("alignMenu"));
    const auto infoShown = [align] {
        return std::any_of(align->actions().cbegin(), align->actions().cend(),
                           [](const QAction *a) { return !a->isEnabled() && a->text().startsWith("Identical"); });
    };

    selectRows({"a.jpg", "b.jpg", "c.jpg"}, QStringLiteral("a.jpg"));
    Q_EMIT align->aboutToShow();
    EXPECT_EQ(action("alignByMinimizingGaps").text(), QStringLiteral("Separate Identical Times"));
    EXPECT_TRUE(action("alignByFilename").font().bold());
    EXPECT_TRUE(infoShown());
    action("alignByMinimizingGaps").trigger();
    EXPECT_EQ(times(), (QStringList{"10:00:00", "10:00:01", "10:00:02"}));

    Q_EMIT align->aboutToShow();
    EXPECT_EQ(action("alignByMinimizingGaps").text(), QStringLiteral("By Minimizing Gaps"));
    EXPECT_FALSE(action("alignByReversing").font().bold());
    EXPECT_FALSE(infoShown());
}

TEST_F(EditMenuTest, UndoingAFolderOffsetShowsThatFolderAgain)
{
    QDir(dir.path()).mkdir(QStringLiteral("one"));
    QDir(dir.path()).mkdir(QStringLiteral("two"));
    TiffShape tags;
    tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
    buildJpeg({.exif = tags}).write(dir.filePath(QStringLiteral("one")), QStringLiteral("a"));
    buildJpeg({.exif = tags}).write(dir.filePath(QStringLiteral("two")), QStringLiteral("b"));
    ASSERT_TRUE(waitForImport([&] {
        window->importPaths({dir.filePath(QStringLiteral("one")), dir.filePath(QStringLiteral("two"))});
    }));
    QTreeView &sidebar = *window->findChild<QTreeView *>();
    const auto selectFolderRow = [&](int row) {
        sidebar.selectionModel()->select(window->folderList().index(row, 0),
                                         QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    };
    selectFolderRow(1);
    ASSERT_EQ(shownColumn(PicTableModel::NameColumn), QStringList{"a.jpg"});
    window->findChild<QSpinBox *>(QStringLiteral("offsetHours"))->setValue(2);
    selectFolderRow(2);
    ASSERT_EQ(shownColumn(PicTableModel::NameColumn), QStringList{"b.jpg"});

    undo();

    EXPECT_EQ(shownColumn(PicTableModel::NameColumn), QStringList{"a.jpg"});
    EXPECT_EQ(times(), QStringList{"10:00:00"});
    redo();
    EXPECT_EQ(times(), QStringList{"12:00:00"});
}

TEST_F(EditMenuTest, DuringASaveTheListReadsNoItemAndNothingChangesAfterwardsNothingOfItIsUndone)
{
    importThree();
    window->findChild<QSpinBox *>(QStringLiteral("offsetMinutes"))->setValue(30);
    ASSERT_TRUE(action("undoAction").isEnabled());

    QSignalSpy finished(window.get(), &MainWindow::saveFinished);
    action("saveAction").trigger();
    ASSERT_TRUE(window->isSaving());
    // The run's threads own the items now: the list gives no cell, and the owner takes no change.
    const PicTableModel &pics = window->picModel();
    for (int row = 0; row < pics.rowCount(); ++row)
        EXPECT_FALSE(pics.index(row, PicTableModel::DateColumn).data().isValid()) << row;
    window->findChild<QSpinBox *>(QStringLiteral("offsetMinutes"))->setValue(45);
    EXPECT_EQ(window->controller().uManager().count(), 1);
    EXPECT_FALSE(action("separateModeAction").isEnabled());
    ASSERT_TRUE(finished.wait(20000));

    EXPECT_EQ(times(), (QStringList{"10:30:00", "10:30:01", "10:40:00"}));
    EXPECT_EQ(window->findChild<QSpinBox *>(QStringLiteral("offsetMinutes"))->value(), 0);
    EXPECT_FALSE(action("undoAction").isEnabled()) << "a saved change is in the files, not in the history";
    EXPECT_EQ(window->controller().uManager().count(), 0);
}

} // namespace
