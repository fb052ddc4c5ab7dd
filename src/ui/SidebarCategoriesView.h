#pragma once

#include "selection/MySidebarController.h"

#include <QTreeWidget>

namespace orv {

// The sidebar's categories as a tree: each row with its count, headings in bold and never
// selected. Several rows may be chosen; the window filters by them. The rows come whole from the
// model after every change, and the chosen and opened rows stay by their keys. Main thread only.
class SidebarCategoriesView : public QTreeWidget
{
    Q_OBJECT
public:
    enum Column : int { TitleColumn, CountColumn };
    static constexpr int keyRole = Qt::UserRole;
    static constexpr int collapsedByDefaultRole = Qt::UserRole + 1;

    explicit SidebarCategoriesView(QWidget *parent = nullptr);

    void showRows(const QList<MyFiltersItem> &rows, const QStringList &selectedKeys);
    // The rows built afresh with those of closedKeys closed, as a kept view had them.
    void showRowsClosing(const QList<MyFiltersItem> &rows, const QStringList &selectedKeys, const QStringList &closedKeys);
    // The rows closed, in the order of their keys: those the user closed, and those shown closed
    // until opened that the user did not open.
    QStringList closedKeys() const;
    // The item of a row, for tests and the window's guides; null when none shows it.
    QTreeWidgetItem *itemForKey(const QString &key) const;

Q_SIGNALS:
    // The user chose other rows.
    void selectedKeysChanged(const QStringList &keys);

private:
    void rebuild(const QList<MyFiltersItem> &rows, const QStringList &selectedKeys);
    void addRows(const QList<MyFiltersItem> &rows, QTreeWidgetItem *parent, const QStringList &selectedKeys);
    QStringList selectedKeys() const;

    // Rows the user closed stay closed across refreshes; all others open.
    QSet<QString> m_collapsedKeys;
    // Of the rows shown closed until opened, those the user opened: they stay open.
    QSet<QString> m_openedKeys;
    bool m_isRebuilding = false;
};

} // namespace orv
