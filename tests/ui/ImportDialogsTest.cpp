// The dialogs that answer the import's questions, on their own.

#include "folders/MySingleFolder.h"
#include "support/QtPrinters.h"
#include "support/Zones.h"
#include "ui/DateSequenceFields.h"
#include "ui/EmptyTagOptionsDialog.h"
#include "ui/ImportErrorsDialog.h"
#include "ui/TemporaryImportOptionsDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include <gtest/gtest.h>

using namespace orv;

namespace {

TimeZone berlin() { return test::zone("Europe/Berlin"); }

ImportOptions fixedDatesPreset()
{
    ImportOptions preset;
    preset.withEmptyExifFixDate = ImportOptions::UseFixedDate;
    preset.prefFixDateDate = Instant::fromUtc(2024, 7, 1, 8);
    preset.prefFixDateStepValue = 5;
    preset.prefFixDateStepperKind = 1;
    preset.createFileGroups = false;
    return preset;
}

template <typename Widget>
Widget *field(QWidget &dialog, const char *name)
{
    auto *widget = dialog.findChild<Widget *>(QLatin1String(name));
    if (!widget)
        throw std::runtime_error(std::string("no field ") + name);
    return widget;
}

} // namespace

TEST(EmptyTagOptionsDialog, KeepsTheFoldersOtherOptionsAndReturnsTheChosenDates)
{
    EmptyTagOptionsDialog dialog(QStringLiteral("Trip"), fixedDatesPreset(), berlin());
    ImportOptions answer = dialog.answer();
    EXPECT_EQ(answer.withEmptyExifFixDate, ImportOptions::UseFixedDate);
    EXPECT_EQ(answer.prefFixDateDate, Instant::fromUtc(2024, 7, 1, 8));
    EXPECT_EQ(answer.stepInSeconds(), 300.0);
    EXPECT_FALSE(answer.createFileGroups) << "what the question is not about stays as it was";
    EXPECT_FALSE(dialog.dontAskAgain());

    dialog.findChild<DateSequenceFields *>()->setValues(Instant::fromUtc(2023, 1, 1, 12), 2, DateSequenceFields::Hours);
    answer = dialog.answer();
    EXPECT_EQ(answer.prefFixDateDate, Instant::fromUtc(2023, 1, 1, 12));
    EXPECT_EQ(answer.stepInSeconds(), 7200.0);
}

TEST(EmptyTagOptionsDialog, NotAskingAgainOnlyEverMeansTheFileDate)
{
    EmptyTagOptionsDialog dialog(QStringLiteral("Trip"), fixedDatesPreset(), berlin());
    QRadioButton *fileDate = nullptr;
    for (QRadioButton *button : dialog.findChildren<QRadioButton *>())
        if (!button->isChecked())
            fileDate = button;
    ASSERT_TRUE(fileDate);
    auto *dontAsk = dialog.findChild<QCheckBox *>();
    EXPECT_FALSE(dontAsk->isEnabled()) << "offered only beside the file date";

    fileDate->setChecked(true);
    ASSERT_TRUE(dontAsk->isEnabled());
    dontAsk->setChecked(true);
    EXPECT_EQ(dialog.answer().withEmptyExifFixDate, ImportOptions::UseFileDate);
    EXPECT_TRUE(dialog.dontAskAgain());
}

TEST(TemporaryImportOptionsDialog, GivesBackThePresetWithTheUsersChanges)
{
    TemporaryImportOptions preset;
    preset.tioFolderType = FolderKind::Express;
    preset.tioEditMode = 1;
    preset.tioGroupFiles = false;
    preset.prefFixDateDate = Instant::fromUtc(2024, 7, 1, 8);
    preset.prefFixDateStepValue = 30;
    preset.tioFilterValues = QStringLiteral(" .mov, .mp4");
    preset.tioAddToShelf = true;
    TemporaryImportOptionsDialog dialog(preset, true, berlin());

    TemporaryImportOptions answer = dialog.options();
    EXPECT_EQ(answer.tioFolderType, FolderKind::Express);
    EXPECT_EQ(answer.tioEditMode, 1);
    EXPECT_FALSE(answer.tioGroupFiles);
    EXPECT_FALSE(answer.tioFilterEnabled);
    EXPECT_EQ(answer.prefFixDateDate, preset.prefFixDateDate);
    EXPECT_TRUE(answer.tioAddToShelf) << "what the sheet does not show passes through";
    EXPECT_TRUE(dialog.alwaysShown());

    field<QCheckBox>(dialog, "subfolders")->setChecked(true);
    field<QCheckBox>(dialog, "filterEnabled")->setChecked(true);
    field<QComboBox>(dialog, "filterType")->setCurrentIndex(1);
    field<QLineEdit>(dialog, "filterText")->setText(QStringLiteral(".png"));
    field<QCheckBox>(dialog, "alwaysShown")->setChecked(false);
    answer = dialog.options();
    EXPECT_TRUE(answer.tioAddSubfolders);
    EXPECT_TRUE(answer.tioFilterEnabled);
    EXPECT_EQ(answer.tioFilterType, 1);
    EXPECT_EQ(answer.tioFilterValues, QStringLiteral(".png"));
    EXPECT_FALSE(dialog.alwaysShown());
    EXPECT_EQ(answer.keyStatesAtImport().tioFilterValues, QStringLiteral(".png")) << "the import sees the filter";
}

TEST(TemporaryImportOptionsDialog, ADateSequenceNeverStepsByZero)
{
    TemporaryImportOptions preset;
    preset.prefFixDateStepValue = 0;
    const TemporaryImportOptionsDialog dialog(preset, true, berlin());
    EXPECT_EQ(dialog.options().prefFixDateStepValue, 1) << "every file of the drop would get the same date";
}

TEST(TemporaryImportOptionsDialog, WarnsWhenADateSequenceMeetsASlideshowOnlyImport)
{
    TemporaryImportOptions preset;
    preset.tioFolderType = FolderKind::SlideshowOnly;
    TemporaryImportOptionsDialog dialog(preset, true, berlin());
    auto *warning = field<QLabel>(dialog, "warning");
    EXPECT_TRUE(warning->isHidden());
    field<QCheckBox>(dialog, "sequenceEnabled")->setChecked(true);
    EXPECT_FALSE(warning->isHidden());
}

TEST(ImportErrorsDialog, ListsEveryFileUnderItsFolderAndProblem)
{
    ImportErrors errors;
    errors.add(ImportErrors::FileEmpty, QStringLiteral("/trip/camera/broken.jpg"));
    errors.add(ImportErrors::FileUnreadable, QStringLiteral("/trip/camera/locked.jpg"));
    errors.add(ImportErrors::FileEmpty, QStringLiteral("/trip/camera/day 2/empty.jpg"));
    ImportErrors other;
    other.add(ImportErrors::FolderUnreadable, QStringLiteral("/trip/phone/private"));
    const ImportErrorsDialog dialog({{QStringLiteral("camera"), QStringLiteral("/trip/camera"), errors},
                                     {QStringLiteral("phone"), QStringLiteral("/trip/phone"), other}});

    EXPECT_EQ(dialog.reportText(),
              QStringLiteral("/trip/camera\n"
                             "  %1\n"
                             "    /trip/camera/broken.jpg\n"
                             "    /trip/camera/day 2/empty.jpg\n"
                             "  %2\n"
                             "    /trip/camera/locked.jpg\n"
                             "/trip/phone\n"
                             "  %3\n"
                             "    /trip/phone/private\n")
                  .arg(ImportErrors::describe(ImportErrors::FileEmpty, 2),
                       ImportErrors::describe(ImportErrors::FileUnreadable, 1),
                       ImportErrors::describe(ImportErrors::FolderUnreadable, 1)));
}
