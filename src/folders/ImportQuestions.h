#pragma once

#include "folders/ImportKeyStates.h"
#include "core/ImportOptions.h"

#include <optional>

namespace orv {

class MySingleFolder;

// Questions an import asks the user. The window answers them with sheets; tests and the
// command-line tool answer with fixed choices. MyDroppedFolders calls every one of them on its
// own thread (the main thread); while emptyTagOptions is open the scan thread waits for it.
class ImportQuestions
{
public:
    virtual ~ImportQuestions() = default;
    // What to do with date tags that exist but are empty, asked once per folder. The folder's
    // perFolderImportOptions hold the preferences as a preset.
    virtual ImportOptions emptyTagOptions(const MySingleFolder &folder) = 0;
    // Single files were dropped while their import is off in the preferences. True: the user
    // turned it on, and they are imported; false: only the dropped folders are.
    virtual bool singleImportAlert(qsizetype singleFileCount) = 0;
    // The options sheet, preset from the preferences and the keys held. Nothing cancels the drop.
    virtual std::optional<TemporaryImportOptions> temporaryImportOptions(const TemporaryImportOptions &preset) = 0;
    // Files whose folder could not be reached; true tries them once more.
    virtual bool singleImportRetry(qsizetype failedFileCount) = 0;
};

// Always the same answers: for scripts, tests and imports that must not ask. The sheet is
// accepted as preset, single files are allowed, nothing is retried.
class FixedImportAnswers : public ImportQuestions
{
public:
    explicit FixedImportAnswers(ImportOptions options) : m_options(options) {}
    ImportOptions emptyTagOptions(const MySingleFolder &) override { return m_options; }
    bool singleImportAlert(qsizetype) override { return true; }
    std::optional<TemporaryImportOptions> temporaryImportOptions(const TemporaryImportOptions &preset) override
    {
        return preset;
    }
    bool singleImportRetry(qsizetype) override { return false; }

private:
    ImportOptions m_options;
};

} // namespace orv
