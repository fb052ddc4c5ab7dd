#include "ui/FolderListModel.h"

#include "folders/MySingleFolder.h"

#include <QFont>
#include <QLocale>

namespace orv {

namespace {
// Folders start at the row after "All Folders".
constexpr int firstFolderRow = 1;
} // namespace

FolderListModel::FolderListModel(QObject *parent) : QAbstractTableModel(parent) {}

void FolderListModel::insertFolder(int position, const MySingleFolder *folder)
{
    position = std::clamp(position, 0, int(m_folders.size()));
    // The first folder brings the "All Folders" row with it.
    const bool withAllRow = m_folders.isEmpty();
    const int first = withAllRow ? 0 : position + firstFolderRow;
    beginInsertRows({}, first, position + firstFolderRow);
    m_folders.insert(position, folder);
    endInsertRows();
    if (!withAllRow)
        Q_EMIT dataChanged(index(0, 0), index(0, ColumnCount - 1));
}

void FolderListModel::folderChanged(const MySingleFolder *folder)
{
    const int row = rowOf(folder);
    if (row < 0)
        return;
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    Q_EMIT dataChanged(index(0, 0), index(0, ColumnCount - 1));
}

void FolderListModel::removeFolder(const MySingleFolder *folder)
{
    const int row = rowOf(folder);
    if (row < 0)
        return;
    const bool lastOne = m_folders.size() == 1;
    beginRemoveRows({}, lastOne ? 0 : row, row);
    m_folders.removeAt(row - firstFolderRow);
    endRemoveRows();
    if (!lastOne)
        Q_EMIT dataChanged(index(0, 0), index(0, ColumnCount - 1));
}

const MySingleFolder *FolderListModel::folderAt(int row) const
{
    const int position = row - firstFolderRow;
    return position >= 0 && position < m_folders.size() ? m_folders[position] : nullptr;
}

int FolderListModel::rowOf(const MySingleFolder *folder) const
{
    const qsizetype position = m_folders.indexOf(folder);
    return position < 0 ? -1 : int(position) + firstFolderRow;
}

int FolderListModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() || m_folders.isEmpty())
        return 0;
    return int(m_folders.size()) + firstFolderRow;
}

int FolderListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FolderListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (isAllFoldersRow(index.row()))
        return allFoldersData(index.column(), role);
    const MySingleFolder *folder = folderAt(index.row());
    return folder ? folderData(*folder, index.column(), role) : QVariant();
}

QVariant FolderListModel::allFoldersData(int column, int role) const
{
    if (role == Qt::FontRole) {
        QFont bold;
        bold.setBold(true);
        return bold;
    }
    if (role == Qt::TextAlignmentRole && column == CountColumn)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    if (column == NameColumn)
        return tr("All Folders");
    qint64 total = 0;
    for (const MySingleFolder *folder : m_folders)
        total += std::max<qint64>(folder->sfPics, 0);
    return QLocale().toString(total);
}

QVariant FolderListModel::folderData(const MySingleFolder &folder, int column, int role) const
{
    // A folder still importing has no count yet (sfPics is negative until its first publication).
    const bool importing = folder.sfPics < 0;
    switch (role) {
    case Qt::DisplayRole:
        if (column == NameColumn)
            return folder.sfFolder;
        return importing ? QStringLiteral("…") : QLocale().toString(folder.sfPics);
    case Qt::ToolTipRole:
        return importing ? tr("%1\nImporting…").arg(folder.sfFolderPath) : folder.sfFolderPath;
    case Qt::TextAlignmentRole:
        return column == CountColumn ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    default:
        return {};
    }
}

QVariant FolderListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return section == NameColumn ? tr("Folder") : tr("Items");
}

} // namespace orv
