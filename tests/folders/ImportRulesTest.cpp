#include "folders/ImportFilter.h"
#include "folders/ImportKeyStates.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace orv;

namespace {

struct FolderTypeRow
{
    qint64 folderType;
    bool command, shift;
    FolderKind kind;
};

class FolderTypeTable : public ::testing::TestWithParam<FolderTypeRow>
{
};

} // namespace

TEST_P(FolderTypeTable, KeysToggleAwayFromThePreferredKind)
{
    const FolderTypeRow row = GetParam();
    EXPECT_EQ(folderKindForKeys(row.folderType, row.command, row.shift), row.kind);

    ImportDefaults defaults;
    defaults.folderType = row.folderType;
    const KeyStatesAtImport k = defaults.keyStatesFor(HeldKeys{.command = row.command, .shift = row.shift}, false);
    EXPECT_EQ(k.isCommandKeyDown, row.kind == FolderKind::Express);
    EXPECT_EQ(k.isShiftKeyDown, row.kind == FolderKind::SlideshowOnly);
    EXPECT_EQ(k.importKind(), row.kind == FolderKind::Express ? 1 : row.kind == FolderKind::SlideshowOnly ? 3 : 0);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(AllTypesAndKeys, FolderTypeTable, ::testing::Values(
    FolderTypeRow{0, false, false, FolderKind::Normal},
    FolderTypeRow{0, true,  false, FolderKind::Express},
    FolderTypeRow{0, false, true,  FolderKind::SlideshowOnly},
    FolderTypeRow{0, true,  true,  FolderKind::SlideshowOnly},
    FolderTypeRow{1, false, false, FolderKind::Express},
    FolderTypeRow{1, true,  false, FolderKind::Normal},
    FolderTypeRow{1, false, true,  FolderKind::SlideshowOnly},
    FolderTypeRow{1, true,  true,  FolderKind::SlideshowOnly},
    FolderTypeRow{2, false, false, FolderKind::SlideshowOnly},
    FolderTypeRow{2, true,  false, FolderKind::Express},
    FolderTypeRow{2, false, true,  FolderKind::Normal},
    FolderTypeRow{2, true,  true,  FolderKind::Normal}));
// clang-format on

TEST(ImportKeys, FolderModeInvertsTheSeparateModeKey)
{
    ImportDefaults defaults;
    for (const qint64 folderMode : {0, 1}) {
        defaults.folderMode = folderMode;
        EXPECT_EQ(defaults.keyStatesFor(HeldKeys{.control = true}, false).isControlKeyDown, folderMode == 0);
        EXPECT_EQ(defaults.keyStatesFor(HeldKeys{}, false).isControlKeyDown, folderMode != 0);
        EXPECT_EQ(defaults.sheetPreset(HeldKeys{}, false).tioEditMode, folderMode != 0 ? 1 : 0);
    }
}

TEST(ImportKeys, LinuxModifiersTakeTheFourRoles)
{
    const HeldKeys ctrl = HeldKeys::fromModifiers(Qt::ControlModifier);
    EXPECT_TRUE(ctrl.command && !ctrl.shift && !ctrl.control && !ctrl.option);
    const HeldKeys meta = HeldKeys::fromModifiers(Qt::MetaModifier);
    EXPECT_TRUE(meta.control && !meta.command && !meta.option);
    const HeldKeys alt = HeldKeys::fromModifiers(Qt::AltModifier | Qt::ShiftModifier);
    EXPECT_TRUE(alt.option && alt.shift && !alt.command && !alt.control);

    ImportDefaults defaults;
    defaults.isAlwaysShowOptionsDisabled = true;
    EXPECT_TRUE(defaults.showsOptionsSheet(alt));
    EXPECT_FALSE(defaults.showsOptionsSheet(ctrl));
}

TEST(ImportKeys, TheSheetAnswerBecomesTheKeyStatesOfTheDrop)
{
    TemporaryImportOptions sheet;
    sheet.tioFolderType = FolderKind::Express;
    sheet.tioEditMode = 1;
    sheet.tioAddSubfolders = true;
    sheet.tioFilterValues = QStringLiteral(".mov");
    sheet.tioFilterType = 1;
    sheet.tioAdaptedTZEnabled = true;
    sheet.tioAdaptedTZ = {QStringLiteral("Asia/Tokyo"), true};
    KeyStatesAtImport k = sheet.keyStatesAtImport();
    EXPECT_TRUE(k.isCommandKeyDown);
    EXPECT_TRUE(k.isControlKeyDown);
    EXPECT_EQ(k.isSubFolderAutoImportEnabled, true);
    EXPECT_EQ(k.tioFilterValues, QString()) << "the filter text counts only while the filter is on";
    EXPECT_EQ(k.tioAdaptedTZ, (AdaptedTimeZone{QStringLiteral("Asia/Tokyo"), true}));

    sheet.tioFilterEnabled = true;
    sheet.tioFolderType = FolderKind::SlideshowOnly;
    k = sheet.keyStatesAtImport();
    EXPECT_EQ(k.tioFilterValues, QStringLiteral(".mov"));
    EXPECT_EQ(k.tioFilterType, 1);
    EXPECT_FALSE(k.tioAdaptedTZ) << "slideshow-only folders have no zones";
}

TEST(ImportKeys, SheetSwitchesOverrideThePreferencesOnlyWhereTheyWereAnswered)
{
    ImportDefaults defaults;
    defaults.createFileGroups = true;
    defaults.isSubFolderAutoImportEnabled = false;
    KeyStatesAtImport k;
    EXPECT_TRUE(defaults.importOptionsFor(k).createFileGroups);
    EXPECT_FALSE(defaults.subfoldersEnabledFor(k));
    k.isLKeyDown = true;
    EXPECT_TRUE(defaults.subfoldersEnabledFor(k));
    k.createFileGroups = false;
    k.isSubFolderAutoImportEnabled = false;
    EXPECT_FALSE(defaults.importOptionsFor(k).createFileGroups);
    EXPECT_FALSE(defaults.subfoldersEnabledFor(k));
}

TEST(ImportKeys, DateSequenceStepsAreSecondsMinutesOrHours)
{
    KeyStatesAtImport k;
    k.tioDateSequenceStepValue = 3;
    EXPECT_EQ(k.dateSequenceStepInSeconds(), 3.0);
    k.tioDateSequenceStepperKind = 1;
    EXPECT_EQ(k.dateSequenceStepInSeconds(), 180.0);
    k.tioDateSequenceStepperKind = 2;
    EXPECT_EQ(k.dateSequenceStepInSeconds(), 10800.0);
}

TEST(ImportFilterRules, KeepOnlyKeepsTheListedKindsSidecarsAndDirectories)
{
    QTemporaryDir dir;
    QDir(dir.path()).mkdir(QStringLiteral("sub.jpg.d"));
    const ImportFilter filter(QStringLiteral(".jpg,.PNG"), ImportFilter::KeepOnly);
    EXPECT_EQ(filter.filteredPaths({QStringLiteral("a.JPG"), QStringLiteral("b.png"), QStringLiteral("c.mov"),
                                    QStringLiteral("a.xmp"), QStringLiteral("IMG.AAE"), QStringLiteral("sub.jpg.d"),
                                    QStringLiteral("noextension")},
                                   dir.path()),
              (QStringList{QStringLiteral("a.JPG"), QStringLiteral("b.png"), QStringLiteral("a.xmp"),
                           QStringLiteral("IMG.AAE"), QStringLiteral("sub.jpg.d")}));
}

TEST(ImportFilterRules, LeaveOutNeverLeavesOutASidecar)
{
    const ImportFilter filter(QStringLiteral(" .mov mp4 xmp"), ImportFilter::LeaveOut);
    EXPECT_EQ(filter.filteredPaths({QStringLiteral("a.MOV"), QStringLiteral("b.mp4"), QStringLiteral("b.xmp"),
                                    QStringLiteral("c.jpg")},
                                   QStringLiteral("/nonexistent")),
              (QStringList{QStringLiteral("b.xmp"), QStringLiteral("c.jpg")}));
}

TEST(ImportFilterRules, EmptyTextFiltersNothingAndAnUnknownTypeKeepsNothing)
{
    const QStringList names{QStringLiteral("a.mov")};
    EXPECT_EQ(ImportFilter(QString(), ImportFilter::KeepOnly).filteredPaths(names, QString()), names);
    EXPECT_TRUE(ImportFilter(QStringLiteral("mov"), 7).filteredPaths(names, QString()).isEmpty());
}
