// The rename sheet in the real window, offscreen: the names it shows before the run are the ones
// the files get, and undo and redo move the files' names back and forth.

#include "WindowFixture.h"

#include "app/AppController.h"
#include "folders/MyDroppedFolders.h"
#include "ui/PicTableModel.h"

#include <QAction>
#include <QDir>
#include <QLineEdit>
#include <QTableWidget>

using namespace orv;
using namespace orv::test;

namespace {

QAction &action(const MainWindow &window, const char *name)
{
    auto *found = window.findChild<QAction *>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
}

class RenameSheetTest : public WindowFixture
{
protected:
    QStringList filesInDir() const { return QDir(dir.path()).entryList(QDir::Files, QDir::Name); }
};

} // namespace

TEST_F(RenameSheetTest, PreviewsTheNamesRenamesAndUndoPutsThemBack)
{
    // Named against their time order, so that the new names swap the order of the old ones.
    writeJpeg(QStringLiteral("B"), "2024:05:01 10:00:00");
    writeJpeg(QStringLiteral("A"), "2024:05:01 12:30:00");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    const QStringList before = filesInDir();
    const QStringList renamed = {QStringLiteral("1 1000 Canon EOS R6.jpg"), QStringLiteral("2 1230 Canon EOS R6.jpg")};

    QStringList previewed;
    answers.answerNext([&](QDialog &sheet) {
        auto *templateText = sheet.findChild<QLineEdit *>(QStringLiteral("renameTemplate"));
        auto *table = sheet.findChild<QTableWidget *>(QStringLiteral("renameSheetTable"));
        ASSERT_TRUE(templateText && table);
        templateText->setText(QStringLiteral("{counter} {hour}{minute} {camera}"));
        for (int row = 0; row < table->rowCount(); ++row)
            previewed << table->item(row, 1)->text();
        clickButton(sheet, QStringLiteral("Rename"));
    });
    action(*window, "renameAction").trigger();
    EXPECT_EQ(answers.asked, QStringList{QStringLiteral("orv::RenameSheet")});
    EXPECT_EQ(previewed, renamed);
    EXPECT_EQ(filesInDir(), renamed);
    QStringList shown = shownColumn(PicTableModel::NameColumn);
    shown.sort();
    EXPECT_EQ(shown, renamed) << "the list shows the new names";

    QAction &undo = action(*window, "undoAction");
    ASSERT_TRUE(undo.isEnabled());
    EXPECT_EQ(undo.text(), QStringLiteral("Undo Rename 2 File(s)"));
    undo.trigger();
    EXPECT_EQ(filesInDir(), before);
    shown = shownColumn(PicTableModel::NameColumn);
    shown.sort();
    EXPECT_EQ(shown, before);
    action(*window, "redoAction").trigger();
    EXPECT_EQ(filesInDir(), renamed);

    // The step leaves the history with its folder, as date steps do after a save.
    QUndoStack &history = window->controller().uManager();
    ASSERT_EQ(history.count(), 1);
    window->controller().dateChanges().clearUndoRedoFromFolder(window->controller().theDataSource().droppedFolders().first());
    EXPECT_EQ(history.count(), 0);
    EXPECT_EQ(filesInDir(), renamed);
}
