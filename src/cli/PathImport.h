#pragma once

#include "app/AppController.h"
#include "core/Preferences.h"
#include "folders/ImportKeyStates.h"
#include "core/ImportOptions.h"
#include "folders/ImportQuestions.h"

#include <QList>
#include <QStringList>
#include <QTextStream>

namespace orv {

class MySingleFolder;

// The folders the command-line tool makes of its PATH arguments, imported through the same
// owner and driver as a drop on the window, to the end, with fixed answers: a script is never
// asked. Problems are said on `err`, and the rest imports. Changes to the folders go through
// controller(), as the window's do.
class PathImport
{
public:
    struct Settings
    {
        qint64 subfolderDepth = 0;
        KeyStatesAtImport keys;
        ImportOptions emptyTags = fileDateForEmptyTags();
    };

    PathImport(const QStringList &paths, const Settings &settings, QTextStream &err);

    QList<MySingleFolder *> folders() const;
    AppController &controller() { return m_controller; }
    // Some path did not exist, could not be read, or a file of it could not be imported.
    bool failed() const { return m_failed; }

    static ImportOptions fileDateForEmptyTags();

private:
    Preferences m_prefs;
    FixedImportAnswers m_answers;
    AppController m_controller;
    bool m_failed = false;
};

} // namespace orv
