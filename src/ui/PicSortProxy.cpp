#include "ui/PicSortProxy.h"

#include "ui/PicTableModel.h"

namespace orv {

namespace {

// Collation in the C locale compares code points and ignores the numeric mode; names then sort
// as in English, which is what a file manager in that setting shows too.
QLocale collationLocale()
{
    const QLocale system;
    return system.language() == QLocale::C ? QLocale(QLocale::English) : system;
}

} // namespace

PicSortProxy::PicSortProxy(QObject *parent) : QSortFilterProxyModel(parent), m_collator(collationLocale())
{
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    setSortRole(PicTableModel::SortRole);
    setDynamicSortFilter(true);
}

void PicSortProxy::setAcceptedPics(std::function<bool(const MySinglePic &)> accepts)
{
    m_accepts = std::move(accepts);
    invalidateFilter();
}

bool PicSortProxy::filterAcceptsRow(int sourceRow, const QModelIndex &) const
{
    if (!m_accepts)
        return true;
    const auto *pics = qobject_cast<const PicTableModel *>(sourceModel());
    const MySinglePic *pic = pics ? pics->picAt(sourceRow) : nullptr;
    return !pic || m_accepts(*pic);
}

bool PicSortProxy::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    if (const int order = compare(left, right); order != 0)
        return order < 0;
    const int tieColumn = left.column() == PicTableModel::NameColumn ? PicTableModel::DateColumn
                                                                      : PicTableModel::NameColumn;
    return compare(left.siblingAtColumn(tieColumn), right.siblingAtColumn(tieColumn)) < 0;
}

int PicSortProxy::compare(const QModelIndex &left, const QModelIndex &right) const
{
    const QVariant a = left.data(sortRole());
    const QVariant b = right.data(sortRole());
    if (!a.isValid() || !b.isValid())
        return int(b.isValid()) - int(a.isValid());
    if (a.typeId() == QMetaType::QString && b.typeId() == QMetaType::QString)
        return m_collator.compare(a.toString(), b.toString());
    const QPartialOrdering order = QVariant::compare(a, b);
    return order == QPartialOrdering::Less ? -1 : order == QPartialOrdering::Greater ? 1 : 0;
}

} // namespace orv
