#include "ui/SaveErrorsDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orv {

SaveErrorsDialog::SaveErrorsDialog(const QString &report, QWidget *parent) : QDialog(parent), m_report(report)
{
    setWindowTitle(tr("Save Problems"));
    auto *message = new QLabel(tr("<b>Some files could not be saved.</b><p>All other files were saved. The "
                                  "files listed keep their changes, so a later save can try again. This "
                                  "report is also kept in the error log.</p>"),
                               this);
    message->setWordWrap(true);

    auto *text = new QPlainTextEdit(report, this);
    text->setObjectName(QStringLiteral("saveErrorsReport"));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setTabStopDistance(text->fontMetrics().horizontalAdvance(QStringLiteral("    ")));

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    QPushButton *copy = buttons->addButton(tr("Copy"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this, [this] { QApplication::clipboard()->setText(m_report); });
    QPushButton *log = buttons->addButton(tr("Show Error Log"), QDialogButtonBox::ActionRole);
    log->setObjectName(QStringLiteral("showErrorLogButton"));
    connect(log, &QPushButton::clicked, this, &SaveErrorsDialog::showLogRequested);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(message);
    layout->addWidget(text, 1);
    layout->addWidget(buttons);
    resize(640, 400);
}

} // namespace orv
