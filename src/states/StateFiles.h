#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

namespace orv {

// Where states live on disk and how they get there. The quit files stand in the support folder
// (the XDG data folder's "orvelle", so XDG_DATA_HOME moves it); a state package is a folder
// ending in ".orvstate" holding the same files under their plain names.
namespace StateFiles {

inline const QString foldersQuitName = QStringLiteral("savedFolders_v6");
inline const QString additionalDataQuitName = QStringLiteral("savedAdditionalData_v6");
inline const QString foldersPackageName = QStringLiteral("savedFolders");
inline const QString additionalDataPackageName = QStringLiteral("savedAdditionalData");
inline const QString packageExtension = QStringLiteral("orvstate");

QString supportFolder();
QString quitFoldersPath();
// The older generations of a quit file beside it (savedFolders_v5, then savedFolders beside
// savedFolders_v6), newest first: they are read, never written. None beside another file.
QStringList olderGenerationsOf(const QString &quitFoldersFile);
// The folders file of a package, or the path itself when it names a file.
QString foldersFileOf(const QString &statePath);
// The thumbnails file beside a folders file: savedThumbs in a package (and beside the oldest
// quit file), savedThumbs_v6 or savedThumbs_v5 beside the quit file of that generation.
QString thumbsFileOf(const QString &statePath);
// The additional data file beside a folders file: the quit file's in the support folder, the
// package's in its package; empty beside a folders file of any other name.
QString additionalDataFileOf(const QString &foldersFile);

// Writes a new file beside the old one, syncs it and renames it over the old one, then syncs
// the folder: a kill or a full disk leaves the previous file whole. Empty on success, else why.
QString writeDurably(const QString &path, const QByteArray &data);
// Moves a state out of the way, never deleting it, under its name followed by why ("unreadable"
// when none is given) and the time; the new path, empty when it could not be moved.
QString keepAside(const QString &path, const QString &why = {});
// A new package in the folder, named by the local time (made unique); empty with why on failure.
struct NewPackage
{
    QString path;
    QString problem;
};
// The additional data, when given, is written beside the folders.
NewPackage writePackage(const QString &parentFolder, const QByteArray &folders, const QByteArray &additionalData = {});
// The same with more files beside the folders, each under its name in the package. A package
// that cannot be written whole is removed.
NewPackage writePackage(const QString &parentFolder, const QList<std::pair<QString, QByteArray>> &files);

inline const QString trayPreviewDataName = QStringLiteral("savedTrayPreviewData");
inline const QString previewImageName = QStringLiteral("savedPreviewImage");
inline const QString windowsDataName = QStringLiteral("savedWindowsData");

} // namespace StateFiles

} // namespace orv
