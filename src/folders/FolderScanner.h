#pragma once

#include "core/PicScanner.h"
#include "folders/FolderToken.h"
#include "folders/ImportErrors.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

namespace orv {

class ImportQuestions;
class MySingleFolder;
struct ImportDefaults;

// The scan of one folder on the scan thread: which names to read (a waiting batch, or the
// directory's listing through the filter), the subfolders to queue, and the items. The bytes of
// many files are read at once on all cores, then the items are made in the order of the list, so
// that dates drawn from import options come out the same on every run.
// The main thread owns the folder. What the scan needs of it that can change is taken there when
// the scan starts (ImportScope), and everything the scan makes (items, errors, stepped options)
// travels back in the Result, which the main thread publishes into the folder. The scan itself
// reads only what is fixed before it starts (the path, token, keys and depth) and the lock-guarded
// batches of names.
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
        QSet<QString> importedNames;  // the folder's items, which the scan leaves alone
        ItemScanContext items;
    };

    // The scope of a scan about to start: the import options of this run (which the folder keeps
    // from now on) and the folder's flags. On the main thread.
    static ImportScope scopeFor(MySingleFolder &folder, const ImportDefaults &defaults);

    struct Result
    {
        QList<Subfolder> subfolders;
        bool wasStopped = false; // shouldStopImport was seen; the staged items are incomplete
        // Whether the folder holds only some of the directory's files once this scan is
        // published; the publication writes it into the folder, on the main thread.
        bool isPartial = false;
        std::vector<std::unique_ptr<MySinglePic>> pics; // in the order they were read
        ImportErrors errors;
        ItemScanContext items; // the options as stepped, the fixed dates, the sidecar paths
    };

    // Steps done and their total: one per name read, one per name turned into an item, and
    // the last one is the publication's.
    using ProgressCallback = std::function<void(qint64 done, qint64 total)>;

    FolderScanner(MySingleFolder &folder, ImportQuestions &questions, const ImportDefaults &defaults,
                  ImportScope scope);

    // Publishes a finished scan into its folder, on the main thread; the items are the caller's
    // to place.
    static void takeResult(MySingleFolder &folder, Result &result);

    Result updatePicData(const ProgressCallback &progress);

    // The names in a directory, files and subfolders, in the order a person would sort them.
    static QStringList namesIn(const QString &directory);
    // How many files are read at once between two looks at shouldStopImport.
    static constexpr qsizetype filesPerRound = 128;

private:
    void scanInto(Result &result, const ProgressCallback &progress);
    // Nothing when the directory cannot be listed; the error is recorded.
    std::optional<QStringList> namesToImport(const QString &directory, Result &result);
    void takeSubfolder(const QString &path, Result &result);
    bool readAndBuild(const QString &directory, const QStringList &names, qint64 &done, qint64 total,
                      const ProgressCallback &progress, Result &result);
    void reportMissingFiles(const QString &directory, const QStringList &missing, Result &result);

    MySingleFolder &m_folder;
    ImportQuestions &m_questions;
    const ImportDefaults &m_defaults;
    ImportScope m_scope;
};

} // namespace orv
