#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>

namespace orv {

// Sorts the item rows by the raw values of PicTableModel::SortRole. Texts compare as a
// file manager does (IMG_2 before IMG_10, case aside); empty values go after all others.
class PicSortProxy : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    explicit PicSortProxy(QObject *parent = nullptr);

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    QCollator m_collator;
};

} // namespace orv
