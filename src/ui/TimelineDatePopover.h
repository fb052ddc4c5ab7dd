#pragma once

#include "app/TimelineDrop.h"
#include "time/TimeZone.h"

#include <QFrame>

class QDateTimeEdit;

namespace orv {

// The date popover on the selected item: a date and time field showing the item's date in its
// zone. Accepting moves the item to the typed date through the date change owner, as a drop
// would: its folder's offset in folder mode (a compound folder's members keep their distances),
// the selection with it in single mode. Main thread only.
class TimelineDatePopover : public QFrame
{
    Q_OBJECT
public:
    TimelineDatePopover(DateChanges &changes, TimelineDrag drag, QWidget *parent = nullptr);

    QDateTimeEdit *editor() const { return m_editor; }
    DateChangeResult accept();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    DateChanges &m_changes;
    TimelineDrag m_drag;
    TimeZone m_zone;
    QDateTimeEdit *m_editor;
};

} // namespace orv
