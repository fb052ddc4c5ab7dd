// The real window, offscreen: dates shifted in the offset controls or by a drag on the strip reach
// the files by Save, what cannot be saved is reported with its path, and unsaved changes are never
// lost by quitting.

#include "WindowFixture.h"

#include "support/Exiftool.h"
#include "ui/FolderListModel.h"
#include "ui/MyTimelineView.h"
#include "ui/PicTableModel.h"
#include "ui/SaveErrorsDialog.h"
#include "ui/TimelinePane.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QSpinBox>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

using namespace orv;
using namespace orv::test;

namespace {

const QString dateTimeOriginal = QStringLiteral("EXIF:DateTimeOriginal");

class SaveWindowTest : public WindowFixture
{
protected:
    // Two photos of a morning, imported and on show.
    void importMorning()
    {
        first = writeJpeg(QStringLiteral("IMG_1"), "2024:05:01 10:00:00");
        second = writeJpeg(QStringLiteral("IMG_2"), "2024:05:01 12:30:00");
        ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.path()}); }));
    }

    QSpinBox &field(const char *name) const
    {
        auto *spin = window->findChild<QSpinBox *>(QLatin1String(name));
        EXPECT_NE(spin, nullptr) << name;
        return *spin;
    }

    QAction &action(const char *name) const { return *window->findChild<QAction *>(QLatin1String(name)); }

    bool saveAndWait()
    {
        QSignalSpy finished(window.get(), &MainWindow::saveFinished);
        action("saveAction").trigger();
        return finished.wait(20000);
    }

    static QString stampIn(const QString &path) { return exiftoolTags(path).string(dateTimeOriginal); }

    QString first, second;
};

} // namespace

TEST_F(SaveWindowTest, AnHourAddedInTheControlsIsWrittenByTheSaveAndTheListStaysAsShown)
{
    importMorning();
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_FALSE(action("saveAction").isEnabled()) << "nothing to save yet";

    field("offsetHours").setValue(1);
    const QStringList beforeSave = shownColumn(PicTableModel::DateColumn);
    ASSERT_EQ(beforeSave.size(), 2);
    EXPECT_TRUE(beforeSave[0].startsWith(QStringLiteral("2024-05-01 11:00:00 "))) << beforeSave[0].toStdString();
    EXPECT_TRUE(beforeSave[1].startsWith(QStringLiteral("2024-05-01 13:30:00 "))) << beforeSave[1].toStdString();
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_TRUE(window->windowTitle().contains(QStringLiteral("[*]")));
    ASSERT_TRUE(action("saveAction").isEnabled());
    EXPECT_EQ(stampIn(first), QStringLiteral("2024:05:01 10:00:00")) << "nothing is written before Save";

    ASSERT_TRUE(saveAndWait());

    EXPECT_EQ(stampIn(first), QStringLiteral("2024:05:01 11:00:00"));
    EXPECT_EQ(stampIn(second), QStringLiteral("2024:05:01 13:30:00"));
    EXPECT_EQ(shownColumn(PicTableModel::DateColumn), beforeSave) << "the saved dates are the ones shown";
    EXPECT_EQ(field("offsetHours").value(), 0);
    EXPECT_EQ(window->findChild<QComboBox *>(QStringLiteral("offsetDirection"))->currentText(), QStringLiteral("+"));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_FALSE(action("saveAction").isEnabled());
    EXPECT_TRUE(answers.asked.isEmpty()) << "a clean save asks nothing";
}

TEST_F(SaveWindowTest, APhotoDraggedOntoItsMomentGivesItsFolderTheOffsetThatTheSaveWritesToEveryFile)
{
    // Two cameras an hour apart: the late one's first photo is the moment of the early one's second.
    const auto shoot = [this](const QString &folder, const QString &name, const char *stamp) {
        QDir(dir.path()).mkdir(folder);
        TiffShape tags;
        tags.dateTimeOriginal = Stamp::text(stamp);
        return buildJpeg({.exif = tags}).write(dir.filePath(folder), name);
    };
    const QString early = QStringLiteral("early"), late = QStringLiteral("late");
    shoot(early, QStringLiteral("E1"), "2024:05:01 10:00:00");
    shoot(early, QStringLiteral("E2"), "2024:05:01 10:01:00");
    const QString l1 = shoot(late, QStringLiteral("L1"), "2024:05:01 11:01:00");
    const QString l2 = shoot(late, QStringLiteral("L2"), "2024:05:01 11:02:00");
    ASSERT_TRUE(waitForImport([&] { window->importPaths({dir.filePath(early), dir.filePath(late)}); }));
    window->findChild<QTreeView *>()->selectionModel()->select(
        window->folderList().index(1, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ASSERT_EQ(shownColumn(PicTableModel::NameColumn), (QStringList{"E1.jpg", "E2.jpg"}));

    // Strip: E1 E2 L1 L2. A double click on the lowered L1 shows its folder.
    MyTimelineView &strip = window->timeline().mainView();
    QWidget *viewport = strip.viewport();
    const QPoint from = strip.thumbRectInViewport(2).center().toPoint();
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, from);
    ASSERT_EQ(shownColumn(PicTableModel::NameColumn), (QStringList{"L1.jpg", "L2.jpg"}));

    const QRectF target = strip.thumbRectInViewport(1);
    const QPoint to(int(target.center().x() + target.width() / 8), int(target.center().y()));
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    QTest::mouseMove(viewport, (from + to) / 2);
    QTest::mouseMove(viewport, to);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
    EXPECT_EQ(stampIn(l1), QStringLiteral("2024:05:01 11:01:00")) << "nothing is written before Save";

    ASSERT_TRUE(saveAndWait());
    EXPECT_EQ(stampIn(l1), QStringLiteral("2024:05:01 10:01:01"));
    EXPECT_EQ(stampIn(l2), QStringLiteral("2024:05:01 10:02:01"));
}

TEST_F(SaveWindowTest, AFileGoneSinceTheImportIsReportedWithItsPathWhileTheOthersAreSaved)
{
    importMorning();
    field("offsetHours").setValue(1);
    ASSERT_TRUE(QFile::remove(second));

    QStringList questionPaths;
    answers.answerNext([&](QDialog &question) {
        for (QTreeWidgetItemIterator item(question.findChild<QTreeWidget *>()); *item; ++item)
            questionPaths.append((*item)->toolTip(0));
        clickButton(question, QStringLiteral("Save Anyway"));
    });
    QString report;
    answers.answerNext([&](QDialog &alert) {
        if (auto *errors = qobject_cast<SaveErrorsDialog *>(&alert))
            report = errors->report();
        alert.accept();
    });
    ASSERT_TRUE(saveAndWait());
    ASSERT_TRUE(QTest::qWaitFor([&] { return answers.asked.size() == 2; }, 5000));

    EXPECT_EQ(answers.asked, (QStringList{"orv::PreSaveSummaryDialog", "orv::SaveErrorsDialog"}));
    EXPECT_TRUE(questionPaths.contains(second)) << questionPaths.join(QLatin1Char('\n')).toStdString();
    EXPECT_TRUE(report.contains(QStringLiteral("These files were not found and were not saved:\n\t") + second))
        << report.toStdString();
    EXPECT_FALSE(report.contains(first));
    EXPECT_EQ(stampIn(first), QStringLiteral("2024:05:01 11:00:00"));

    const QStringList dates = shownColumn(PicTableModel::DateColumn);
    EXPECT_TRUE(dates[0].startsWith(QStringLiteral("2024-05-01 11:00:00 "))) << "saved, as shown before";
    EXPECT_TRUE(dates[1].startsWith(QStringLiteral("2024-05-01 13:30:00 "))) << "failed, its hour still pending";
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_FALSE(field("offsetHours").isEnabled()) << "the folder now holds changes item by item";
    EXPECT_FALSE(window->findChild<QLabel *>(QStringLiteral("offsetNote"))->text().isEmpty());
}

TEST_F(SaveWindowTest, CancellingThePreSaveQuestionWritesNothingAndKeepsTheChange)
{
    importMorning();
    field("offsetHours").setValue(1);
    ASSERT_TRUE(QFile::remove(second));

    answers.answerNext([](QDialog &question) { clickButton(question, QStringLiteral("Cancel")); });
    ASSERT_TRUE(saveAndWait());

    EXPECT_EQ(answers.asked, QStringList{"orv::PreSaveSummaryDialog"}) << "no error alert after a cancel";
    EXPECT_EQ(stampIn(first), QStringLiteral("2024:05:01 10:00:00"));
    EXPECT_EQ(field("offsetHours").value(), 1);
    EXPECT_TRUE(window->isWindowModified());
}

TEST_F(SaveWindowTest, QuittingWithUnsavedChangesAsksAndCancelOrDontSaveLeaveTheFiles)
{
    importMorning();
    field("offsetMinutes").setValue(30);

    answers.answerNext([](QDialog &question) { clickButton(question, QStringLiteral("Cancel")); });
    action("quitAction").trigger();
    EXPECT_EQ(answers.asked, QStringList{"QMessageBox"});
    EXPECT_TRUE(window->isVisible());

    answers.answerNext([](QDialog &question) { clickButton(question, QStringLiteral("Don't Save")); });
    action("quitAction").trigger();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(stampIn(first), QStringLiteral("2024:05:01 10:00:00"));
}

TEST_F(SaveWindowTest, SaveWhenQuittingWritesTheChangesAndThenCloses)
{
    importMorning();
    field("offsetMinutes").setValue(30);

    answers.answerNext([](QDialog &question) { clickButton(question, QStringLiteral("Save")); });
    QSignalSpy finished(window.get(), &MainWindow::saveFinished);
    action("quitAction").trigger();
    EXPECT_TRUE(window->isVisible()) << "the window waits for the save";
    ASSERT_TRUE(finished.wait(20000));

    EXPECT_EQ(stampIn(first), QStringLiteral("2024:05:01 10:30:00"));
    EXPECT_FALSE(window->isVisible());
}
