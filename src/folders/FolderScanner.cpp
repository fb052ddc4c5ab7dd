#include "folders/FolderScanner.h"

#include "core/MySinglePic.h"
#include "core/PicScanner.h"
#include "folders/ImportFilter.h"
#include "folders/ImportKeyStates.h"
#include "folders/ImportQuestions.h"
#include "folders/MySingleFolder.h"
#include "formats/ByteSource.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QtConcurrent>

#include <algorithm>
#include <dirent.h>
#include <unistd.h>

namespace orv {

namespace {

// Directories that are documents of their own, never folders of media.
bool isPackage(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("orvstate") || suffix == QLatin1String("photoslibrary");
}

bool isMediaRoute(ScanFacts::Route route)
{
    return route == ScanFacts::Route::Still || route == ScanFacts::Route::Unsupported
           || route == ScanFacts::Route::Movie;
}

struct ReadFile
{
    ScanFacts facts;
    std::optional<ImportErrors::Kind> problem;
};

bool isReadable(const ScanFacts &facts)
{
    if (facts.readable)
        return *facts.readable;
    return ::access(QFile::encodeName(facts.path).constData(), R_OK) == 0;
}

ReadFile readFile(const QString &path, bool exifIgnored)
{
    ReadFile file{PicScanner::readFacts(path, exifIgnored), std::nullopt};
    const ScanFacts &facts = file.facts;
    if (facts.route == ScanFacts::Route::Missing) {
        file.problem = ImportErrors::FileVanished;
    } else if (facts.route == ScanFacts::Route::NotRegularFile) {
        file.problem = ImportErrors::NotARegularFile;
    } else if (facts.route == ScanFacts::Route::NotAsNamed) {
        file.problem = ImportErrors::ContentNotAsNamed;
    } else if (isMediaRoute(facts.route) && facts.attributes->size == 0) {
        file.problem = ImportErrors::FileEmpty;
    } else if (isMediaRoute(facts.route) && !isReadable(facts)) {
        file.problem = ImportErrors::FileUnreadable;
    } else if (facts.route == ScanFacts::Route::Still && facts.dates.jpgEndsBeforeImageData) {
        file.problem = ImportErrors::ImageDataMissing;
    }
    return file;
}

// Names whose bytes are no valid text in the system's encoding do not survive the way from bytes
// to text and back, so no file operation can reach them; the listing leaves them out silently.
QStringList undecodableNamesIn(const QString &directory)
{
    QStringList names;
    DIR *dir = ::opendir(QFile::encodeName(directory).constData());
    if (!dir)
        return names;
    while (const dirent *entry = ::readdir(dir)) {
        const QByteArray raw(entry->d_name);
        if (QFile::encodeName(QFile::decodeName(raw)) != raw)
            names.append(QFile::decodeName(raw));
    }
    ::closedir(dir);
    return names;
}

} // namespace

FolderScanner::FolderScanner(MySingleFolder &folder, ImportQuestions &questions, const ImportDefaults &defaults,
                             ImportScope scope)
    : m_folder(folder), m_questions(questions), m_defaults(defaults), m_scope(std::move(scope))
{
    m_scope.items.askEmptyTagOptions = [this] { return m_questions.emptyTagOptions(m_folder); };
}

FolderScanner::ImportScope FolderScanner::scopeFor(MySingleFolder &folder, const ImportDefaults &defaults)
{
    ImportOptions run = folder.perImportImportOptions.isEmpty() ? defaults.importOptionsFor(folder.keyStatesAtImport)
                                                                : folder.perImportImportOptions.takeFirst();
    // The empty-tag answer holds for the folder's whole life, and its steps go on.
    if (folder.perFolderImportOptions.isChosen()) {
        const ImportOptions &chosen = folder.perFolderImportOptions;
        run.takeEmptyTagAnswer(chosen);
        run.intervalStepper = chosen.intervalStepper;
    }
    folder.perFolderImportOptions = run;

    return {folder.isAdvanced, folder.isAdvancedOver, folder.itemNames(), folder.itemScanContext()};
}

void FolderScanner::takeResult(MySingleFolder &folder, Result &result)
{
    folder.isAdvanced = result.isPartial;
    folder.importErrors = std::move(result.errors);
    folder.takeScanContext(result.items);
}

QStringList FolderScanner::namesIn(const QString &directory)
{
    QStringList names = QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                                  QDir::NoSort);
    QCollator collator;
    collator.setNumericMode(true);
    std::sort(names.begin(), names.end(), collator);
    return names;
}

FolderScanner::Result FolderScanner::updatePicData(const ProgressCallback &progress)
{
    Result result;
    result.isPartial = m_scope.isPartial && !m_scope.isWidening;
    scanInto(result, progress);
    result.items = std::move(m_scope.items);
    return result;
}

void FolderScanner::scanInto(Result &result, const ProgressCallback &progress)
{
    const QString directory = m_folder.unlockedSecUrl();
    if (directory.isEmpty()) {
        const bool exists = QFileInfo(m_folder.sfFolderPath).isDir();
        result.errors.add(exists ? ImportErrors::FolderUnreadable : ImportErrors::FolderVanished,
                          m_folder.sfFolderPath);
        return;
    }
    std::optional<QStringList> names = namesToImport(directory, result);
    if (!names)
        return;

    const qint64 total = 2 * names->size() + 1;
    qint64 done = 0;
    progress(done, total);
    // Names, not paths: a folder of 100,000 files holds one text per file while it is read, the
    // one its item keeps.
    QStringList files;
    const QSet<QString> &imported = m_scope.importedNames;
    for (const QString &name : std::as_const(*names)) {
        if (imported.contains(name)) {
            done += 2;
            continue;
        }
        // Subfolders and entries that are no regular file are told apart by the one status each
        // name gets while it is read.
        files.append(name);
    }
    names.reset();
    progress(done, total);
    result.wasStopped = !readAndBuild(directory, files, done, total, progress, result);
}

std::optional<QStringList> FolderScanner::namesToImport(const QString &directory, Result &result)
{
    if (std::optional<MySingleFolder::ImportBatch> batch = m_folder.takeImagesToImport()) {
        // A batch of names makes the folder partial, unless it is every name of a widening;
        // then the folder is whole unless the filter left some of them out.
        result.isPartial = !m_scope.isWidening || batch->narrowedByFilter;
        return batch->names;
    }
    if (!FolderToken::isAccessible(directory)) {
        result.errors.add(ImportErrors::FolderUnreadable, directory);
        return std::nullopt;
    }
    const QStringList names = namesIn(directory);
    for (const QString &name : undecodableNamesIn(directory))
        result.errors.add(ImportErrors::NameNotDecodable, QDir(directory).filePath(name));
    const KeyStatesAtImport &keys = m_folder.keyStatesAtImport;
    const QStringList kept = ImportFilter(keys.tioFilterValues, keys.tioFilterType).filteredPaths(names, directory);
    if (kept.size() < names.size())
        result.isPartial = true;
    return kept;
}

void FolderScanner::takeSubfolder(const QString &path, Result &result)
{
    if (m_scope.isPartial && !m_scope.isWidening)
        return;
    if (!m_defaults.subfoldersEnabledFor(m_folder.keyStatesAtImport) && m_folder.importDepth == 0)
        return;
    if (m_folder.importDepth >= m_defaults.subFolderAutoImportMaxDepth || isPackage(path))
        return;
    const std::optional<FolderToken> token = FolderToken::forPath(path);
    if (!token)
        return;
    // A link may lead anywhere; the walk stays inside the folder it was given.
    const QFileInfo entry(path);
    if (entry.isSymLink()) {
        const QString inside = QFileInfo(m_folder.sfFolderPath).canonicalFilePath() + u'/';
        const QString target = entry.canonicalFilePath();
        if (token->identity() != m_folder.sfSecBookmark.identity() &&
            !m_folder.importAncestors.contains(token->identity()) && !target.startsWith(inside)) {
            result.errors.add(ImportErrors::LinkLeavesFolder, path);
            return;
        }
    }
    const QList<FileIdentity> &above = m_folder.importAncestors;
    if (token->identity() == m_folder.sfSecBookmark.identity() || above.contains(token->identity())) {
        result.errors.add(ImportErrors::SubfolderLoop, path);
        return;
    }
    result.subfolders.append({path, *token});
}

bool FolderScanner::readAndBuild(const QString &directory, const QStringList &names, qint64 &done, qint64 total,
                                 const ProgressCallback &progress, Result &result)
{
    const bool exifIgnored = m_scope.items.exifIgnored;
    QStringList missing;
    for (qsizetype first = 0; first < names.size(); first += filesPerRound) {
        if (m_folder.shouldStopImport)
            return false;
        const QStringList round = names.mid(first, filesPerRound);
        const QList<ReadFile> read = QtConcurrent::blockingMapped(round, [exifIgnored, &directory](const QString &name) {
            return readFile(QDir(directory).filePath(name), exifIgnored);
        });
        done += round.size();
        progress(done, total);
        for (qsizetype i = 0; i < read.size(); ++i) {
            const ReadFile &file = read.at(i);
            if (file.facts.route == ScanFacts::Route::Directory) {
                takeSubfolder(file.facts.path, result);
                continue;
            }
            if (file.problem == ImportErrors::FileVanished)
                missing.append(file.facts.path);
            else if (file.problem)
                result.errors.add(*file.problem, file.facts.path);
            if (std::unique_ptr<MySinglePic> pic = PicScanner::buildPic(file.facts, m_scope.items)) {
                if (pic->spName == round.at(i))
                    pic->spName = round.at(i); // the listing's text rather than a copy of it
                result.pics.push_back(std::move(pic));
            }
        }
        done += round.size();
        progress(done, total);
    }
    reportMissingFiles(directory, missing, result);
    return true;
}

// Files that vanish because their whole folder went away are one problem, not one per file.
void FolderScanner::reportMissingFiles(const QString &directory, const QStringList &missing, Result &result)
{
    if (missing.isEmpty())
        return;
    if (!QFileInfo(directory).isDir()) {
        result.errors.add(ImportErrors::FolderVanished, directory);
        return;
    }
    for (const QString &path : missing)
        result.errors.add(ImportErrors::FileVanished, path);
}

} // namespace orv
