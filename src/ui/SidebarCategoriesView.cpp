#include "ui/SidebarCategoriesView.h"

#include <QHeaderView>
#include <QLocale>
#include <QScrollBar>

namespace orv {

SidebarCategoriesView::SidebarCategoriesView(QWidget *parent) : QTreeWidget(parent)
{
    setColumnCount(2);
    setHeaderHidden(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setUniformRowHeights(true);
    // A camera's usual name and its count fit without cutting.
    setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Canon EOS DIGITAL REBEL 00000")) + 40);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(TitleColumn, QHeaderView::Stretch);
    header()->setSectionResizeMode(CountColumn, QHeaderView::ResizeToContents);
    connect(this, &QTreeWidget::itemSelectionChanged, this, [this] {
        if (!m_isRebuilding)
            Q_EMIT selectedKeysChanged(selectedKeys());
    });
    connect(this, &QTreeWidget::itemCollapsed, this, [this](QTreeWidgetItem *item) {
        if (!m_isRebuilding)
            m_collapsedKeys.insert(item->data(TitleColumn, keyRole).toString());
    });
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem *item) {
        if (!m_isRebuilding)
            m_collapsedKeys.remove(item->data(TitleColumn, keyRole).toString());
    });
}

namespace {

// The rows in the order the tree shows them, parents before their children.
void flatten(const QList<MyFiltersItem> &rows, QList<const MyFiltersItem *> &flat)
{
    for (const MyFiltersItem &row : rows) {
        flat.append(&row);
        flatten(row.children, flat);
    }
}

} // namespace

void SidebarCategoriesView::showRows(const QList<MyFiltersItem> &rows, const QStringList &selectedKeys)
{
    // The same rows with other counts (the usual case: a rating, a refilter) are updated in
    // place, so the items under the user's pointer stay.
    QList<const MyFiltersItem *> flat;
    flatten(rows, flat);
    QList<QTreeWidgetItem *> shown;
    for (QTreeWidgetItemIterator it(this); *it; ++it)
        shown.append(*it);
    const bool sameRows = shown.size() == flat.size()
                          && std::equal(flat.cbegin(), flat.cend(), shown.cbegin(), [](const MyFiltersItem *row, const QTreeWidgetItem *item) {
                                 return item->data(TitleColumn, keyRole).toString() == row->key;
                             });
    if (sameRows) {
        for (qsizetype i = 0; i < flat.size(); ++i) {
            shown.at(i)->setText(TitleColumn, flat.at(i)->title);
            if (!flat.at(i)->isGroupItem)
                shown.at(i)->setText(CountColumn, QLocale().toString(flat.at(i)->pics.size()));
        }
        return;
    }
    rebuild(rows, selectedKeys);
}

void SidebarCategoriesView::showRowsClosing(const QList<MyFiltersItem> &rows, const QStringList &selectedKeys,
                                            const QStringList &closedKeys)
{
    m_collapsedKeys = QSet<QString>(closedKeys.cbegin(), closedKeys.cend());
    rebuild(rows, selectedKeys);
}

QStringList SidebarCategoriesView::closedKeys() const
{
    QStringList keys(m_collapsedKeys.cbegin(), m_collapsedKeys.cend());
    keys.sort();
    return keys;
}

void SidebarCategoriesView::rebuild(const QList<MyFiltersItem> &rows, const QStringList &selectedKeys)
{
    m_isRebuilding = true;
    const int scrolled = verticalScrollBar()->value();
    clear();
    addRows(rows, nullptr, selectedKeys);
    verticalScrollBar()->setValue(scrolled);
    m_isRebuilding = false;
}

void SidebarCategoriesView::addRows(const QList<MyFiltersItem> &rows, QTreeWidgetItem *parent,
                                    const QStringList &selectedKeys)
{
    for (const MyFiltersItem &row : rows) {
        auto *item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
        item->setText(TitleColumn, row.title);
        item->setData(TitleColumn, keyRole, row.key);
        if (row.isGroupItem) {
            QFont bold = item->font(TitleColumn);
            bold.setBold(true);
            item->setFont(TitleColumn, bold);
            item->setFlags(Qt::ItemIsEnabled);
        } else {
            item->setText(CountColumn, QLocale().toString(row.pics.size()));
            item->setTextAlignment(CountColumn, Qt::AlignRight | Qt::AlignVCenter);
        }
        addRows(row.children, item, selectedKeys);
        item->setExpanded(!m_collapsedKeys.contains(row.key));
        item->setSelected(selectedKeys.contains(row.key));
    }
}

QTreeWidgetItem *SidebarCategoriesView::itemForKey(const QString &key) const
{
    for (QTreeWidgetItemIterator it(const_cast<SidebarCategoriesView *>(this)); *it; ++it)
        if ((*it)->data(TitleColumn, keyRole).toString() == key)
            return *it;
    return nullptr;
}

QStringList SidebarCategoriesView::selectedKeys() const
{
    QStringList keys;
    for (const QTreeWidgetItem *item : selectedItems())
        keys.append(item->data(TitleColumn, keyRole).toString());
    return keys;
}

} // namespace orv
