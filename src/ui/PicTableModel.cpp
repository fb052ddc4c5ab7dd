#include "ui/PicTableModel.h"

#include "core/DateDisplay.h"
#include "core/DateSourceText.h"
#include "core/MakerModel.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QColor>
#include <QFileInfo>

#include <cmath>

namespace orv {

namespace {

QString camera(const MySinglePic &pic)
{
    // "-" is the model's word for a file that names no camera; a list shows that as nothing.
    const QString text = MakerModel::WA_displayOptimizedModelMake(pic.pivMakeModel);
    return text == QLatin1String("-") ? QString() : text;
}

bool hasPixelSize(const MySinglePic &pic) { return pic.pivImageWidth > 0 && pic.pivImageHeight > 0; }

QString coordinate(double degrees, QChar positive, QChar negative)
{
    // Five decimals are about a metre: as fine as a camera's fix, no finer.
    return QStringLiteral("%1° %2").arg(std::fabs(degrees), 0, 'f', 5).arg(degrees < 0 ? negative : positive);
}

} // namespace

PicTableModel::PicTableModel(TimeZone displayZone, QObject *parent)
    : QAbstractTableModel(parent), m_zone(std::move(displayZone))
{
}

void PicTableModel::showFolders(const QList<const MySingleFolder *> &folders)
{
    beginResetModel();
    m_folders.clear();
    m_shownCounts.clear();
    m_pics.clear();
    for (const MySingleFolder *folder : folders) {
        m_folders.append(folder);
        m_shownCounts.append(folder->sfPicDetails_fullArray.size());
        m_pics.append(folder->sfPicDetails_fullArray);
    }
    endResetModel();
}

void PicTableModel::addFolder(const MySingleFolder *folder)
{
    if (m_folders.contains(folder))
        return;
    m_folders.append(folder);
    m_shownCounts.append(0);
    folderChanged(folder);
}

void PicTableModel::folderChanged(const MySingleFolder *folder)
{
    const qsizetype index = m_folders.indexOf(folder);
    if (index < 0)
        return;
    const QList<MySinglePic *> &items = folder->sfPicDetails_fullArray;
    qsizetype shown = m_shownCounts[index];
    const auto shownRows = m_pics.cbegin() + firstRowOf(index);
    if (items.size() < shown || !std::equal(shownRows, shownRows + shown, items.cbegin())) {
        beginRemoveRows({}, firstRowOf(index), firstRowOf(index) + int(shown) - 1);
        m_pics.remove(firstRowOf(index), shown);
        m_shownCounts[index] = shown = 0;
        endRemoveRows();
    }
    if (shown > 0)
        Q_EMIT dataChanged(this->index(firstRowOf(index), 0),
                           this->index(firstRowOf(index) + int(shown) - 1, ColumnCount - 1));
    if (items.size() <= shown)
        return;
    const int first = firstRowOf(index) + int(shown);
    beginInsertRows({}, first, first + int(items.size() - shown) - 1);
    m_pics.insert(first, items.size() - shown, nullptr);
    std::copy(items.cbegin() + shown, items.cend(), m_pics.begin() + first);
    m_shownCounts[index] = items.size();
    endInsertRows();
}

void PicTableModel::removeFolder(const MySingleFolder *folder)
{
    const qsizetype index = m_folders.indexOf(folder);
    if (index < 0)
        return;
    const int first = firstRowOf(index);
    const qsizetype count = m_shownCounts[index];
    if (count > 0)
        beginRemoveRows({}, first, first + int(count) - 1);
    m_pics.remove(first, count);
    m_folders.remove(index);
    m_shownCounts.remove(index);
    if (count > 0)
        endRemoveRows();
}

int PicTableModel::firstRowOf(qsizetype folderIndex) const
{
    qsizetype row = 0;
    for (qsizetype i = 0; i < folderIndex; ++i)
        row += m_shownCounts[i];
    return int(row);
}

int PicTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_pics.size());
}

int PicTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PicTableModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_pics.size() || m_itemsLocked)
        return {};
    const MySinglePic &pic = *m_pics[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        return text(pic, index.column());
    case SortRole:
        return sortValue(pic, index.column());
    case Qt::ToolTipRole:
        // Long sources and camera names are cut short in their cells.
        if (index.column() == NameColumn)
            return pic.bundleUnchangedState() > 0 ? pic.spPath() + QLatin1Char('\n') + fileStateText(pic)
                                                  : pic.spPath();
        if (index.column() == SourceColumn || index.column() == CameraColumn)
            return text(pic, index.column());
        return {};
    case Qt::TextAlignmentRole:
        return index.column() == SizeColumn ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
    case Qt::ForegroundRole:
        // A file changed or gone behind our back: a save will refuse it.
        return index.column() == NameColumn && pic.bundleUnchangedState() > 0 ? QVariant(QColor(0xc0, 0x39, 0x2b))
                                                                            : QVariant();
    default:
        return {};
    }
}

QString PicTableModel::fileStateText(const MySinglePic &pic)
{
    switch (pic.bundleUnchangedState()) {
    case 1:
        return tr("The file is missing.");
    case 2:
        return tr("The file cannot be read.");
    case 3:
        return tr("The file was changed by another program.");
    case 4:
        return tr("Its dates or a sidecar were changed by another program.");
    default:
        return tr("The file must be imported again.");
    }
}

QString PicTableModel::text(const MySinglePic &pic, int column) const
{
    switch (column) {
    case NameColumn:
        // A group is one row: the master's name with its dependent's extension beside it.
        if (pic.bundleDependentImage)
            return tr("%1 + %2").arg(pic.spName, QFileInfo(pic.bundleDependentImage->spName).suffix());
        return pic.spName;
    case DateColumn:
        return DateDisplay::localDateTime(pic.spDateTimeModified(), m_zone);
    case SourceColumn:
        return DateSourceText::forPic(pic);
    case CameraColumn:
        return camera(pic);
    case SizeColumn:
        return hasPixelSize(pic) ? tr("%1 × %2").arg(pic.pivImageWidth).arg(pic.pivImageHeight) : QString();
    case LocationColumn:
        if (!pic.gpsLat || !pic.gpsLong)
            return QString();
        return coordinate(*pic.gpsLat, QLatin1Char('N'), QLatin1Char('S')) + QStringLiteral(", ")
               + coordinate(*pic.gpsLong, QLatin1Char('E'), QLatin1Char('W'));
    case FolderColumn:
        return pic.spSingleFolder ? pic.spSingleFolder->sfFolder : QString();
    default:
        return {};
    }
}

// An empty value is an invalid variant, which the sort places after every real one.
QVariant PicTableModel::sortValue(const MySinglePic &pic, int column) const
{
    switch (column) {
    case DateColumn: {
        const OptionalDate date = pic.spDateTimeModified_sort();
        return date ? QVariant(date->secondsSinceEpoch()) : QVariant();
    }
    case SizeColumn:
        return hasPixelSize(pic) ? QVariant(qint64(pic.pivImageWidth) * pic.pivImageHeight) : QVariant();
    case LocationColumn:
        return pic.gpsLat ? QVariant(*pic.gpsLat) : QVariant();
    default: {
        const QString shown = text(pic, column);
        return shown.isEmpty() ? QVariant() : QVariant(shown);
    }
    }
}

QVariant PicTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case NameColumn:
        return tr("Name");
    case DateColumn:
        return tr("Date");
    case SourceColumn:
        return tr("Date Source");
    case CameraColumn:
        return tr("Camera");
    case SizeColumn:
        return tr("Pixels");
    case LocationColumn:
        return tr("Location");
    case FolderColumn:
        return tr("Folder");
    default:
        return {};
    }
}

} // namespace orv
