#pragma once

#include "folders/FolderPalette.h"

#include <QAbstractTableModel>
#include <QList>

namespace orv {

class MySingleFolder;

// The sidebar's rows: "All Folders" first, then the imported folders in list order, each with
// its colour, its item count and its mix of photos and movies. Holds the folders it is told of;
// the import owns them.
class FolderListModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column : int { NameColumn, CountColumn, MediaColumn, ColumnCount };

    explicit FolderListModel(FolderPalette palette, QObject *parent = nullptr);

    void insertFolder(int position, const MySingleFolder *folder);
    // Its count or name changed.
    void folderChanged(const MySingleFolder *folder);
    void removeFolder(const MySingleFolder *folder);

    const QList<const MySingleFolder *> &folders() const { return m_folders; }
    // Nothing for the "All Folders" row.
    const MySingleFolder *folderAt(int row) const;
    static bool isAllFoldersRow(int row) { return row == 0; }
    int rowOf(const MySingleFolder *folder) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QVariant allFoldersData(int column, int role) const;
    QVariant folderData(const MySingleFolder &folder, int column, int role) const;

    FolderPalette m_palette;
    QList<const MySingleFolder *> m_folders;
};

} // namespace orv
