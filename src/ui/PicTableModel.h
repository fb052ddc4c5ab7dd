#pragma once

#include "time/TimeZone.h"

#include <QAbstractTableModel>
#include <QList>

namespace orv {

class MySingleFolder;
class MySinglePic;

// The items of the folders on show, one row each, folder after folder. Cells are the model's
// values as text; SortRole carries the raw values so that dates sort as dates and sizes as
// numbers. Rows are only read here: items change on the main thread, between calls. While a save
// runs on its own thread, the rows read no item at all (setItemsLocked) until the run has ended.
class PicTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column : int {
        NameColumn,
        DateColumn,
        SourceColumn,
        CameraColumn,
        SizeColumn,
        LocationColumn,
        FolderColumn,
        ColumnCount
    };
    static constexpr int SortRole = Qt::UserRole;

    explicit PicTableModel(TimeZone displayZone, QObject *parent = nullptr);

    // Replaces what is shown.
    void showFolders(const QList<const MySingleFolder *> &folders);
    // Shows one more folder after the others, with the items it has now.
    void addFolder(const MySingleFolder *folder);
    // A folder on show was imported again or its dates moved: new items at the end of its list
    // get rows, the others fresh cells; a list that lost items or took them back in its middle
    // gets its rows anew. Folders not on show are ignored.
    void folderChanged(const MySingleFolder *folder);
    void removeFolder(const MySingleFolder *folder);

    const QList<const MySingleFolder *> &shownFolders() const { return m_folders; }
    // The item of a row, for the commands that act on the list's selection.
    MySinglePic *picAt(int row) const { return m_pics.value(row); }
    int rowOf(const MySinglePic *pic) const { return int(m_pics.indexOf(pic)); }
    // While locked, cells are empty: another thread owns the items. Nothing is announced either
    // way; whoever unlocks tells of the folders the owner changed.
    void setItemsLocked(bool locked) { m_itemsLocked = locked; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // An item's cell as the list shows it.
    QString text(const MySinglePic &pic, int column) const;
    // Why a save will refuse the item's file, changed or gone behind our back.
    static QString fileStateText(const MySinglePic &pic);

private:
    QVariant sortValue(const MySinglePic &pic, int column) const;
    // The first row of a shown folder's items.
    int firstRowOf(qsizetype folderIndex) const;

    TimeZone m_zone;
    QList<const MySingleFolder *> m_folders;
    QList<qsizetype> m_shownCounts; // per folder, how many of its items have rows
    QList<MySinglePic *> m_pics;
    bool m_itemsLocked = false;
};

} // namespace orv
