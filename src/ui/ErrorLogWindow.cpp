#include "ui/ErrorLogWindow.h"

#include "core/LogController.h"

#include <QAction>
#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace orv {

ErrorLogWindow::ErrorLogWindow(LogController &log, QWidget *parent) : QDialog(parent), m_log(log)
{
    setObjectName(QStringLiteral("errorLogWindow"));
    setWindowTitle(tr("Error Log"));
    m_lastAction = new QPushButton(tr("Last Action"), this);
    m_lastAction->setObjectName(QStringLiteral("errorLogLastAction"));
    m_logFile = new QPushButton(tr("Log File"), this);
    m_logFile->setObjectName(QStringLiteral("errorLogFile"));
    auto *views = new QButtonGroup(this);
    views->addButton(m_lastAction, 0);
    views->addButton(m_logFile, 1);
    for (QPushButton *button : {m_lastAction, m_logFile})
        button->setCheckable(true);
    connect(views, &QButtonGroup::idClicked, this, [this](int type) { showView(m_log.toggleViewType(type)); });

    m_text = new QPlainTextEdit(this);
    m_text->setObjectName(QStringLiteral("errorLogText"));
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *remove = buttons->addButton(tr("Delete Log"), QDialogButtonBox::DestructiveRole);
    remove->setObjectName(QStringLiteral("errorLogDelete"));
    connect(remove, &QPushButton::clicked, this, &ErrorLogWindow::deleteLog);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);

    auto *switcher = new QHBoxLayout;
    switcher->addStretch();
    switcher->addWidget(m_lastAction);
    switcher->addWidget(m_logFile);
    switcher->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(switcher);
    layout->addWidget(m_text, 1);
    layout->addWidget(buttons);
    resize(720, 420);
}

ErrorLogWindow &ErrorLogWindow::showFor(LogController &log, QWidget *window)
{
    auto *logWindow = window->findChild<ErrorLogWindow *>(QStringLiteral("errorLogWindow"));
    if (!logWindow)
        logWindow = new ErrorLogWindow(log, window);
    logWindow->refresh();
    logWindow->show();
    logWindow->raise();
    logWindow->activateWindow();
    return *logWindow;
}

void ErrorLogWindow::addTo(QMenu &menu, LogController &log, QWidget *window)
{
    QAction *action = menu.addAction(tr("Error Log"), window, [&log, window] { showFor(log, window); });
    action->setObjectName(QStringLiteral("errorLogAction"));
}

void ErrorLogWindow::refresh()
{
    showView(m_log.updateTextView());
}

void ErrorLogWindow::showView(const ErrorLogView &view)
{
    m_lastAction->setEnabled(view.isLastActionSelectable);
    (view.errorLogType == 0 ? m_lastAction : m_logFile)->setChecked(true);
    m_text->setPlainText(view.text);
    m_text->verticalScrollBar()->setValue(m_text->verticalScrollBar()->maximum());
}

void ErrorLogWindow::deleteLog()
{
    if (QMessageBox::question(this, tr("Delete Log"),
                              tr("Empty the error log file? The errors of earlier runs are lost."))
        != QMessageBox::Yes)
        return;
    m_log.deleteLog();
    refresh();
}

} // namespace orv
