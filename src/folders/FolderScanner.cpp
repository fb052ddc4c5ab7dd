#include "folders/FolderScanner.h"

#include "core/MySinglePic.h"
#include "core/PicScanner.h"
#include "folders/ImportFilter.h"
#include "folders/ImportKeyStates.h"
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

ReadFile readFile(const QString &path, bool exifIgnored)
{
    ReadFile file{PicScanner::readFacts(path, exifIgnored), std::nullopt};
    const ScanFacts &facts = file.facts;
    if (facts.route == ScanFacts::Route::Missing) {
        file.problem = ImportErrors::FileVanished;
    } else if (isMediaRoute(facts.route) && facts.attributes->size == 0) {
        file.problem = ImportErrors::FileEmpty;
    } else if (isMediaRoute(facts.route) && ::access(QFile::encodeName(path).constData(), R_OK) != 0) {
        file.problem = ImportErrors::FileUnreadable;
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

FolderScanner::FolderScanner(MySingleFolder &folder, ImportQuestions &questions, const ImportDefaults &defaults)
    : m_folder(folder), m_questions(questions), m_defaults(defaults)
{
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
    m_folder.importErrors.clear();
    prepareImportOptions();

    const QString directory = m_folder.unlockedSecUrl();
    if (directory.isEmpty()) {
        const bool exists = QFileInfo(m_folder.sfFolderPath).isDir();
        m_folder.importErrors.add(exists ? ImportErrors::FolderUnreadable : ImportErrors::FolderVanished,
                                  m_folder.sfFolderPath);
        return result;
    }
    const std::optional<QStringList> names = namesToImport(directory);
    if (!names)
        return result;

    const qint64 total = 2 * names->size() + 1;
    qint64 done = 0;
    progress(done, total);
    QStringList files;
    const QDir dir(directory);
    const QSet<QString> imported = m_folder.itemNames();
    for (const QString &name : *names) {
        const QString path = dir.filePath(name);
        if (imported.contains(name)) {
            done += 2;
            continue;
        }
        // One look through links; a name that cannot be examined is left to the read.
        const FileStatus::Kind kind = FileStatus::of(path).kind;
        if (kind == FileStatus::Kind::Directory) {
            takeSubfolder(path, result);
            done += 2;
            continue;
        }
        if (kind == FileStatus::Kind::Other) {
            // Opening a pipe blocks, opening a device may have effects: such an entry is named.
            m_folder.importErrors.add(ImportErrors::NotARegularFile, path);
            done += 2;
            continue;
        }
        files.append(path);
    }
    progress(done, total);
    result.wasStopped = !readAndBuild(directory, files, done, total, progress);
    if (result.wasStopped)
        return result;

    if (m_folder.isAdvancedOver)
        m_folder.isAdvanced = m_folder.isAdvancedOver = false;
    if (m_folder.wasChangedFromImportFilter) {
        m_folder.isAdvanced = true;
        m_folder.wasChangedFromImportFilter = false;
    }
    // File groups (RAW+JPG, Live Photos) and the sidecar matching join here, over the staged items.
    return result;
}

void FolderScanner::prepareImportOptions()
{
    ImportOptions run = m_folder.perImportImportOptions.isEmpty()
                            ? m_defaults.importOptionsFor(m_folder.keyStatesAtImport)
                            : m_folder.perImportImportOptions.takeFirst();
    // The empty-tag answer holds for the folder's whole life, and its steps go on.
    if (m_folder.perFolderImportOptions.isChosen()) {
        const ImportOptions &chosen = m_folder.perFolderImportOptions;
        run.takeEmptyTagAnswer(chosen);
        run.intervalStepper = chosen.intervalStepper;
    }
    m_folder.perFolderImportOptions = run;
}

std::optional<QStringList> FolderScanner::namesToImport(const QString &directory)
{
    if (std::optional<QStringList> batch = m_folder.takeImagesToImport()) {
        m_folder.isAdvanced = true;
        return batch;
    }
    if (!FolderToken::isAccessible(directory)) {
        m_folder.importErrors.add(ImportErrors::FolderUnreadable, directory);
        return std::nullopt;
    }
    const QStringList names = namesIn(directory);
    for (const QString &name : undecodableNamesIn(directory))
        m_folder.importErrors.add(ImportErrors::NameNotDecodable, QDir(directory).filePath(name));
    const KeyStatesAtImport &keys = m_folder.keyStatesAtImport;
    const QStringList kept = ImportFilter(keys.tioFilterValues, keys.tioFilterType).filteredPaths(names, directory);
    if (kept.size() < names.size())
        m_folder.wasChangedFromImportFilter = true;
    return kept;
}

void FolderScanner::takeSubfolder(const QString &path, Result &result)
{
    if (m_folder.isAdvanced && !m_folder.isAdvancedOver)
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
            m_folder.importErrors.add(ImportErrors::LinkLeavesFolder, path);
            return;
        }
    }
    const QList<FileIdentity> &above = m_folder.importAncestors;
    if (token->identity() == m_folder.sfSecBookmark.identity() || above.contains(token->identity())) {
        m_folder.importErrors.add(ImportErrors::SubfolderLoop, path);
        return;
    }
    result.subfolders.append({path, *token});
}

bool FolderScanner::readAndBuild(const QString &directory, const QStringList &files, qint64 &done, qint64 total,
                                 const ProgressCallback &progress)
{
    const bool exifIgnored = m_folder.isEXIFIgnored();
    QStringList missing;
    for (qsizetype first = 0; first < files.size(); first += filesPerRound) {
        if (m_folder.shouldStopImport)
            return false;
        const QStringList round = files.mid(first, filesPerRound);
        const QList<ReadFile> read = QtConcurrent::blockingMapped(
            round, [exifIgnored](const QString &path) { return readFile(path, exifIgnored); });
        done += round.size();
        progress(done, total);
        for (const ReadFile &file : read) {
            if (file.problem == ImportErrors::FileVanished)
                missing.append(file.facts.path);
            else if (file.problem)
                m_folder.importErrors.add(*file.problem, file.facts.path);
            if (std::unique_ptr<MySinglePic> pic = PicScanner::buildPic(file.facts, m_folder, m_questions))
                m_folder.picsImportedAndTempStoredUntilAllReady.push_back(std::move(pic));
        }
        done += round.size();
        progress(done, total);
    }
    reportMissingFiles(directory, missing);
    return true;
}

// Files that vanish because their whole folder went away are one problem, not one per file.
void FolderScanner::reportMissingFiles(const QString &directory, const QStringList &missing)
{
    if (missing.isEmpty())
        return;
    if (!QFileInfo(directory).isDir()) {
        m_folder.importErrors.add(ImportErrors::FolderVanished, directory);
        return;
    }
    for (const QString &path : missing)
        m_folder.importErrors.add(ImportErrors::FileVanished, path);
}

} // namespace orv
