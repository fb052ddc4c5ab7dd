#include "ui/FolderListModel.h"

#include "folders/MySingleFolder.h"

#include <QFont>
#include <QLocale>
#include <QColor>

namespace orv {

namespace {
// Folders start at the row after "All Folders".
constexpr int firstFolderRow = 1;

QString mediaMix(qint64 mediaTypesState)
{
    switch (mediaTypesState) {
    case MySingleFolder::ImagesOnly:
        return FolderListModel::tr("Photos");
    case MySingleFolder::MoviesOnly:
        return FolderListModel::tr("Movies");
    case MySingleFolder::ImagesAndMovies:
        return FolderListModel::tr("Photos & movies");
    default:
        return FolderListModel::tr("Empty");
    }
}

} // namespace

FolderListModel::FolderListModel(FolderPalette palette, QObject *parent)
    : QAbstractTableModel(parent), m_palette(std::move(palette))
{
}

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
    if (role == Qt::DecorationRole && column == NameColumn)
        return QColor(Qt::transparent); // keeps "All Folders" in line with the coloured names
    if (role != Qt::DisplayRole || column == MediaColumn)
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
        if (importing)
            return column == CountColumn ? QStringLiteral("…") : QString();
        return column == CountColumn ? QLocale().toString(folder.sfPics) : mediaMix(folder.mediaTypesState);
    case Qt::DecorationRole:
        // Qt draws a colour as a small square; a colourless folder keeps the space empty.
        if (column != NameColumn)
            return {};
        return m_palette.colorFor(folder.colorIndex).value_or(QColor(Qt::transparent));
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
    switch (section) {
    case NameColumn:
        return tr("Folder");
    case CountColumn:
        return tr("Items");
    default:
        return tr("Media");
    }
}

} // namespace orv
