#include "ui/StopGapImport.h"

#include "folders/FolderScanner.h"
#include "folders/MySingleFolder.h"

#include <QFileInfo>
#include <QtConcurrent>

namespace orv {

StopGapImport::StopGapImport(ImportQuestions &questions, QObject *parent) : QObject(parent), m_questions(questions)
{
    connect(&m_watcher, &QFutureWatcher<void>::finished, this, [this] {
        MySingleFolder *done = m_current;
        m_current = nullptr;
        done->sfPics = done->sfPicDetails_fullArray.size();
        Q_EMIT folderPublished(done);
        startNext();
    });
}

StopGapImport::~StopGapImport() { m_watcher.waitForFinished(); }

void StopGapImport::processDroppedFolders(const QStringList &paths)
{
    QMap<QString, QStringList> singleFiles;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (info.isDir()) {
            m_folders.push_back(std::make_unique<MySingleFolder>(info.absoluteFilePath(), false));
            m_queue.append({m_folders.back().get(), FolderScanner::filesIn(info.absoluteFilePath())});
            Q_EMIT addedFolder(m_folders.back().get(), int(m_folders.size()) - 1);
        } else if (info.isFile()) {
            singleFiles[info.absolutePath()].append(info.absoluteFilePath());
        }
    }
    for (auto it = singleFiles.cbegin(); it != singleFiles.cend(); ++it) {
        m_folders.push_back(std::make_unique<MySingleFolder>(it.key(), false));
        m_folders.back()->isAdvanced = true;
        m_queue.append({m_folders.back().get(), it.value()});
        Q_EMIT addedFolder(m_folders.back().get(), int(m_folders.size()) - 1);
    }
    if (!m_current)
        startNext();
}

void StopGapImport::cancelImports()
{
    for (const Job &job : std::as_const(m_queue)) {
        for (auto it = m_folders.begin(); it != m_folders.end(); ++it)
            if (it->get() == job.folder) {
                Q_EMIT removedFolder(job.folder);
                m_folders.erase(it);
                break;
            }
    }
    m_queue.clear();
}

void StopGapImport::startNext()
{
    if (m_queue.isEmpty()) {
        Q_EMIT importEnded();
        return;
    }
    const Job job = m_queue.takeFirst();
    m_current = job.folder;
    Q_EMIT progressChanged(job.folder->sfFolder, int(m_queue.size()));
    m_watcher.setFuture(QtConcurrent::run([job, this] { FolderScanner::scanFiles(*job.folder, job.files, m_questions); }));
}

} // namespace orv
