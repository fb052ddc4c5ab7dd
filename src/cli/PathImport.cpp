#include "cli/PathImport.h"

#include "core/LogController.h"
#include "folders/DropEntry.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "formats/ByteSource.h"

#include <QEventLoop>
#include <QFileInfo>

namespace orv {


ImportOptions PathImport::fileDateForEmptyTags()
{
    ImportOptions options;
    options.withEmptyExifFixDate = ImportOptions::UseFileDate;
    return options;
}

PathImport::PathImport(const QStringList &paths, const Settings &settings, QTextStream &err)
    : m_prefs(QString{}), m_answers(settings.emptyTags), m_controller(m_prefs, m_answers, LogController::defaultLogFilePath())
{
    // The user's own settings never change what a script sees.
    m_prefs.overrideForThisRun(QStringLiteral("isAdvanced"), QStringLiteral("1"));
    m_prefs.overrideForThisRun(QStringLiteral("skipEmptyTagImportOptions"), QStringLiteral("0"));
    m_prefs.overrideForThisRun(QStringLiteral("subFolderAutoImportMaxDepth"),
                               QString::number(settings.subfolderDepth));

    QList<DropEntry> entries;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (!info.exists()) {
            err << "orvelle-cli: " << path << ": no such file or folder\n";
            m_failed = true;
        } else if (FileStatus::of(path).kind == FileStatus::Kind::Other) {
            // Never opened: a pipe would block the run, a device answer endlessly.
            err << "orvelle-cli: " << path
                << ": not a regular file (a pipe, a socket or a device); skipped\n";
            m_failed = true;
        } else if (info.isDir() && !info.isReadable()) {
            err << "orvelle-cli: " << path << ": permission denied\n";
            m_failed = true;
        } else if (std::optional<DropEntry> entry = DropEntry::pathAndBookmarkFromAccessable(path)) {
            entries.append(*entry);
        }
    }
    MyDroppedFolders &droppedFolders = m_controller.theDataSource();
    QEventLoop waiting;
    QObject::connect(&droppedFolders, &MyDroppedFolders::importEnded, &waiting, &QEventLoop::quit);
    if (!entries.isEmpty())
        droppedFolders.processDroppedFolders(entries, nullptr, 0, settings.keys);
    if (droppedFolders.isImportInProgress())
        waiting.exec();

    for (const MySingleFolder *folder : droppedFolders.droppedFolders()) {
        for (const QString &message : folder->importErrors.messages()) {
            err << "orvelle-cli: " << folder->sfFolderPath << ": " << message << "\n";
            m_failed = true;
        }
    }
}

QList<MySingleFolder *> PathImport::folders() const
{
    return m_controller.theDataSource().droppedFolders();
}

} // namespace orv
