// The real window, offscreen: a file rewritten by another program while imported is marked in
// the list and refused by the save; items go to the desktop's trash from the File menu and come
// back with Edit > Undo.

#include "WindowFixture.h"

#include "support/Exiftool.h"
#include "ui/PicTableModel.h"
#include "ui/SaveErrorsDialog.h"

#include <QAction>
#include <QDir>
#include <QProcess>
#include <QSpinBox>
#include <QTableView>
#include <QTest>

using namespace orv;
using namespace orv::test;

namespace {

class OutsideChangeWindowTest : public WindowFixture
{
protected:
    void SetUp() override
    {
        m_oldDataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_dataHome.path()));
        first = writeJpeg(QStringLiteral("IMG_1"), "2024:05:01 10:00:00");
        second = writeJpeg(QStringLiteral("IMG_2"), "2024:05:01 12:30:00");
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    }
    void TearDown() override { qputenv("XDG_DATA_HOME", m_oldDataHome); }

    QAction &action(const char *name) const { return *window->findChild<QAction *>(QLatin1String(name)); }

    QModelIndex nameCell(const QString &name) const
    {
        const PicSortProxy &rows = window->sortedPics();
        return rows.index(int(shownColumn(PicTableModel::NameColumn).indexOf(name)), PicTableModel::NameColumn);
    }

    static QString stampIn(const QString &path)
    {
        return exiftoolTags(path).string(QStringLiteral("EXIF:DateTimeOriginal"));
    }

    QTemporaryDir m_dataHome;
    QByteArray m_oldDataHome;
    QString first, second;
};

} // namespace

TEST_F(OutsideChangeWindowTest, ADateRewrittenOutsideIsMarkedAndTheSaveLeavesThatFileAlone)
{
    ASSERT_EQ(QProcess::execute(QStringLiteral("exiftool"), {QStringLiteral("-q"), QStringLiteral("-overwrite_original"),
                                                             QStringLiteral("-DateTimeOriginal=2001:02:03 04:05:06"),
                                                             second}),
              0);
    QTRY_VERIFY_WITH_TIMEOUT(nameCell(QStringLiteral("IMG_2.jpg")).data(Qt::ToolTipRole).toString().contains(
                                 QStringLiteral("changed by another program")),
                             15000);
    EXPECT_TRUE(nameCell(QStringLiteral("IMG_2.jpg")).data(Qt::ForegroundRole).isValid());
    EXPECT_FALSE(nameCell(QStringLiteral("IMG_1.jpg")).data(Qt::ForegroundRole).isValid());

    window->findChild<QSpinBox *>(QStringLiteral("offsetHours"))->setValue(1);
    answers.answerNext([](QDialog &question) { clickButton(question, QStringLiteral("Save Anyway")); });
    QString report;
    answers.answerNext([&](QDialog &alert) {
        if (auto *errors = qobject_cast<SaveErrorsDialog *>(&alert))
            report = errors->report();
        alert.accept();
    });
    QSignalSpy finished(window.get(), &MainWindow::saveFinished);
    action("saveAction").trigger();
    ASSERT_TRUE(finished.wait(20000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return answers.asked.size() == 2; }, 5000));

    EXPECT_EQ(stampIn(first), QStringLiteral("2024:05:01 11:00:00"));
    EXPECT_EQ(stampIn(second), QStringLiteral("2001:02:03 04:05:06")) << "the other program's date stays";
    EXPECT_TRUE(report.contains(second)) << report.toStdString();
}

TEST_F(OutsideChangeWindowTest, TwoItemsGoToTheTrashFromTheMenuAndUndoBringsThemBack)
{
    const QByteArray firstBytes = exiftoolTags(first).string(QStringLiteral("EXIF:DateTimeOriginal")).toUtf8();
    QTableView &list = *window->findChild<QTableView *>();
    list.selectAll();
    action("moveToTrashAction").trigger();

    EXPECT_EQ(window->picModel().rowCount(), 0);
    EXPECT_TRUE(QDir(dir.path()).entryList(QDir::Files).isEmpty());
    const QString trash = m_dataHome.path() + QStringLiteral("/Trash");
    EXPECT_EQ(QDir(trash + QStringLiteral("/files")).entryList(QDir::Files),
              (QStringList{QStringLiteral("IMG_1.jpg"), QStringLiteral("IMG_2.jpg")}));
    EXPECT_EQ(QDir(trash + QStringLiteral("/info")).entryList(QDir::Files).size(), 2);

    action("undoAction").trigger();
    EXPECT_EQ(shownColumn(PicTableModel::NameColumn), (QStringList{QStringLiteral("IMG_1.jpg"), QStringLiteral("IMG_2.jpg")}));
    EXPECT_EQ(stampIn(first).toUtf8(), firstBytes);
    EXPECT_TRUE(QDir(trash + QStringLiteral("/files")).isEmpty());
    EXPECT_TRUE(action("redoAction").isEnabled());
}
