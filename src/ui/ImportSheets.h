#pragma once

#include "folders/ImportQuestions.h"

#include <QPointer>
#include <QWidget>

namespace orv {

class Preferences;

// Answers the import's questions with dialogs over the window. The scan thread calls in and
// waits while the dialog runs on the main thread; the answers the user may want again next
// time go back into the preferences.
class ImportSheets : public ImportQuestions
{
public:
    ImportSheets(QWidget *window, Preferences &prefs);

    ImportOptions emptyTagOptions(const MySingleFolder &folder) override;

private:
    ImportOptions askEmptyTagOptions(const MySingleFolder &folder);
    // Runs ask on the main thread, waiting for it when called from another one.
    template <typename Answer, typename Ask>
    Answer onMainThread(Ask ask);

    QPointer<QWidget> m_window;
    Preferences &m_prefs;
};

} // namespace orv
