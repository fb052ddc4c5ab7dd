#include "app/StateKeeper.h"

#include "app/AppController.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "states/AdditionalData.h"
#include "states/SavedFolders.h"
#include "states/StateFiles.h"
#include "trash/FreedesktopTrash.h"

#include <QFile>
#include <QFileInfo>
#include <QMetaObject>

namespace orv {

StateKeeper::StateKeeper(AppController &controller, QString foldersPath, QObject *parent)
    : QObject(parent), m_controller(controller), m_foldersPath(std::move(foldersPath))
{
    m_writer.setMaxThreadCount(1);
    m_debounce.setSingleShot(true);
    m_debounce.setInterval(debounceMilliseconds);
    connect(&m_debounce, &QTimer::timeout, this, &StateKeeper::writeInBackground);
    connect(&controller.uManager(), &QUndoStack::indexChanged, this, &StateKeeper::noteChange);
    connect(&controller, &AppController::reloadThumbs, this, &StateKeeper::noteChange);
    MyDroppedFolders &folders = controller.theDataSource();
    connect(&folders, &MyDroppedFolders::folderImported, this, &StateKeeper::noteChange);
    connect(&folders, &MyDroppedFolders::folderRemoved, this, &StateKeeper::noteChange);
}

StateKeeper::~StateKeeper()
{
    m_writer.waitForDone();
}

bool StateKeeper::hasKeptState() const
{
    return !keptStatePath().isEmpty();
}

QString StateKeeper::keptStatePath() const
{
    for (const QString &path : QStringList{m_foldersPath} + StateFiles::olderGenerationsOf(m_foldersPath))
        if (QFileInfo(path).isFile())
            return path;
    return {};
}

StateRestore::Restored StateKeeper::restore(const QString &statePath, std::function<void(bool)> followed)
{
    StateRestore::Restored restored = StateRestore::fromFile(statePath);
    MyDroppedFolders &dataSource = m_controller.theDataSource();
    std::vector<std::unique_ptr<MySingleFolder>> fresh;
    QList<MySingleFolder *> inStateOrder;
    for (std::unique_ptr<MySingleFolder> &folder : restored.read.folders) {
        const bool isOpen = dataSource.folderForDirectory(folder->sfFolderPath) != nullptr;
        inStateOrder.append(isOpen ? nullptr : folder.get());
        if (isOpen)
            restored.report.foldersAlreadyOpen.append(folder->sfFolderPath);
        else
            fresh.push_back(std::move(folder));
    }
    restored.view = StateRestore::resolveView(restored.additional.view, restored.report.conversionType, inStateOrder);
    restored.read.folders.clear();
    // The tracks first, so that the folders' links find them.
    m_controller.tracks().restoreTracks(std::exchange(restored.additional.importedTracks, {}));
    m_controller.adoptRestoredFolders(std::move(fresh), std::move(followed));
    return restored;
}

QString StateKeeper::setKeptStateAside(const QString &why)
{
    const QString kept = keptStatePath();
    // The additional data belongs to the folders beside it: it goes with them.
    const QString additional = StateFiles::additionalDataFileOf(kept);
    if (QFileInfo::exists(additional))
        StateFiles::keepAside(additional, why);
    return StateFiles::keepAside(kept, why);
}

QString StateKeeper::discardKeptState()
{
    m_started = false;
    m_debounce.stop();
    m_writer.waitForDone();
    if (!QFileInfo::exists(m_foldersPath))
        return {};
    QString problem;
    if (FreedesktopTrash::moveToTrash(m_foldersPath, &problem) || QFile::remove(m_foldersPath))
        return {};
    return problem;
}

QByteArray StateKeeper::additionalData() const
{
    // A track's points never change once imported, and a long track takes long to encode: the
    // tracks are encoded again only when their set changed, not at every change of a date.
    const QList<const MyGpxTrack *> tracks = m_controller.tracks().importedTracks();
    QStringList keys;
    for (const MyGpxTrack *track : tracks)
        keys.append(track->key);
    if (keys != m_encodedTrackKeys || m_encodedTracks.isNull()) {
        m_encodedTracks = AdditionalData::encodeTracks(tracks);
        m_encodedTrackKeys = keys;
    }
    AdditionalData::ViewState view = m_viewProvider ? m_viewProvider() : AdditionalData::ViewState();
    view.secondsFromGMTForDate = AdditionalData::secondsFromGMTForDateNow();
    return AdditionalData::write(m_encodedTracks, view);
}

void StateKeeper::setViewProvider(std::function<AdditionalData::ViewState()> provider)
{
    m_viewProvider = std::move(provider);
}

void StateKeeper::start()
{
    m_started = true;
}

void StateKeeper::noteChange()
{
    if (m_started)
        m_debounce.start();
}

void StateKeeper::writeInBackground()
{
    // A save's threads own the items until it ends, and a scan its folder: their end is a change
    // of its own, which comes back here.
    if (m_controller.isStandardBlocked() || m_controller.theDataSource().isImportInProgress()) {
        m_debounce.start();
        return;
    }
    const QList<MySingleFolder *> folders = m_controller.theDataSource().droppedFolders();
    // A working set of no folders keeps no state.
    const QByteArray data = folders.isEmpty() ? QByteArray() : SavedFolders::write(folders);
    const QByteArray additional = folders.isEmpty() ? QByteArray() : additionalData();
    m_writer.start([this, data, additional, path = m_foldersPath] {
        const QString additionalPath = StateFiles::additionalDataFileOf(path);
        QString problem;
        if (data.isEmpty()) {
            for (const QString &kept : {additionalPath, path})
                if (QFileInfo::exists(kept) && !QFile::remove(kept))
                    problem = tr("cannot remove %1").arg(kept);
        } else {
            // The tracks before the folders that link them: a kill between the two leaves
            // links to tracks that are there, or tracks no folder links yet. Tracks change
            // seldom and may be large: the same bytes are not written again.
            if (!additionalPath.isEmpty() && (additional != m_additionalWritten || !QFileInfo::exists(additionalPath))) {
                problem = StateFiles::writeDurably(additionalPath, additional);
                m_additionalWritten = problem.isEmpty() ? additional : QByteArray();
            }
            if (problem.isEmpty())
                problem = StateFiles::writeDurably(path, data);
        }
        if (!problem.isEmpty())
            QMetaObject::invokeMethod(this, [this, problem] { Q_EMIT writeFailed(problem); }, Qt::QueuedConnection);
    });
}

void StateKeeper::writeNow()
{
    if (!m_started)
        return;
    m_debounce.stop();
    writeInBackground();
    m_writer.waitForDone();
}

} // namespace orv
