#pragma once

#include "folders/ImportOptions.h"

namespace orv {

class MySingleFolder;

// Questions an import asks the user. The window answers them with sheets; tests and the
// command-line tool answer with fixed choices. Called from the scan thread, which waits for the
// answer.
class ImportQuestions
{
public:
    virtual ~ImportQuestions() = default;
    // What to do with date tags that exist but are empty, asked once per folder.
    virtual ImportOptions emptyTagOptions(const MySingleFolder &folder) = 0;
};

// Always the same answer: for scripts, tests and imports that must not ask.
class FixedImportAnswers : public ImportQuestions
{
public:
    explicit FixedImportAnswers(ImportOptions options) : m_options(options) {}
    ImportOptions emptyTagOptions(const MySingleFolder &) override { return m_options; }

private:
    ImportOptions m_options;
};

} // namespace orv
