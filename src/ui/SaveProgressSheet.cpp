#include "ui/SaveProgressSheet.h"

#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace orv {

SaveProgressSheet::SaveProgressSheet(QWidget *window)
    : QWidget(window, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      m_status(new QLabel(this)),
      m_bar(new QProgressBar(this))
{
    setObjectName(QStringLiteral("saveProgressSheet"));
    setWindowTitle(tr("Saving"));
    setWindowModality(Qt::WindowModal);
    QFont bold = m_status->font();
    bold.setBold(true);
    m_status->setFont(bold);
    m_bar->setRange(0, 0);
    m_bar->setTextVisible(false);
    auto *note = new QLabel(tr("Each file is written in place and kept whole: a file holds all of its "
                               "changes or none."),
                            this);
    note->setWordWrap(true);
    note->setForegroundRole(QPalette::PlaceholderText);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->addWidget(m_status);
    layout->addWidget(m_bar);
    layout->addWidget(note);
    setFixedWidth(420);
    showStatus(QStringLiteral("workPanelPreSave"));
}

void SaveProgressSheet::showStatus(const QString &statusKey)
{
    if (statusKey == QLatin1String("workPanelSave"))
        m_status->setText(tr("Saving dates…"));
    else if (statusKey == QLatin1String("workPanelSyncXMP"))
        m_status->setText(tr("Keeping XMP in step…"));
    else if (statusKey == QLatin1String("workPanelWaitingForOtherSave"))
        m_status->setText(tr("Waiting for another save to finish…"));
    else
        m_status->setText(tr("Checking files…"));
}

void SaveProgressSheet::setMaximum(int maximum)
{
    m_bar->setRange(0, maximum);
}

void SaveProgressSheet::setValue(int value)
{
    m_bar->setValue(value);
}

void SaveProgressSheet::closeEvent(QCloseEvent *event)
{
    // A save cannot be left halfway: the sheet goes when the run has ended.
    event->ignore();
}

} // namespace orv
