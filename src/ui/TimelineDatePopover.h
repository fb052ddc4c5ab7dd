#pragma once

#include "app/TimelineDrop.h"
#include "time/TimeZone.h"
#include "ui/OrvelleDatePicker.h"

#include <QFrame>


namespace orv {

// The date popover on the selected item: the program's date field showing the item's date in its
// zone. Each change of the field is announced for the timelines' preview; accepting (Return, OK)
// moves the item to the typed date through the date change owner, as a drop would: its folder's
// offset in folder mode, the selection with it in single mode. The field's undo steps are its
// own and go with the popover; the accepted change is one step of the window. Main thread only.
class TimelineDatePopover : public QFrame
{
    Q_OBJECT
public:
    TimelineDatePopover(DateChanges &changes, TimelineDrag drag, QWidget *parent = nullptr);

    OrvelleDatePicker *editor() const { return m_editor; }
    const TimelineDrag &drag() const { return m_drag; }
    DateChangeResult accept();

Q_SIGNALS:
    // The whole second the main item would take: the timelines preview it.
    void datePreviewed(double second);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    DateChanges &m_changes;
    TimelineDrag m_drag;
    TimeZone m_zone;
    OrvelleDatePicker *m_editor;
};

} // namespace orv
