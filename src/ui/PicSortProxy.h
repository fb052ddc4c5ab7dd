#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>

#include <functional>

namespace orv {

class MySinglePic;

// Sorts the item rows by the raw values of PicTableModel::SortRole. Texts compare as a file
// manager does (IMG_2 before IMG_10, case aside); empty values go after all others; equal values
// fall back to the name, and equal names to the date, so a burst shot in one second keeps its
// order.
class PicSortProxy : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit PicSortProxy(QObject *parent = nullptr);

    // Rows show only the items this test lets through (the filtered source); all without one.
    void setAcceptedPics(std::function<bool(const MySinglePic &)> accepts);
    // The test answers differently now.
    void refilter() { invalidateFilter(); }

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    // Negative, zero or positive, as left sorts before, with or after right.
    int compare(const QModelIndex &left, const QModelIndex &right) const;

    QCollator m_collator;
    std::function<bool(const MySinglePic &)> m_accepts;
};

} // namespace orv
