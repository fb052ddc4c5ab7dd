#pragma once

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "core/SaveSettings.h"
#include "folders/ImportQuestions.h"
#include "folders/MyDroppedFolders.h"
#include "folders/SaveRun.h"
#include "support/PrivateHomes.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

namespace orv::test {

inline void ensureStatesApplication()
{
    static int argc = 1;
    static char name[] = "tests_states";
    static char *argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
    // The save journal and the quit files go to a test folder, never the user's.
    usePrivateHomes();
}

inline ImportOptions fileDateOptions()
{
    ImportOptions options;
    options.withEmptyExifFixDate = ImportOptions::UseFileDate;
    return options;
}

// One owner of a working set, as the window has it: folders imported by the driver and changed
// through the undoable date changes.
struct WorkingSet
{
    Preferences prefs{QString()};
    FixedImportAnswers answers{fileDateOptions()};
    AppController controller{prefs, answers, QString()};

    void importFolders(const QStringList &paths)
    {
        QList<DropEntry> entries;
        for (const QString &path : paths)
            if (std::optional<DropEntry> entry = DropEntry::pathAndBookmarkFromAccessable(path))
                entries.append(*entry);
        MyDroppedFolders &driver = controller.theDataSource();
        driver.processDroppedFolders(entries, nullptr, 0, KeyStatesAtImport{});
        QEventLoop loop;
        QObject::connect(&driver, &MyDroppedFolders::importEnded, &loop, &QEventLoop::quit);
        QTimer::singleShot(120000, &loop, &QEventLoop::quit);
        if (driver.isImportInProgress())
            loop.exec();
        ASSERT_FALSE(driver.isImportInProgress());
    }
    QList<MySingleFolder *> folders() const { return controller.theDataSource().droppedFolders(); }
};

// Saves the folders as the window does, with one fixed "now" so that two runs compare; answers
// the names of the items the run refused.
inline QStringList saveFolders(const QList<MySingleFolder *> &folders, Instant now)
{
    SaveSettings settings;
    settings.options = NewDateOptions::cachedForRun({}, now);
    FixedSaveAnswers proceed(true, false);
    SaveRun run(folders, settings, proceed);
    run.run();
    QStringList refused;
    for (const MySingleFolder *folder : folders)
        for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
            if (!run.errors().errorIdsFor(*pic).isEmpty())
                refused.append(pic->spName);
    return refused;
}

} // namespace orv::test
