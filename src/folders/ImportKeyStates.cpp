#include "folders/ImportKeyStates.h"

#include "core/Preferences.h"

namespace orv {

namespace {

// What the sheet offers as its filter when the user never typed one: movies, which are the
// files most often left out.
const QString defaultSheetFilter = QStringLiteral(" .mov, .mp4, .avi");

bool separateModeFor(const HeldKeys &keys, qint64 folderMode)
{
    return keys.control != (folderMode != 0);
}

} // namespace

HeldKeys HeldKeys::fromModifiers(Qt::KeyboardModifiers modifiers)
{
    return {modifiers.testFlag(Qt::ControlModifier), modifiers.testFlag(Qt::ShiftModifier),
            modifiers.testFlag(Qt::MetaModifier), modifiers.testFlag(Qt::AltModifier)};
}

FolderKind folderKindForKeys(qint64 folderType, bool command, bool shift)
{
    if (folderType == 2) {
        if (shift)
            return FolderKind::Normal;
        return command ? FolderKind::Express : FolderKind::SlideshowOnly;
    }
    if (shift)
        return FolderKind::SlideshowOnly;
    const bool expressByDefault = folderType == 1;
    return command != expressByDefault ? FolderKind::Express : FolderKind::Normal;
}

int KeyStatesAtImport::importKind() const
{
    if (isShiftKeyDown)
        return isKKeyDown ? 4 : 3;
    return isCommandKeyDown ? 1 : 0;
}

double KeyStatesAtImport::dateSequenceStepInSeconds() const
{
    const double unit = tioDateSequenceStepperKind > 1 ? 3600.0 : tioDateSequenceStepperKind > 0 ? 60.0 : 1.0;
    return double(tioDateSequenceStepValue) * unit;
}

KeyStatesAtImport TemporaryImportOptions::keyStatesAtImport() const
{
    KeyStatesAtImport k;
    k.isCommandKeyDown = tioFolderType == FolderKind::Express;
    k.isShiftKeyDown = tioFolderType == FolderKind::SlideshowOnly;
    k.isControlKeyDown = tioEditMode == 1;
    k.createFileGroups = tioGroupFiles;
    k.isSubFolderAutoImportEnabled = tioAddSubfolders;
    k.fixFinderDateOnImport = tioCorrectDates;
    k.tioDateSequenceEnabled = tioDateSequenceEnabled;
    if (tioDateSequenceEnabled) {
        k.tioDateSequenceDate = prefFixDateDate;
        k.tioDateSequenceStepValue = prefFixDateStepValue;
        k.tioDateSequenceStepperKind = prefFixDateStepperKind;
    }
    if (tioFilterEnabled) {
        k.tioFilterValues = tioFilterValues;
        k.tioFilterType = tioFilterType;
    }
    if (tioAdaptedTZEnabled && tioFolderType != FolderKind::SlideshowOnly && !tioAdaptedTZ.tioAdaptedValue.isEmpty())
        k.tioAdaptedTZ = tioAdaptedTZ;
    k.tioAddToShelf = tioAddToShelf;
    return k;
}

ImportDefaults ImportDefaults::fromPreferences(const Preferences &prefs)
{
    ImportDefaults d;
    d.folderType = prefs.integerForKey(QStringLiteral("folderType"));
    d.folderMode = prefs.integerForKey(QStringLiteral("folderMode"));
    d.isAdvanced = prefs.boolForKey(QStringLiteral("isAdvanced"));
    d.isAlwaysShowOptionsDisabled = prefs.boolForKey(QStringLiteral("isAlwaysShowOptionsDisabled"));
    d.isSubFolderAutoImportEnabled = prefs.boolForKey(QStringLiteral("isSubFolderAutoImportEnabled"));
    d.subFolderAutoImportMaxDepth = prefs.integerForKey(QStringLiteral("subFolderAutoImportMaxDepth"));
    d.createFileGroups = prefs.boolForKey(QStringLiteral("createFileGroups"));
    d.fixFinderDateOnImport = prefs.boolForKey(QStringLiteral("fixFinderDateOnImport"));
    d.tioFilterValues = prefs.stringForKey(QStringLiteral("tioFilterValues"));
    d.tioFilterType = int(prefs.integerForKey(QStringLiteral("tioFilterType")));
    d.prefFixDateDate = prefs.dateForKey(QStringLiteral("prefFixDateDate"));
    d.prefFixDateStepValue = prefs.integerForKey(QStringLiteral("prefFixDateStepValue"));
    d.prefFixDateStepperKind = prefs.integerForKey(QStringLiteral("prefFixDateStepperKind"));

    ImportOptions &o = d.importOptions;
    o.prefFixDateDate = d.prefFixDateDate;
    o.prefFixDateStepValue = double(d.prefFixDateStepValue);
    o.prefFixDateStepperKind = int(d.prefFixDateStepperKind);
    o.skipEmptyTagImportOptions = prefs.boolForKey(QStringLiteral("skipEmptyTagImportOptions"));
    o.fixFinderDateOnImport = d.fixFinderDateOnImport;
    o.createFileGroups = d.createFileGroups;
    o.createFileGroupsOnMovingFilesToo = prefs.boolForKey(QStringLiteral("createFileGroupsOnMovingFilesToo"));
    o.isMDTADateEnabled = prefs.boolForKey(QStringLiteral("isMDTADateEnabled"));
    o.isMVHDTimezoneCorrectionEnabled = prefs.boolForKey(QStringLiteral("isMVHDTimezoneCorrectionEnabled"));
    o.useMovieOptionsQTValuesWithoutShowingSheet =
        prefs.boolForKey(QStringLiteral("useMovieOptionsQTValuesWithoutShowingSheet"));
    o.dateComparisonThresold = int(prefs.integerForKey(QStringLiteral("dateComparisonThresold")));
    o.harmonizingRawJpgsTypeDefault = int(prefs.integerForKey(QStringLiteral("harmonizingRawJpgsTypeDefault")));
    o.sortLPsByMovModifierDefault = int(prefs.integerForKey(QStringLiteral("sortLPsByMovModifierDefault")));
    o.groupDisplayRawJpgPreviewDefault =
        int(prefs.integerForKey(QStringLiteral("groupDisplayRawJpgPreviewDefault")));
    o.sortLPsByMov = prefs.boolForKey(QStringLiteral("sortLPsByMov"));
    return d;
}

KeyStatesAtImport ImportDefaults::keyStatesFor(const HeldKeys &keys, bool addToShelf) const
{
    KeyStatesAtImport k;
    const FolderKind kind = folderKindForKeys(folderType, keys.command, keys.shift);
    k.isCommandKeyDown = kind == FolderKind::Express;
    k.isShiftKeyDown = kind == FolderKind::SlideshowOnly;
    k.isControlKeyDown = separateModeFor(keys, folderMode);
    k.tioAddToShelf = addToShelf;
    return k;
}

TemporaryImportOptions ImportDefaults::sheetPreset(const HeldKeys &keys, bool addToShelf) const
{
    TemporaryImportOptions t;
    t.subFolderAutoImportMaxDepth = subFolderAutoImportMaxDepth;
    t.tioFolderType = folderKindForKeys(folderType, keys.command, keys.shift);
    t.tioEditMode = separateModeFor(keys, folderMode) ? 1 : 0;
    t.tioAddSubfolders = isSubFolderAutoImportEnabled;
    t.tioCorrectDates = fixFinderDateOnImport;
    t.tioGroupFiles = createFileGroups;
    t.prefFixDateDate = prefFixDateDate;
    t.prefFixDateStepValue = prefFixDateStepValue;
    t.prefFixDateStepperKind = prefFixDateStepperKind;
    t.tioFilterValues = tioFilterValues.isEmpty() ? defaultSheetFilter : tioFilterValues;
    t.tioFilterType = tioFilterType;
    t.tioAddToShelf = addToShelf;
    return t;
}

ImportOptions ImportDefaults::importOptionsFor(const KeyStatesAtImport &keyStates) const
{
    ImportOptions o = importOptions;
    o.fixFinderDateOnImport = keyStates.fixFinderDateOnImport.value_or(fixFinderDateOnImport || keyStates.isDKeyDown);
    o.createFileGroups = keyStates.createFileGroups.value_or(createFileGroups);
    return o;
}

bool ImportDefaults::subfoldersEnabledFor(const KeyStatesAtImport &keyStates) const
{
    return keyStates.isSubFolderAutoImportEnabled.value_or(isSubFolderAutoImportEnabled || keyStates.isLKeyDown);
}

} // namespace orv
