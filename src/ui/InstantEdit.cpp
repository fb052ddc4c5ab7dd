#include "ui/InstantEdit.h"

namespace orv {

InstantEdit::InstantEdit(TimeZone zone, QWidget *parent) : QDateTimeEdit(parent), m_zone(std::move(zone))
{
    // The field holds a plain wall clock; in UTC Qt neither skips nor doubles any hour of it.
    setTimeSpec(Qt::UTC);
    setDisplayFormat(QStringLiteral("yyyy-MM-dd  HH:mm:ss"));
    setCalendarPopup(true);
}

void InstantEdit::setInstant(Instant instant)
{
    const Instant::Civil c = m_zone.localCivil(instant);
    setDateTime(QDateTime(QDate(c.year, c.month, c.day), QTime(c.hour, c.minute, c.second), Qt::UTC));
}

Instant InstantEdit::instant() const
{
    const QDate d = date();
    const QTime t = time();
    return m_zone.instantFromLocalCivil({d.year(), d.month(), d.day(), t.hour(), t.minute(), t.second(), 0.0});
}

} // namespace orv
