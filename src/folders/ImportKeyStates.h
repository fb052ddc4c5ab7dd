#pragma once

#include "core/ImportOptions.h"
#include "time/Instant.h"

#include <QString>
#include <qnamespace.h>

#include <optional>

namespace orv {

class Preferences;

// The keys held, by the role they play: one rule for every gesture (docs/import.md). Ctrl is
// Command, Alt is Option, Meta (Super) is Control. At a drop: Ctrl express import, Shift
// slideshow-only, Meta separate edit mode, Alt the options sheet.
struct HeldKeys
{
    bool command = false;
    bool shift = false;
    bool control = false;
    bool option = false;

    static HeldKeys fromModifiers(Qt::KeyboardModifiers modifiers);
};

// Values of the sheet's folder type, and what the held keys choose.
enum class FolderKind : int { Normal = 0, Express = 1, SlideshowOnly = 2 };

// The preference folderType makes one kind the default; the keys then toggle away from it.
FolderKind folderKindForKeys(qint64 folderType, bool command, bool shift);

struct AdaptedTimeZone
{
    QString tioAdaptedValue;
    bool tioIsAltTargetMode = false;
    bool operator==(const AdaptedTimeZone &) const = default;
};

// How one drop is imported, kept by each of its folders while they import. The three optional
// switches come only from the options sheet and then override the preferences of the same name.
struct KeyStatesAtImport
{
    bool isCommandKeyDown = false; // express
    bool isShiftKeyDown = false;   // slideshow-only
    bool isControlKeyDown = false; // separate edit mode
    // Read by the import but never set by any producer: D would correct dates, K choose the
    // slideshow variation 4, L take subfolders without limit.
    bool isDKeyDown = false;
    bool isKKeyDown = false;
    bool isLKeyDown = false;
    bool tioAddToShelf = false;
    QString tioFilterValues; // "" filters nothing
    int tioFilterType = 0;   // ImportFilter::Type
    std::optional<bool> createFileGroups;
    std::optional<bool> isSubFolderAutoImportEnabled;
    std::optional<bool> fixFinderDateOnImport;
    bool tioDateSequenceEnabled = false;
    OptionalDate tioDateSequenceDate;
    qint64 tioDateSequenceStepValue = 0;
    qint64 tioDateSequenceStepperKind = 0; // 0 seconds, 1 minutes, 2 hours
    std::optional<AdaptedTimeZone> tioAdaptedTZ;

    // modifyImportBecauseOfCommand: 3 or 4 slideshow-only, 1 express, 0 normal.
    int importKind() const;
    double dateSequenceStepInSeconds() const;
};

// The import sheet's values: preset from the preferences and the held keys, edited by the user,
// turned into the key states of the drop.
struct TemporaryImportOptions
{
    // What the sheet tells about the drop (read-only for the sheet).
    enum PartialsState : int { SingleFilesAllowed = 0, NoSingleFiles = 1, SingleFilesRefused = 2 };
    int tioHasCurrentImportPartialsState = SingleFilesAllowed;
    qint64 subFolderAutoImportMaxDepth = 3;

    FolderKind tioFolderType = FolderKind::Normal;
    int tioEditMode = 0; // 0 together, 1 separate
    bool tioAddSubfolders = false;
    bool tioCorrectDates = false;
    bool tioGroupFiles = true;
    bool tioDateSequenceEnabled = false;
    OptionalDate prefFixDateDate;
    qint64 prefFixDateStepValue = 10;
    qint64 prefFixDateStepperKind = 0;
    bool tioFilterEnabled = false;
    QString tioFilterValues;
    int tioFilterType = 0;
    bool tioAdaptedTZEnabled = false;
    AdaptedTimeZone tioAdaptedTZ;
    bool tioAddToShelf = false;

    KeyStatesAtImport keyStatesAtImport() const;
};

// The preferences an import reads, taken once per drop.
struct ImportDefaults
{
    qint64 folderType = 1;
    qint64 folderMode = 0;
    bool isAdvanced = false;
    bool isAlwaysShowOptionsDisabled = false;
    bool isSubFolderAutoImportEnabled = false;
    qint64 subFolderAutoImportMaxDepth = 3;
    bool createFileGroups = true;
    bool fixFinderDateOnImport = false;
    QString tioFilterValues;
    int tioFilterType = 0;
    OptionalDate prefFixDateDate;
    qint64 prefFixDateStepValue = 10;
    qint64 prefFixDateStepperKind = 0;
    ImportOptions importOptions; // the rest, for each folder's run

    static ImportDefaults fromPreferences(const Preferences &prefs);

    // Whether the options sheet is to be asked for a drop with these keys.
    bool showsOptionsSheet(const HeldKeys &keys) const { return keys.option || !isAlwaysShowOptionsDisabled; }
    // A drop without the sheet: the keys and the preferences decide.
    KeyStatesAtImport keyStatesFor(const HeldKeys &keys, bool addToShelf) const;
    TemporaryImportOptions sheetPreset(const HeldKeys &keys, bool addToShelf) const;
    // The options of one folder's import run: the preferences, overridden by the sheet.
    ImportOptions importOptionsFor(const KeyStatesAtImport &keyStates) const;
    bool subfoldersEnabledFor(const KeyStatesAtImport &keyStates) const;
};

} // namespace orv
