#pragma once

#include "folders/ImportQuestions.h"

#include <QPointer>
#include <QWidget>

namespace orv {

class Preferences;

// Answers the import's questions with dialogs over the window, on the main thread (the import
// makes its scan thread wait there). Choices the user will want again next time go back into the
// preferences.
class ImportSheets : public ImportQuestions
{
public:
    ImportSheets(QWidget *window, Preferences &prefs);

    ImportOptions emptyTagOptions(const MySingleFolder &folder) override;
    bool singleImportAlert(qsizetype singleFileCount) override;
    std::optional<TemporaryImportOptions> temporaryImportOptions(const TemporaryImportOptions &preset) override;
    bool singleImportRetry(qsizetype failedFileCount) override;

private:
    QPointer<QWidget> m_window;
    Preferences &m_prefs;
};

} // namespace orv
