#include "core/SaveSettings.h"

#include "core/Preferences.h"
#include "formats/SaveJournal.h"

#include <QDateTime>

namespace orv {

SaveSettings SaveSettings::fromPreferences(const Preferences &prefs, Instant now)
{
    const auto number = [&prefs](const char *key) {
        return int(prefs.integerForKey(QLatin1String(key)));
    };
    NewDateOptions o;
    o.dateChangeNoEXIFFinderModDate = number("dateChangeNoEXIFFinderModDate");
    o.dateChangeNoEXIFFinderModDateUnchangedOption =
        number("dateChangeNoEXIFFinderModDateUnchangedOption");
    o.dateChangeNoEXIFButTIFFMetaModDate = number("dateChangeNoEXIFButTIFFMetaModDate");
    o.dateChangeNoEXIFButTIFFFinderModDate = number("dateChangeNoEXIFButTIFFFinderModDate");
    o.dateChangeNoEXIFButTIFFFinderModDateUnchangedOption =
        number("dateChangeNoEXIFButTIFFFinderModDateUnchangedOption");
    o.dateChangeEXIFEXIFDigiDate = number("dateChangeEXIFEXIFDigiDate");
    o.dateChangeEXIFEXIFDigiDateUnchangedOption =
        number("dateChangeEXIFEXIFDigiDateUnchangedOption");
    o.dateChangeEXIFEXIFModDate = number("dateChangeEXIFEXIFModDate");
    o.dateChangeEXIFEXIFModDateUnchangedOption = number("dateChangeEXIFEXIFModDateUnchangedOption");
    o.dateChangeEXIFChangeFinderWhenChangingEXIF =
        number("dateChangeEXIFChangeFinderWhenChangingEXIF");
    o.dateChangeEXIFFinderCreaDate2 = number("dateChangeEXIFFinderCreaDate2");
    o.dateChangeEXIFFinderModDate = number("dateChangeEXIFFinderModDate");
    o.dateChangeEXIFFinderModDateEXIFModDateOptions =
        number("dateChangeEXIFFinderModDateEXIFModDateOptions");
    o.dateChangeEXIFFinderModDateEXIFModDateUnchangedOption =
        number("dateChangeEXIFFinderModDateEXIFModDateUnchangedOption");
    o.dateChangeEXIFFinderModDateUnchangedOption =
        number("dateChangeEXIFFinderModDateUnchangedOption");
    o.dateComparisonThresold = number("dateComparisonThresold");
    o.isSavingPhotosWithoutDateChangesEnabled =
        prefs.boolForKey(QStringLiteral("isSavingPhotosWithoutDateChangesEnabled"));
    o.dateChangeTypeAtLocationOnlyChanges = number("dateChangeTypeAtLocationOnlyChanges");
    o.addRawLocationsOnlyInSidecars =
        prefs.boolForKey(QStringLiteral("addRawLocationsOnlyInSidecars"));

    SaveSettings settings;
    settings.options = NewDateOptions::cachedForRun(o, now);
    settings.syncGPSDataOnSave = prefs.boolForKey(QStringLiteral("syncGPSDataOnSave"));
    settings.syncGPSDataOnSaveType = prefs.boolForKey(QStringLiteral("syncGPSDataOnSaveType"));
    settings.syncXMPDataOnSave = prefs.boolForKey(QStringLiteral("syncXMPDataOnSave"));
    settings.setPositioningErrorsToZeroOnChange =
        prefs.boolForKey(QStringLiteral("setPositioningErrorsToZeroOnChange"));
    settings.writeRatingsToXMPOnSave = prefs.boolForKey(QStringLiteral("writeRatingsToXMPOnSave"));
    settings.journalPath = SaveJournal::defaultPath();
    return settings;
}

Instant currentInstant()
{
    return Instant(double(QDateTime::currentMSecsSinceEpoch()) / 1000.0);
}

} // namespace orv
