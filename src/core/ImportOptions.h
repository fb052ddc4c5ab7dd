#pragma once

#include "time/Instant.h"

namespace orv {

// What the scan does with a date tag that exists but holds an empty stamp, chosen once per
// folder (or fixed by the caller) and cached on the folder for the rest of its import.
struct ImportOptions
{
    enum EmptyTagChoice : int { NotChosen = 0, UseFileDate = 2, UseFixedDate = 3 };

    int withEmptyExifFixDate = NotChosen;
    OptionalDate prefFixDateDate;
    double prefFixDateStepValue = 0.0;
    int prefFixDateStepperKind = 0; // 0 seconds, 1 minutes, 2 or more hours
    double intervalStepper = 0.0;   // running sum of steps, in seconds
    bool skipEmptyTagImportOptions = false;
    bool fixFinderDateOnImport = false;
    bool createFileGroups = true;
    bool createFileGroupsOnMovingFilesToo = false;
    bool isMDTADateEnabled = true;
    bool isMVHDTimezoneCorrectionEnabled = true;
    bool useMovieOptionsQTValuesWithoutShowingSheet = false;
    int dateComparisonThresold = 1;
    // What a folder's group settings become when its first groups form.
    int harmonizingRawJpgsTypeDefault = 0;
    int sortLPsByMovModifierDefault = 0;
    int groupDisplayRawJpgPreviewDefault = 0;
    bool sortLPsByMov = false;

    bool isChosen() const { return withEmptyExifFixDate != NotChosen; }
    // Takes the user's empty-tag answer and keeps the rest, which came from the preferences;
    // an answer without a choice means the file date.
    void takeEmptyTagAnswer(const ImportOptions &answer)
    {
        withEmptyExifFixDate = answer.isChosen() ? answer.withEmptyExifFixDate : int(UseFileDate);
        prefFixDateDate = answer.prefFixDateDate;
        prefFixDateStepValue = answer.prefFixDateStepValue;
        prefFixDateStepperKind = answer.prefFixDateStepperKind;
        intervalStepper = 0.0;
    }
    // Values below 3 read as "use the file date".
    bool usesFixedDate() const { return withEmptyExifFixDate >= UseFixedDate; }
    double stepInSeconds() const
    {
        const double unit = prefFixDateStepperKind <= 0 ? 1.0 : prefFixDateStepperKind == 1 ? 60.0 : 3600.0;
        return prefFixDateStepValue * unit;
    }
};

} // namespace orv
