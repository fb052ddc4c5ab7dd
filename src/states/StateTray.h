#pragma once

#include "states/StateFiles.h"
#include "states/TrayPreview.h"

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QString>

namespace orv {

// One row of the tray: a kept state, a folder of them, or the way up.
struct TrayRow
{
    enum class Type { State, Subfolder, Superfolder };
    Type type = Type::State;
    QString path;
    TrayPreview preview; // states only; empty when the package has none or it cannot be read
    QString sortName;
    QDateTime sortCreation, sortModification;
};

// The place where the user keeps work: state packages in a tree of folders under the tray root
// (projectsTray in the support folder). A state opened from the tray leaves it: it is moved to
// the folder of deleted states in the support folder, which a clean quit empties; a state found
// there at the next start was taken over by a session that died, and is put back into the tray,
// in statesToVerify.localized, rather than lost.
class StateTray
{
public:
    explicit StateTray(QString supportFolder = StateFiles::supportFolder());

    static inline const QString rootName = QStringLiteral("projectsTray");
    static inline const QString deletedStatesName = QStringLiteral("_tempState_willBeDeleted!");
    static inline const QString takenOverName = QStringLiteral("_tempDeletedState");
    static inline const QString toVerifyName = QStringLiteral("statesToVerify.localized");

    // The tray root, made when missing.
    QString appStateTrayRootPath() const;
    QString deletedStatesPath() const;
    bool isUnderRoot(const QString &path) const;

    // The states and subfolders of a folder of the tray, and the way up below the root.
    QList<TrayRow> refreshData(const QString &folder) const;
    // Sort types: 1 name, 2 first date, 3 last date, 4 creation (states); 101 name,
    // 102 creation, 103 modification (subfolders). Ties go by name, then creation, then path.
    static void sortStateArray(QList<TrayRow> &rows, int sortType, bool ascending);

    // A new package in folder, named by the local time: the folders, the preview and its image
    // (a transparent one when there is none).
    // With thumbs, the thumbnails file goes along, with additional data (the tracks) its file,
    // and with the window's data (WindowsData) its file.
    StateFiles::NewPackage storeState(const QString &folder, const QByteArray &savedFolders, const TrayPreview &preview,
                                      const QImage &previewImage, const QByteArray &thumbs = {},
                                      const QByteArray &additionalData = {},
                                      const QByteArray &windowsData = {}) const;
    // The user's title and note of a state; empty on success, else why.
    QString setUserData(const QString &statePath, const QString &title, const QString &note) const;
    // To the desktop's trash, from where the user can put it back; empty on success, else why.
    QString deleteStateAtPath(const QString &statePath) const;

    struct Moved
    {
        QString path;    // where it went; empty when nothing moved
        QString problem; // empty on success
    };
    // A state opened from the tray has been taken over by the working set: it waits among the
    // deleted states until a clean quit.
    Moved takeOver(const QString &statePath) const;
    // Its opening undone: back to where it was in the tray, or beside it when that name was
    // taken since.
    Moved putBack(const QString &takenPath, const QString &statePath) const;
    // At start: what a session that died had taken over goes back into the tray, each in a
    // package of its own, marked as brought back. The folder holding them, when there were any.
    Moved checkForUncleanedTempFiles() const;
    // At a clean quit the taken-over states go to the desktop's trash; empty on success.
    QString deleteTempDeletedStatePath() const;

    static TrayPreview readPreview(const QString &statePath);

private:
    QString m_supportFolder;
};

} // namespace orv
