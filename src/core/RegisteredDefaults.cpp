#include "core/RegisteredDefaults.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>
#include <QCoreApplication>
#include <initializer_list>

namespace orv {
namespace {

QByteArray encoded(const QCborArray &archive)
{
    return QCborValue(archive).toCbor();
}

QCborMap cameraPreviewChoice(const char *camera, const char *extension, const char *tag)
{
    return {{QStringLiteral("cam"), QString::fromLatin1(camera)},
            {QStringLiteral("extension"), QString::fromLatin1(extension)},
            {QStringLiteral("tag"), QString::fromLatin1(tag)}};
}

QCborArray defaultCameraPreviewChoices()
{
    return {cameraPreviewChoice("Apple iPhone 4S", "JPG", "2"),
            cameraPreviewChoice("Olympus Imaging Corp. E-510", "ORF", "0"),
            cameraPreviewChoice("Olympus Imaging Corp. XZ-1", "ORF", "0")};
}

QCborArray defaultFolderColors()
{
    const double rgb[][3] = {{0.83, 0.193, 0.232}, {0.178, 0.618, 0.241}, {0.96, 0.52, 0.07},
                             {0, 0.049, 0.853},    {0.6, 0, 0.63},        {0.28, 0.47, 0.06},
                             {0.61, 0.52, 0.16},   {0.15, 0.51, 0.54}};
    QCborArray colors;
    for (const auto &c : rgb)
        colors.append(QCborArray{c[0], c[1], c[2], 1.0});
    return colors;
}

QCborMap textPart(const char *literal)
{
    return {{QStringLiteral("kind"), QStringLiteral("text")},
            {QStringLiteral("textId"), QString::fromLatin1(literal)}};
}

QCborMap elementPart(int element)
{
    return {{QStringLiteral("kind"), QStringLiteral("graphic")},
            {QStringLiteral("textId"), QStringLiteral("%1.tif").arg(element)}};
}

QCborMap renameTemplate(QCborArray parts, int yearOption, int monthOption, int counterOption)
{
    return {{QStringLiteral("stringParts"), parts},
            {QStringLiteral("options"), QCborMap{{QStringLiteral("1.tif"), yearOption},
                                                 {QStringLiteral("2.tif"), monthOption},
                                                 {QStringLiteral("7.tif"), counterOption}}}};
}

QCborArray defaultRenameTemplates()
{
    enum { year = 1, month = 2, day = 3, counter = 7, additionalText = 9 };
    return {
        renameTemplate({textPart("P"), elementPart(month), elementPart(day), elementPart(counter)},
                       1, 0, 3),
        renameTemplate({textPart("DSC"), elementPart(counter)}, 1, 1, 4),
        renameTemplate({textPart("IMG"), textPart("_"), elementPart(counter)}, 1, 1, 3),
        renameTemplate({elementPart(additionalText), textPart("_"), elementPart(counter)}, 1, 1, 2),
        renameTemplate({elementPart(year), textPart("_"), elementPart(month), textPart("_"),
                        elementPart(day), textPart("_"), elementPart(counter)},
                       1, 1, 2),
    };
}

QCborMap filterTemplate(const char *key, const QString &name, const char *predicate)
{
    return {
        {QStringLiteral("key"), QString::fromLatin1(key)},
        {QStringLiteral("name"), name},
        {QStringLiteral("predicate"),
         QCborMap{{QStringLiteral("compound"), QStringLiteral("AND")},
                  {QStringLiteral("subpredicates"), QCborArray{QString::fromLatin1(predicate)}}}}};
}

QCborArray defaultFilterTemplates()
{
    return {
        filterTemplate("1", QCoreApplication::translate("filter_ratingDefault_0", "Not rejected"),
                       "filter_rating !=[cd] -1"),
        filterTemplate("2", QCoreApplication::translate("filter_ratingDefault_1", "Keepers"),
                       "filter_rating ==[cd] 1"),
        filterTemplate("3", QCoreApplication::translate("filter_miscDefault_0", "Misc. state 6"),
                       "filter_miscState ==[cd] 6"),
        filterTemplate("4", QCoreApplication::translate("filter_miscDefault_1", "Media type 1"),
                       "filter_mediaType ==[cd] 1"),
    };
}

} // namespace

QVariantHash registeredDefaults()
{
    QVariantHash table;
    const auto addStrings = [&table](const char *value, std::initializer_list<const char *> keys) {
        for (const char *key : keys)
            table.insert(QString::fromLatin1(key), QString::fromLatin1(value));
    };
    const auto addNumbers = [&table](double value, std::initializer_list<const char *> keys) {
        for (const char *key : keys)
            table.insert(QString::fromLatin1(key), value);
    };

    // clang-format off
    addStrings("0", {
        "useCamSpecificDisplayValues", "preViewTabIndexLastOpen", "prefAdvancedSubTabIndexLastOpen",
        "prefEXIFChangesTabIndexLastOpen", "prefNoEXIFChangesTabIndexLastOpen", "renameAtSave",
        "prefFixDateStepperKind", "templateSelectedIndex", "sortedTemplatesSelectedIndex",
        "skipEmptyTagImportOptions", "dateChangeEXIFFinderCreaDate2", "dateChangeEXIFFinderModDate",
        "dateCorrectionEXIFFinderCreaDate3", "dateCorrectionEXIFFinderModDate", "errorLogType",
        "syncXMPDataOnSave", "prefVersion", "movingPicAlertSuppressed",
        "trashingPicAlertSuppressed", "removeKeepersAlertSuppressed",
        "removeChaptersAlertSuppressed", "isAdvanced", "spaceKeyType", "wasFullScreenOnQuit",
        "autoThumbMode", "folderMode", "useMovieOptionsQTValuesWithoutShowingSheet",
        "isMVHDTimezoneCorrectionEnabled", "isMLWindowOpenWorkaroundNecessary",
        "isFSPUpscalingEnabled", "usePopoverAltSize", "usePopoverAltSizeFullscreen",
        "usePopoverAltSizeVQS_STD", "usePopoverAltSizePREV_STD", "savingStateIsDefaultOption",
        "isSubFolderAutoImportEnabled", "suffixVisibility", "suffixChangeCase",
        "slideshowTransitionAnim", "fspMovieAutostartOnOpen", "fspHideAllMarkersOnPlayback",
        "displayFspVqsLabels", "locationShowPOI", "locationShowBuildings",
        "mapCursorKeysNavigateInsteadOfSelect", "mapSelectMediaWithoutLocationDataToo",
        "mapFilter_enabled", "mapFilter_UIVisible", "mapFilter_type", "tioFilterType",
        "createFileGroupsOnMovingFilesToo", "preferredGroupVisibleInBiv",
        "usesRawPlusJpgAlternativeDisplay", "vqsTheme", "vqsFspUsesAlternativeSelection",
        "vqsFspDimsNonKeepers", "vqsPreviewBarPosition",
        "vqsFspUsesHigherResScrollingAtTheCostOfMuchRam", "camSpecificMode",
        "stateTrayIsExpertModeEnabled", "stateTraySortDirectionSearch",
        "subfolderTraySortDirection", "stateTrayIgnoreWindowData",
        "stateTrayPrefersAlwaysDeletingDirectly", "stateTrayIsExpertModeHintSuppressed",
        "searchFilterBarCollapsed", "writeRatingsToXMPOnSave"
    });
    addStrings("1", {
        "counterType", "dateChangeEXIFEXIFDigiDate", "dateChangeEXIFEXIFModDate",
        "dateChangeEXIFEXIFDigiDateUnchangedOption", "dateChangeEXIFEXIFModDateUnchangedOption",
        "dateChangeEXIFFinderModDateEXIFModDateOptions",
        "dateChangeEXIFFinderModDateEXIFModDateUnchangedOption",
        "dateChangeEXIFFinderModDateUnchangedOption", "dateChangeEXIFChangeFinderWhenChangingEXIF",
        "dateChangeNoEXIFFinderModDateUnchangedOption",
        "dateChangeNoEXIFButTIFFFinderModDateUnchangedOption",
        "dateCorrectionEXIFFinderModDateEXIFModDateOptions",
        "dateCorrectionEXIFFinderModDateEXIFModDateUnchangedOption",
        "dateCorrectionEXIFFinderModDateUnchangedOption", "renameCounterStartOption",
        "renameCounterStartValue", "syncGPSDataOnSave", "syncGPSDataOnSaveType",
        "setPositioningErrorsToZeroOnChange", "isSlideshowOnlyAltMode", "searchCategory",
        "folderType", "isMDTADateEnabled", "isCachedThumbSizeOptionAllowed", "usePopoverAltSizeVQS",
        "usePopoverAltSizePREV", "includeThumbsInStateFiles", "includeThumbsInStateFilesTray",
        "modAtRenameFolder", "modAtRenameFile", "useNameAtImportAsSourceName",
        "frontDotHandlingMode", "shouldEnterFullscreenForSlideshow", "enableMainUITransparency",
        "enableVQSPrevsTransparency", "displayTimelineLabels", "displayTimelineDstMarkers",
        "displayVqsLabels", "shouldShowLocationIcons", "autoBGThumbGeneration",
        "locationFoldersFilter", "locationPreviewState", "locationAutoCam", "mapFilter_value_type2",
        "mapFilter_hideOthers", "mapFilter_alwaysShowAllSelected", "createFileGroups",
        "vqsSelectionArePreviewsVisible", "highlightEmptyMetaTags", "highlightMinorDateDifferences",
        "highlightMediaWithoutEmbeddedMetas", "highlightMediaPreferringFileDate",
        "highlightUnsavedChangesInAltogetherMode", "highlightLivePhotoComps",
        "highlightGroupDivergence", "autoShowAlertTextPopover", "stateTraySortDirection",
        "stateTraySortTypeSearch", "subfolderTraySortType", "jumpMarkerSize", "chapterThumbSize",
        "timelinesSelectionsMode", "timelinesSelectionsMode_mirrored",
        "livePhotoPreviewCompensationType", "livePhotoPreviewDurationAndSpeedType",
        "shouldShowTempMoviePreviews", "shouldShowTempTiffPreviews",
        "addRawLocationsOnlyInSidecars", "useMonoFolderColors", "isSplitRotated"
    });
    addStrings("2", {
        "withEmptyExifFixDate", "previewType", "fspRawPreviewType", "dateChangeNoEXIFFinderModDate",
        "dateChangeNoEXIFButTIFFMetaModDate", "dateChangeNoEXIFButTIFFFinderModDate",
        "cachedThumbSizeMode", "previewsCacheMinimumVisiblesMultiplier", "locationPinLimit",
        "mapFilter_value_type1", "diffTimezoneImportOptionDefault"
    });
    addStrings("3", {
        "dateComparisonThresold", "autoThumbModeMovies", "subFolderAutoImportMaxDepth",
        "livePhotoPreviewType"
    });
    addStrings("4", {
        "stateTraySortType"
    });
    addStrings("5", {
        "slideDuration"
    });
    addStrings("6", {
        "keepersSyncLabelValue", "mapFilter_value_type4"
    });
    addStrings("10", {
        "prefFixDateStepValue", "locationFoldersFilterSelection"
    });
    addStrings("15", {
        "previewsCachedMegaPixels", "mapFilter_value_type0", "tzcUISizeMode", "psaUISizeMode",
        "tzcUISizeMode_FS", "psaUISizeMode_FS"
    });
    addStrings("100", {
        "stateTrayUISizeMode"
    });
    addStrings("128", {
        "timelineHeight_STD"
    });
    addStrings("150", {
        "timelineHeight_FUS"
    });
    addStrings("200", {
        "loupeSize"
    });
    addStrings("230", {
        "timelineTargetHeight_STD"
    });
    addStrings("250", {
        "locationPreviewWidth", "timelineTargetHeight_FUS"
    });
    addStrings("256", {
        "thumbCacheMegabytes"
    });
    addStrings("300", {
        "vqsSelectionPreviewsHeight_STD", "vqsSelectionPreviewsWidth_STD", "searchFilterBarWidth"
    });
    addStrings("330", {
        "searchFilterBarWidth_FUS"
    });
    addNumbers(373.0, {
        "mainWindowDividerPos_STD", "mainWindowDividerPos_FUS"
    });
    addNumbers(286.0, {
        "mainWindowDividerPos9_STD", "mainWindowDividerPos9_FUS"
    });
    addNumbers(87.0, {
        "vqsThumbSizeTargetValueSelection", "vqsThumbSizeTargetValueSelection_STD"
    });
    addNumbers(126.0, {
        "vqsThumbSizeTargetValueFSP", "vqsThumbSizeTargetValueFSP_STD"
    });
    addStrings("400", {
        "vqsSelectionPreviewsHeight"
    });
    addStrings("500", {
        "vqsSelectionPreviewsWidth"
    });
    addStrings("", {
        "additionalText", "additionalText2", "additionalText3", "tioFilterValues"
    });
    addStrings("/", {
        "stateTraySubfolderPath"
    });
    // clang-format on
    table.insert(QStringLiteral("fixFinderDateOnImport"), false);

    table.insert(QStringLiteral("specValues_7"), encoded(defaultCameraPreviewChoices()));
    table.insert(QStringLiteral("specValues2"), encoded({}));
    table.insert(QStringLiteral("folderColors_7"), encoded(defaultFolderColors()));
    table.insert(QStringLiteral("advancedBookmarks_7"), encoded({}));
    table.insert(QStringLiteral("renameTemplates_7"), encoded(defaultRenameTemplates()));
    table.insert(QStringLiteral("filterTemplates"), encoded(defaultFilterTemplates()));
    return table;
}

} // namespace orv
