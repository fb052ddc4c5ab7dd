#pragma once

#include "folders/FolderToken.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace orv {

class ImportQuestions;
class MySingleFolder;
struct ImportDefaults;

// The scan of one folder on the scan thread: which names to read (a waiting batch, or the
// directory's listing through the filter), the subfolders to queue, and the items. The bytes of
// many files are read at once on all cores, then the items are made in the order of the list, so
// that dates drawn from import options come out the same on every run. Items wait in the
// folder's picsImportedAndTempStoredUntilAllReady for their publication on the main thread.
class FolderScanner
{
public:
    struct Subfolder
    {
        QString path;
        FolderToken token;
    };

    // What the scan may know of the folder's extent, taken on the main thread when it starts.
    struct ImportScope
    {
        bool isPartial = false; // the folder holds only some of the directory's files
        bool isWidening = false; // this scan makes a partial folder whole
    };

    struct Result
    {
        QList<Subfolder> subfolders;
        bool wasStopped = false; // shouldStopImport was seen; the staged items are incomplete
        // Whether the folder holds only some of the directory's files once this scan is
        // published; the publication writes it into the folder, on the main thread.
        bool isPartial = false;
    };

    // Steps done and their total: one per name read, one per name turned into an item, and
    // the last one is the publication's.
    using ProgressCallback = std::function<void(qint64 done, qint64 total)>;

    FolderScanner(MySingleFolder &folder, ImportQuestions &questions, const ImportDefaults &defaults,
                  ImportScope scope);

    Result updatePicData(const ProgressCallback &progress);

    // The names in a directory, files and subfolders, in the order a person would sort them.
    static QStringList namesIn(const QString &directory);
    // How many files are read at once between two looks at shouldStopImport.
    static constexpr qsizetype filesPerRound = 128;

private:
    void prepareImportOptions();
    // Nothing when the directory cannot be listed; the error is recorded.
    std::optional<QStringList> namesToImport(const QString &directory, Result &result);
    void takeSubfolder(const QString &path, Result &result);
    bool readAndBuild(const QString &directory, const QStringList &files, qint64 &done, qint64 total,
                      const ProgressCallback &progress, Result &result);
    void reportMissingFiles(const QString &directory, const QStringList &missing);

    MySingleFolder &m_folder;
    ImportQuestions &m_questions;
    const ImportDefaults &m_defaults;
    const ImportScope m_scope;
};

} // namespace orv
