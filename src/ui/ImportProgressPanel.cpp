#include "ui/ImportProgressPanel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace orv {

ImportProgressPanel::ImportProgressPanel(QWidget *parent)
    : QWidget(parent), m_text(new QLabel(this)), m_bar(new QProgressBar(this)), m_cancel(new QPushButton(tr("Stop"), this))
{
    m_bar->setFixedWidth(220);
    m_bar->setTextVisible(false);
    m_cancel->setToolTip(tr("Stop importing; folders already imported stay"));
    connect(m_cancel, &QPushButton::clicked, this, &ImportProgressPanel::cancelRequested);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text);
    layout->addWidget(m_bar);
    layout->addWidget(m_cancel);
}

void ImportProgressPanel::showProgress(const QString &text, int done, int total)
{
    m_text->setText(text);
    m_bar->setRange(0, total);
    m_bar->setValue(total > 0 ? done : 0);
}

void ImportProgressPanel::setCancellable(bool cancellable)
{
    m_cancel->setEnabled(cancellable);
}

} // namespace orv
