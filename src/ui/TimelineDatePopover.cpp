#include "ui/TimelineDatePopover.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace orv {

TimelineDatePopover::TimelineDatePopover(DateChanges &changes, TimelineDrag drag, QWidget *parent)
    : QFrame(parent, Qt::Popup), m_changes(changes), m_drag(std::move(drag)), m_zone(dateZoneOf(*m_drag.main)),
      m_editor(new OrvelleDatePicker(m_zone, this))
{
    setFrameShape(QFrame::StyledPanel);
    setAttribute(Qt::WA_DeleteOnClose);
    // The field shows the wall clock of the item's zone; the zone is named beside it.
    const OptionalDate date = m_drag.main->spDateTimeModified();
    m_editor->setDateValue(date ? *date : Instant(0.0));
    connect(m_editor, &OrvelleDatePicker::dateValueChanged, this,
            [this](Instant value) { Q_EMIT datePreviewed(value.wholeSeconds()); });
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_editor);
    layout->addWidget(new QLabel(m_zone.name(), this));
    layout->addWidget(buttons);
    m_editor->setFocus();
}

DateChangeResult TimelineDatePopover::accept()
{
    const DateChangeResult result = TimelineDrop::moveMainTo(m_changes, m_drag, m_editor->dateValue().wholeSeconds());
    close();
    return result;
}

void TimelineDatePopover::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        m_editor->clearFocus(); // a running entry counts
        accept();
        return;
    }
    QFrame::keyPressEvent(event);
}

} // namespace orv
