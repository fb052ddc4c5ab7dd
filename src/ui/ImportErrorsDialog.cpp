#include "ui/ImportErrorsDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace orv {

namespace {

// Beyond this many files the report opens folded to its problems.
constexpr int unfoldedFileLimit = 200;

QList<ImportErrors::Kind> kindsInOrder(const ImportErrors &errors)
{
    QList<ImportErrors::Kind> kinds;
    for (const ImportErrors::Problem &problem : errors.problems())
        if (!kinds.contains(problem.kind))
            kinds.append(problem.kind);
    return kinds;
}

} // namespace

ImportErrorsDialog::ImportErrorsDialog(const QList<FolderImportErrors> &folders, QWidget *parent)
    : QDialog(parent), m_tree(new QTreeWidget(this))
{
    setWindowTitle(tr("Import Problems"));
    auto *message = new QLabel(tr("<b>Some files could not be imported as they are.</b><p>Everything else was "
                                  "imported. Nothing was written to any file.</p>"),
                               this);
    message->setWordWrap(true);

    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    int files = 0;
    for (const FolderImportErrors &folder : folders) {
        auto *folderItem = new QTreeWidgetItem(m_tree, {folder.folderName});
        folderItem->setToolTip(0, folder.folderPath);
        QFont bold = folderItem->font(0);
        bold.setBold(true);
        folderItem->setFont(0, bold);
        const QDir directory(folder.folderPath);
        for (const ImportErrors::Kind kind : kindsInOrder(folder.errors)) {
            const QStringList paths = folder.errors.paths(kind);
            auto *kindItem = new QTreeWidgetItem(folderItem, {ImportErrors::describe(kind, paths.size())});
            for (const QString &path : paths) {
                auto *fileItem = new QTreeWidgetItem(kindItem, {directory.relativeFilePath(path)});
                fileItem->setToolTip(0, path);
            }
            files += int(paths.size());
        }
    }
    m_tree->expandToDepth(files <= unfoldedFileLimit ? 1 : 0);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    QPushButton *copy = buttons->addButton(tr("Copy Report"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this, [this] { QApplication::clipboard()->setText(reportText()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(message);
    layout->addWidget(m_tree, 1);
    layout->addWidget(buttons);
    resize(640, 420);
}

QString ImportErrorsDialog::reportText() const
{
    QStringList lines;
    for (int f = 0; f < m_tree->topLevelItemCount(); ++f) {
        const QTreeWidgetItem *folder = m_tree->topLevelItem(f);
        lines.append(folder->toolTip(0));
        for (int k = 0; k < folder->childCount(); ++k) {
            const QTreeWidgetItem *kind = folder->child(k);
            lines.append(QStringLiteral("  ") + kind->text(0));
            for (int i = 0; i < kind->childCount(); ++i)
                lines.append(QStringLiteral("    ") + kind->child(i)->toolTip(0));
        }
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

} // namespace orv
