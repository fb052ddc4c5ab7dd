#include "states/WindowsData.h"

#include "core/Preferences.h"
#include "states/StateFiles.h"

#include <QCborMap>
#include <QCborValue>
#include <QDir>
#include <QFile>

#include <array>

using namespace Qt::StringLiterals;

namespace orv {

namespace {

// Settings kept under their own names.
constexpr std::array layoutSettings = {
    "timelineHeight_STD", "timelineHeight_FUS", "timelineTargetHeight_STD", "timelineTargetHeight_FUS",
    "mainWindowDividerPos_STD", "mainWindowDividerPos_FUS", "mainWindowDividerPos9_STD",
    "mainWindowDividerPos9_FUS", "folderTableHeightVqs_STD", "folderTableHeightVqs_FUS", "locationFoldersFilter",
    "locationPreviewWidth", "locationPreviewState", "vqsSelectionPreviewsHeight", "vqsSelectionPreviewsHeight_STD",
    "vqsSelectionPreviewsWidth", "vqsSelectionPreviewsWidth_STD", "vqsPreviewBarPosition", "usePopoverAltSizeVQS",
    "usePopoverAltSizeVQS_STD", "usePopoverAltSizePREV", "usePopoverAltSizePREV_STD",
    "vqsSelectionArePreviewsVisible", "vqsThumbSizeTargetValueSelection", "vqsThumbSizeTargetValueFSP",
    "vqsThumbSizeTargetValueSelection_STD", "vqsThumbSizeTargetValueFSP_STD", "searchFilterBarWidth",
    "searchFilterBarWidth_FUS", "searchFilterBarCollapsed", "jumpMarkerSize", "chapterThumbSize",
    "mapFilter_enabled", "mapFilter_useTrackInterval", "mapFilter_trackIntervalScope", "mapFilter_UIVisible",
    "mapFilter_type", "mapFilter_value_type0", "mapFilter_value_type1", "mapFilter_value_type2",
    "mapFilter_value_type4", "mapFilter_hideOthers", "mapFilter_alwaysShowAllSelected", "isTrackUiMinimized",
    "isSplitRotated", "isFolderUIClosed_STD"};

// Settings kept under a fixed number (extendedSettings), so that a setting may be renamed
// without losing what older states kept; the number is the place in this list, from 1.
constexpr std::array extendedSettings = {
    "displayLocationLabels", "displayTimelineLabels", "displayVqsLabels", "displayFspVqsLabels",
    "isFSPUpscalingEnabled", "livePhotoPreviewType", "livePhotoPreviewCompensationType",
    "livePhotoPreviewDurationAndSpeedType", "slideshowPlaybackDefaultType", "slideshowPlaybackMovieStartType",
    "useAnimatedTransitionDuringSlideshow", "shouldEnterFullscreenForSlideshow", "fspHideAllMarkersOnPlayback",
    "vqsFspDimsNonKeepers", "vqsFspUsesAlternativeSelection", "loupeSize", "isSlideshowOnlyAltMode",
    "fspRawPreviewType", "slideDuration", "usesRawPlusJpgAlternativeDisplay", "livePhotoExportQuality",
    "livePhotoExportDuration", "livePhotoExportAudio", "livePhotoExportSize", "livePhotoExportRate",
    "movieStillsQuality1", "movieStillsQuality2", "movieStillsFormat", "movieStillsExportAsLivePhotos",
    "movieStillsUsesDefaultLocation", "movieStillsDidViewHelp", "movieStillsImportsResultingFolders",
    "extraTLsScrollArea", "sortLPsByMov", "preferredGroupVisibleInBiv", "stateTrayUISizeMode", "locationPinLimit",
    "displayTimelineDstMarkers", "displayTimelineGaps", "highlightEmptyMetaTags", "highlightMinorDateDifferences",
    "highlightMediaWithoutEmbeddedMetas", "highlightMediaPreferringFileDate",
    "highlightUnsavedChangesInAltogetherMode", "highlightLivePhotoComps", "enableVQSPrevsTransparency",
    "enableMainUITransparency", "renameSheetSizeStd", "renameSheetSizeFS", "tzcSheetSizeStd", "tzcSheetSizeFS",
    "tzcUISizeMode", "tzcUISizeMode_FS", "psaSheetSizeStd", "psaSheetSizeFS", "psaUISizeMode", "psaUISizeMode_FS",
    "seaSheetSizeStd", "seaSheetSizeFS", "previewType", "autoBGThumbGeneration", "autoThumbMode",
    "locationMapType", "locationAutoCam", "locationShowBuildings", "locationShowPOI",
    "locationFoldersFilterSelection", "mapCursorKeysNavigateInsteadOfSelect",
    "mapSelectMediaWithoutLocationDataToo", "useAltKeyNav_TL", "dateCorrectionEXIFFinderCreaDate3",
    "dateCorrectionEXIFFinderModDate", "dateCorrectionEXIFFinderModDateUnchangedOption",
    "dateCorrectionEXIFFinderModDateEXIFModDateOptions",
    "dateCorrectionEXIFFinderModDateEXIFModDateUnchangedOption", "dateChangeEXIFEXIFDigiDate",
    "dateChangeEXIFEXIFDigiDateUnchangedOption", "dateChangeEXIFEXIFModDate",
    "dateChangeEXIFEXIFModDateUnchangedOption", "dateChangeEXIFChangeFinderWhenChangingEXIF",
    "dateChangeEXIFFinderCreaDate2", "dateChangeEXIFFinderModDate", "dateChangeEXIFFinderModDateUnchangedOption",
    "dateChangeEXIFFinderModDateEXIFModDateOptions", "dateChangeEXIFFinderModDateEXIFModDateUnchangedOption",
    "dateChangeNoEXIFFinderModDate", "dateChangeNoEXIFFinderModDateUnchangedOption",
    "dateChangeNoEXIFButTIFFMetaModDate", "dateChangeNoEXIFButTIFFFinderModDate",
    "dateChangeNoEXIFButTIFFFinderModDateUnchangedOption"};

const QString versionKey = u"uiDataStateFileVersion"_s;
const QString frameKey = u"mainWindowFrame"_s;
const QString barsKey = u"mainWindowBars"_s;
const QString extendedKey = u"extendedSettings"_s;

} // namespace

QVariantMap WindowsData::settingsOf(const Preferences &prefs)
{
    QVariantMap settings;
    const auto take = [&](const char *name) {
        const QString key = QString::fromLatin1(name);
        if (const QVariant value = prefs.valueForKey(key); value.isValid())
            settings.insert(key, value);
    };
    std::ranges::for_each(layoutSettings, take);
    std::ranges::for_each(extendedSettings, take);
    return settings;
}

void WindowsData::applySettings(Preferences &prefs) const
{
    for (auto it = settings.cbegin(); it != settings.cend(); ++it)
        if (prefs.valueForKey(it.key()) != it.value())
            prefs.setValueNotifying(it.key(), it.value());
}

QByteArray WindowsData::toCbor() const
{
    QCborMap root{{versionKey, fileVersion}, {frameKey, mainWindowFrame}, {barsKey, mainWindowBars}};
    QCborMap extended;
    for (std::size_t i = 0; i < extendedSettings.size(); ++i)
        if (const QVariant value = settings.value(QString::fromLatin1(extendedSettings[i])); value.isValid())
            extended.insert(QString::number(i + 1), QCborValue::fromVariant(value));
    for (const char *name : layoutSettings)
        if (const QVariant value = settings.value(QString::fromLatin1(name)); value.isValid())
            root.insert(QString::fromLatin1(name), QCborValue::fromVariant(value));
    root.insert(extendedKey, extended);
    return root.toCborValue().toCbor();
}

std::optional<WindowsData> WindowsData::fromCbor(const QByteArray &data)
{
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(data, &error);
    if (error.error != QCborError::NoError || !value.isMap())
        return std::nullopt;
    const QCborMap root = value.toMap();
    if (root.value(versionKey).toInteger() != fileVersion)
        return std::nullopt;
    WindowsData kept;
    kept.mainWindowFrame = root.value(frameKey).toByteArray();
    kept.mainWindowBars = root.value(barsKey).toByteArray();
    // A value of a kind no setting takes (a map, an array) is left out, never applied.
    const auto keep = [&kept](const char *name, const QCborValue &value) {
        if (!value.isUndefined() && !value.isMap() && !value.isArray() && !value.isNull())
            kept.settings.insert(QString::fromLatin1(name), value.toVariant());
    };
    for (const char *name : layoutSettings)
        keep(name, root.value(QString::fromLatin1(name)));
    const QCborMap extended = root.value(extendedKey).toMap();
    for (std::size_t i = 0; i < extendedSettings.size(); ++i)
        keep(extendedSettings[i], extended.value(QString::number(i + 1)));
    return kept;
}

std::optional<WindowsData> WindowsData::ofPackage(const QString &statePath)
{
    QFile file(QDir(statePath).filePath(StateFiles::windowsDataName));
    return file.open(QIODevice::ReadOnly) ? fromCbor(file.readAll()) : std::nullopt;
}

} // namespace orv
