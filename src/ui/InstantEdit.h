#pragma once

#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QDateTimeEdit>

namespace orv {

// A date and time field that shows an instant as the wall clock of a zone: the user types what
// a clock there showed, and the zone turns it back into an instant.
class InstantEdit : public QDateTimeEdit
{
    Q_OBJECT
public:
    explicit InstantEdit(TimeZone zone, QWidget *parent = nullptr);

    void setInstant(Instant instant);
    Instant instant() const;

private:
    TimeZone m_zone;
};

} // namespace orv
