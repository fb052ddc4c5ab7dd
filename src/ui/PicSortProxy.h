#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>

namespace orv {

// Sorts the item rows by the raw values of PicTableModel::SortRole. Texts compare as a file
// manager does (IMG_2 before IMG_10, case aside); empty values go after all others; equal values
// fall back to the name, and equal names to the date, so a burst shot in one second keeps its
// order.
class PicSortProxy : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit PicSortProxy(QObject *parent = nullptr);

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    // Negative, zero or positive, as left sorts before, with or after right.
    int compare(const QModelIndex &left, const QModelIndex &right) const;

    QCollator m_collator;
};

} // namespace orv
