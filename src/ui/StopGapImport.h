#pragma once

#include <QFutureWatcher>
#include <QObject>
#include <QStringList>

#include <memory>
#include <vector>

namespace orv {

class ImportQuestions;
class MySingleFolder;

// Imports folders one after the other on a pool thread until the real import driver takes over.
class StopGapImport : public QObject
{
    Q_OBJECT
public:
    StopGapImport(ImportQuestions &questions, QObject *parent = nullptr);
    ~StopGapImport() override;

    void processDroppedFolders(const QStringList &paths);
    void cancelImports();
    bool isImporting() const { return m_current != nullptr; }
    const std::vector<std::unique_ptr<MySingleFolder>> &droppedFolders() const { return m_folders; }

Q_SIGNALS:
    void addedFolder(const orv::MySingleFolder *folder, int position);
    void folderPublished(const orv::MySingleFolder *folder);
    void removedFolder(const orv::MySingleFolder *folder);
    void progressChanged(const QString &folderName, int foldersWaiting);
    void importEnded();

private:
    struct Job
    {
        MySingleFolder *folder;
        QStringList files;
    };
    void startNext();

    ImportQuestions &m_questions;
    std::vector<std::unique_ptr<MySingleFolder>> m_folders;
    QList<Job> m_queue;
    MySingleFolder *m_current = nullptr;
    QFutureWatcher<void> m_watcher;
};

} // namespace orv
