#pragma once

#include "time/DateElementEditor.h"

#include <QTimer>
#include <QWidget>

namespace orv {

// The program's own date and time field: the wall clock of a zone as elements (year, month,
// day, hour, minute, second), one highlighted. Left and Right (Tab, Backtab) move the
// highlight, Up and Down change the element (with Alt the larger elements follow), digits type
// it; a whole date typed over the selected field (as it stands on focus, or after Ctrl+A) gives
// exactly that date. Undo and Redo (Ctrl+Z, Ctrl+Shift+Z) take back the field's own steps, one
// per element, never the window's. Return and Escape are left to the sheet around it.
//
// The logic is DateElementEditor's; this paints it and feeds it keys. Main thread only.
class OrvelleDatePicker : public QWidget
{
    Q_OBJECT
public:
    explicit OrvelleDatePicker(TimeZone zone, QWidget *parent = nullptr);

    Instant dateValue() const { return m_editor.dateValue(); }
    void setDateValue(Instant value);
    void setMinDate(Instant date) { m_editor.setMinDate(date); }
    void setMaxDate(Instant date) { m_editor.setMaxDate(date); }
    const DateElementEditor &editor() const { return m_editor; }
    // What the field shows, a running entry included.
    QString text() const { return m_editor.text(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    // Every change of the value, while it is typed: the timelines preview it.
    void dateValueChanged(orv::Instant value);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    // Beeps for a refused change, tells a real one, and repaints.
    void handle(DateElementEditor::Result result);
    QRectF characterRect(int first, int count) const;

    DateElementEditor m_editor;
    QTimer m_entryTimer; // _lastDownTimer: a second without digits ends the entry
};

} // namespace orv
