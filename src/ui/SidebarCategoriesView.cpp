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
    const auto remember = [this](QTreeWidgetItem *item, bool expanded) {
        if (m_isRebuilding)
            return;
        const QString key = item->data(TitleColumn, keyRole).toString();
        const bool closedUntilOpened = item->data(TitleColumn, collapsedByDefaultRole).toBool();
        // Each set holds the rows that stand otherwise than their default.
        QSet<QString> &otherwise = closedUntilOpened ? m_openedKeys : m_collapsedKeys;
        if (expanded == closedUntilOpened)
            otherwise.insert(key);
        else
            otherwise.remove(key);
    };
    connect(this, &QTreeWidget::itemCollapsed, this, [remember](QTreeWidgetItem *item) { remember(item, false); });
    connect(this, &QTreeWidget::itemExpanded, this, [remember](QTreeWidgetItem *item) { remember(item, true); });
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
    // A row shown closed until opened that the kept view does not list as closed was open.
    QList<const MyFiltersItem *> flat;
    flatten(rows, flat);
    m_openedKeys.clear();
    for (const MyFiltersItem *row : std::as_const(flat))
        if (row->isCollapsedByDefault && !m_collapsedKeys.contains(row->key))
            m_openedKeys.insert(row->key);
    rebuild(rows, selectedKeys);
}

QStringList SidebarCategoriesView::closedKeys() const
{
    QSet<QString> closed = m_collapsedKeys;
    for (QTreeWidgetItemIterator it(const_cast<SidebarCategoriesView *>(this)); *it; ++it)
        if (const QString key = (*it)->data(TitleColumn, keyRole).toString();
            (*it)->data(TitleColumn, collapsedByDefaultRole).toBool()) {
            if (m_openedKeys.contains(key))
                closed.remove(key);
            else
                closed.insert(key);
        }
    QStringList keys(closed.cbegin(), closed.cend());
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
        item->setData(TitleColumn, collapsedByDefaultRole, row.isCollapsedByDefault);
        addRows(row.children, item, selectedKeys);
        item->setExpanded(row.isCollapsedByDefault ? m_openedKeys.contains(row.key)
                                                   : !m_collapsedKeys.contains(row.key));
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
