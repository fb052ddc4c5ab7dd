// The shell around the timeline, driven by keys as a user would: redo by Ctrl+Y, undo from the
// window's fields, Align saying why it is off, the keyboard help on F1, the info view following
// the selection and the sidebar keeping the order folders were opened in.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "ui/FolderListModel.h"
#include "ui/InfoView.h"
#include "ui/KeyboardHelp.h"
#include "ui/PicTableModel.h"
#include "ui/PreviewsBar.h"

#include <QAction>
#include <QDir>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableView>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

using namespace orv;
using namespace orv::test;

namespace {

class WindowShellTest : public WindowFixture
{
protected:
    void importTwoPhotos()
    {
        writeJpeg(QStringLiteral("IMG_1"), "2024:05:01 10:00:00");
        writeJpeg(QStringLiteral("IMG_2"), "2024:05:01 12:30:00");
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    QSpinBox &hours() const { return *window->findChild<QSpinBox *>(QStringLiteral("offsetHours")); }
    QAction &action(const char *name) const { return *window->findChild<QAction *>(QLatin1String(name)); }
    QTableView &list() const { return *window->findChild<QTableView *>(); }

    void selectRows(int count)
    {
        list().clearSelection();
        for (int row = 0; row < count; ++row)
            list().selectionModel()->select(list().model()->index(row, 0),
                                            QItemSelectionModel::Select | QItemSelectionModel::Rows);
        list().selectionModel()->setCurrentIndex(list().model()->index(0, 0), QItemSelectionModel::NoUpdate);
    }
};

} // namespace

TEST_F(WindowShellTest, CtrlYRedoesAndCtrlZReachesTheUndoStackFromEveryFieldWithoutTypingOfItsOwn)
{
    importTwoPhotos();
    hours().setValue(2);
    action("undoAction").trigger();
    ASSERT_EQ(hours().value(), 0);
    list().setFocus();
    QTest::keyClick(window.get(), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(hours().value(), 2) << "Ctrl+Y redoes";

    // The offset fields keep no typing history of their own: Ctrl+Z in one takes back the last
    // date change.
    hours().setFocus();
    QTest::keyClick(&hours(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(hours().value(), 0) << "Ctrl+Z in the hours field undid the shift";
    QTest::keyClick(&hours(), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(hours().value(), 2);

    // A field with typing of its own undoes that while it has focus; once it lost focus, the
    // window's stack.
    auto *field = new QLineEdit(window.get());
    field->show();
    field->setFocus();
    QTest::keyClicks(field, QStringLiteral("Lisbon"));
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field->text(), QString()) << "the field's own typing is undone";
    EXPECT_EQ(hours().value(), 2) << "the window's stack is left alone";
    QTest::keyClicks(field, QStringLiteral("Porto"));
    list().setFocus();
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field->text(), QStringLiteral("Porto"));
    EXPECT_EQ(hours().value(), 0) << "after the focus left, Ctrl+Z undid the shift";
}

TEST_F(WindowShellTest, AlignSaysWhyItIsOffUntilTheItemsChangeOneByOne)
{
    importTwoPhotos();
    QAction &align = action("alignAction");
    auto *button = qobject_cast<QToolButton *>(window->findChild<QToolBar *>()->widgetForAction(&align));
    ASSERT_NE(button, nullptr) << "Align is on the toolbar";

    selectRows(2);
    EXPECT_FALSE(align.isEnabled());
    EXPECT_TRUE(align.toolTip().contains(QStringLiteral("Change Items One by One"))) << align.toolTip().toStdString();
    EXPECT_FALSE(button->isEnabled());

    action("separateModeAction").trigger();
    selectRows(2);
    EXPECT_TRUE(align.isEnabled()) << align.toolTip().toStdString();
    EXPECT_TRUE(action("alignByMinimizingGaps").isEnabled());
    EXPECT_FALSE(action("alignByMatchingGaps").isEnabled());
    EXPECT_TRUE(action("alignByMatchingGaps").toolTip().contains(QStringLiteral("three")));

    list().clearSelection();
    EXPECT_FALSE(align.isEnabled());
    EXPECT_TRUE(align.toolTip().contains(QStringLiteral("Select the items"))) << align.toolTip().toStdString();
}

TEST_F(WindowShellTest, F1ListsTheShortcutsOfTheMenusAndTheTimeline)
{
    importTwoPhotos();
    QTest::keyClick(window.get(), Qt::Key_F1);
    auto *help = window->findChild<KeyboardHelp *>();
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible());
    QStringList lines;
    for (QTreeWidgetItemIterator item(help->findChild<QTreeWidget *>()); *item; ++item)
        lines.append((*item)->text(0) + QStringLiteral(" = ") + (*item)->text(1));
    const QString all = lines.join(u'\n');
    EXPECT_TRUE(all.contains(QStringLiteral("Ctrl+Y"))) << all.toStdString();
    EXPECT_TRUE(all.contains(QStringLiteral("Ctrl+S = File › Save"))) << all.toStdString();
    EXPECT_TRUE(all.contains(QStringLiteral("F1 = Help › Keyboard Shortcuts")));
    EXPECT_TRUE(all.contains(QStringLiteral("Ctrl+Alt+← / →")));
}

TEST_F(WindowShellTest, TheInfoViewAndPreviewsFollowTheSelection)
{
    importTwoPhotos();
    hours().setValue(1);
    selectRows(1);
    const QString info = window->infoView().text();
    EXPECT_TRUE(info.contains(QStringLiteral("IMG_1.jpg")));
    EXPECT_TRUE(info.contains(QStringLiteral("Canon EOS R6")));
    EXPECT_TRUE(info.contains(QStringLiteral("+1:00:00"))) << "the folder offset";
    EXPECT_TRUE(info.contains(QStringLiteral("2024-05-01 10:00:00"))) << "the capture date in the file";
    EXPECT_TRUE(info.contains(QStringLiteral("2024-05-01 11:00:00"))) << "and after a save";
    EXPECT_EQ(window->previewsBar().shownPics().size(), 1);

    selectRows(2);
    EXPECT_EQ(window->previewsBar().shownPics().size(), 2);
}

TEST_F(WindowShellTest, TheSidebarListsFoldersInTheOrderTheyWereOpened)
{
    for (const QString &name : {QStringLiteral("zeta"), QStringLiteral("alpha")}) {
        QDir(dir.path()).mkdir(name);
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
        buildJpeg({.exif = tags}).write(dir.filePath(name), QStringLiteral("IMG"));
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.filePath(name)}); }));
    }
    const FolderListModel &folders = window->folderList();
    ASSERT_EQ(folders.rowCount(), 3);
    EXPECT_EQ(folders.index(1, FolderListModel::NameColumn).data().toString(), QStringLiteral("zeta"));
    EXPECT_EQ(folders.index(2, FolderListModel::NameColumn).data().toString(), QStringLiteral("alpha"));
}
