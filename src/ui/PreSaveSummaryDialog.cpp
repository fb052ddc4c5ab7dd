#include "ui/PreSaveSummaryDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace orv {

PreSaveSummaryDialog::PreSaveSummaryDialog(const QList<PreSaveFinding> &findings, qsizetype entryCount,
                                           QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Before Saving"));
    auto *heading = new QLabel(entryCount == 1 ? tr("<b>One problem found before saving</b>")
                                               : tr("<b>%1 problems found before saving</b>").arg(entryCount),
                               this);
    auto *subline = new QLabel(tr("The files listed may not be saved as you expect. Everything else "
                                  "is saved as shown."),
                               this);
    subline->setWordWrap(true);

    auto *tree = new QTreeWidget(this);
    tree->setObjectName(QStringLiteral("preSaveFindings"));
    tree->setHeaderHidden(true);
    tree->setUniformRowHeights(true);
    for (const PreSaveFinding &finding : findings) {
        auto *kind = new QTreeWidgetItem(tree, {finding.description});
        kind->setToolTip(0, finding.description);
        for (const QString &path : finding.paths) {
            auto *file = new QTreeWidgetItem(kind, {path});
            file->setToolTip(0, path);
        }
    }
    tree->expandAll();

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *save = buttons->addButton(tr("Save Anyway"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    save->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(subline);
    layout->addWidget(tree, 1);
    layout->addWidget(buttons);
    resize(620, 380);
}

} // namespace orv
