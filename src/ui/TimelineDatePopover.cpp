#include "ui/TimelineDatePopover.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace orv {

namespace {

TimeZone zoneOf(const MySinglePic &pic)
{
    const std::optional<TimeZone> zone = MySingleFolder::of(pic) ? MySingleFolder::of(pic)->targetTimeZoneForPic(pic) : std::nullopt;
    return zone ? *zone : TimeZone::systemZone();
}

} // namespace

TimelineDatePopover::TimelineDatePopover(DateChanges &changes, TimelineDrag drag, QWidget *parent)
    : QFrame(parent, Qt::Popup), m_changes(changes), m_drag(std::move(drag)), m_zone(zoneOf(*m_drag.main)),
      m_editor(new QDateTimeEdit(this))
{
    setFrameShape(QFrame::StyledPanel);
    setAttribute(Qt::WA_DeleteOnClose);
    // The field shows the wall clock of the item's zone; the zone is named beside it.
    const OptionalDate date = m_drag.main->spDateTimeModified();
    const QDateTime inZone = QDateTime::fromSecsSinceEpoch(qint64(date ? date->wholeSeconds() : 0.0),
                                                           m_zone.qTimeZone());
    m_editor->setTimeSpec(Qt::UTC);
    m_editor->setDateTime(QDateTime(inZone.date(), inZone.time(), Qt::UTC));
    m_editor->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
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
    const QDateTime typed = m_editor->dateTime();
    const QDateTime inZone(typed.date(), typed.time(), m_zone.qTimeZone());
    const DateChangeResult result = TimelineDrop::moveMainTo(m_changes, m_drag, double(inZone.toSecsSinceEpoch()));
    close();
    return result;
}

void TimelineDatePopover::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        accept();
        return;
    }
    QFrame::keyPressEvent(event);
}

} // namespace orv
