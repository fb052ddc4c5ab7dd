#include "ui/KeyboardHelp.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace orv {

namespace {

struct StripKey
{
    const char *keys;
    const char *what;
};

constexpr StripKey stripKeys[] = {
    {QT_TRANSLATE_NOOP("KeyboardHelp", "← / →"), QT_TRANSLATE_NOOP("KeyboardHelp", "Select the previous or next item")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Shift+← / →"), QT_TRANSLATE_NOOP("KeyboardHelp", "Add the previous or next item to the selection")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Alt+← / →"),
     QT_TRANSLATE_NOOP("KeyboardHelp", "Jump through the selection, or to the edge of the run of items")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Alt+↑ / ↓"), QT_TRANSLATE_NOOP("KeyboardHelp", "Select the previous or next changed item")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Ctrl+Alt+← / →"),
     QT_TRANSLATE_NOOP("KeyboardHelp", "Move the selected items' date past their neighbours; one undo step when the keys are let go")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Ctrl+Alt+Meta+← / →"), QT_TRANSLATE_NOOP("KeyboardHelp", "The same, into the next gap")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Return"),
     QT_TRANSLATE_NOOP("KeyboardHelp", "Type a date for the selected item; on an item of another folder, show its folder")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "↑ / ↓ while dragging"),
     QT_TRANSLATE_NOOP("KeyboardHelp", "More or fewer items keep their gap at the edges of the dragged run")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Home / End"), QT_TRANSLATE_NOOP("KeyboardHelp", "Scroll to the start or the end")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Page Up / Page Down"), QT_TRANSLATE_NOOP("KeyboardHelp", "Scroll by a page")},
    {QT_TRANSLATE_NOOP("KeyboardHelp", "Ctrl+Page Up / Page Down"), QT_TRANSLATE_NOOP("KeyboardHelp", "Scroll by a date chapter")},
};

void addMenuKeys(QTreeWidgetItem &section, const QMenu &menu, const QString &path)
{
    for (const QAction *action : menu.actions()) {
        const QString name = path + QString(action->text()).remove(QLatin1Char('&'));
        if (action->menu()) {
            addMenuKeys(section, *action->menu(), name + QStringLiteral(" › "));
            continue;
        }
        const QList<QKeySequence> keys = action->shortcuts();
        if (action->isSeparator() || keys.isEmpty())
            continue;
        QStringList texts;
        for (const QKeySequence &key : keys)
            texts.append(key.toString(QKeySequence::NativeText));
        new QTreeWidgetItem(&section, {texts.join(QStringLiteral("  or  ")), name});
    }
}

} // namespace

KeyboardHelp::KeyboardHelp(const QMenuBar &menus, QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("Keyboard Shortcuts"));
    auto *list = new QTreeWidget(this);
    list->setObjectName(QStringLiteral("keyboardShortcuts"));
    list->setHeaderLabels({tr("Keys"), tr("What they do")});
    list->setRootIsDecorated(false);
    list->setSelectionMode(QAbstractItemView::NoSelection);

    auto *commands = new QTreeWidgetItem(list, {tr("Commands")});
    for (const QAction *top : menus.actions())
        if (top->menu())
            addMenuKeys(*commands, *top->menu(), QString(top->text()).remove(QLatin1Char('&')) + QStringLiteral(" › "));
    auto *strip = new QTreeWidgetItem(list, {tr("Timeline")});
    for (const StripKey &key : stripKeys)
        new QTreeWidgetItem(strip, {QCoreApplication::translate("KeyboardHelp", key.keys),
                                    QCoreApplication::translate("KeyboardHelp", key.what)});
    for (QTreeWidgetItem *section : {commands, strip}) {
        QFont bold = section->font(0);
        bold.setBold(true);
        section->setFont(0, bold);
        section->setFirstColumnSpanned(true);
    }
    list->expandAll();
    list->header()->resizeSections(QHeaderView::ResizeToContents);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(list, 1);
    layout->addWidget(buttons);
    resize(820, 560);
}

} // namespace orv
