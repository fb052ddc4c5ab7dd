#include "ui/OrvelleDatePicker.h"

#include <QApplication>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

namespace orv {

namespace {

constexpr int textMargin = 6;

} // namespace

OrvelleDatePicker::OrvelleDatePicker(TimeZone zone, QWidget *parent)
    : QWidget(parent), m_editor(std::move(zone), Instant(0.0))
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled, false);
    // Equal columns keep each element where the pointer finds it.
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_entryTimer.setSingleShot(true);
    m_entryTimer.setInterval(1000);
    connect(&m_entryTimer, &QTimer::timeout, this, [this] { handle(m_editor.clearValue()); });
}

void OrvelleDatePicker::setDateValue(Instant value)
{
    m_entryTimer.stop();
    m_editor.setDateValue(value);
    update();
}

bool OrvelleDatePicker::event(QEvent *event)
{
    // The field's own undo, not the window's, while it has the keys.
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo) || key->matches(QKeySequence::SelectAll)) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
}

QSize OrvelleDatePicker::sizeHint() const
{
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(m_editor.text()) + 2 * textMargin, metrics.height() + 10};
}

QRectF OrvelleDatePicker::characterRect(int first, int count) const
{
    const QFontMetricsF metrics(font());
    const QString text = m_editor.text();
    const double left = textMargin + metrics.horizontalAdvance(text.left(first));
    return {left, 3.0, metrics.horizontalAdvance(text.mid(first, count)), height() - 6.0};
}

void OrvelleDatePicker::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &frame, this);
    frame.state |= QStyle::State_Sunken;
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &frame, &painter, this);

    const QString text = m_editor.text();
    if (hasFocus()) {
        const auto [first, count] = m_editor.isAllSelected() ? std::pair<int, int>(0, int(text.size()))
                                                             : DateElementEditor::rangeOfElement(m_editor.highlightedIndex());
        painter.fillRect(characterRect(first, count), palette().highlight());
    }
    const QFontMetricsF metrics(font());
    const double baseline = (height() - metrics.height()) / 2.0 + metrics.ascent();
    for (int n = 0; n < text.size(); ++n) {
        const QRectF cell = characterRect(n, 1);
        const bool highlighted = hasFocus() && (m_editor.isAllSelected() || [&] {
                                     const auto [first, count] =
                                         DateElementEditor::rangeOfElement(m_editor.highlightedIndex());
                                     return n >= first && n < first + count;
                                 }());
        painter.setPen(highlighted ? palette().highlightedText().color() : palette().text().color());
        painter.drawText(QPointF(cell.left(), baseline), text.mid(n, 1));
    }
}

void OrvelleDatePicker::handle(DateElementEditor::Result result)
{
    if (result == DateElementEditor::Result::Refused)
        QApplication::beep();
    if (m_editor.hasRunningEntry())
        m_entryTimer.start();
    else
        m_entryTimer.stop();
    update();
    if (result == DateElementEditor::Result::Changed)
        Q_EMIT dateValueChanged(m_editor.dateValue());
}

void OrvelleDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Undo)) {
        handle(m_editor.undo());
        return;
    }
    if (event->matches(QKeySequence::Redo)) {
        handle(m_editor.redo());
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        m_editor.selectAll();
        update();
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        m_editor.moveHighlight(event->key() == Qt::Key_Left ? -1 : 1);
        handle(DateElementEditor::Result::Unchanged);
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        handle(m_editor.modifyCurrentElementByAdding(event->key() == Qt::Key_Up ? 1 : -1,
                                                     event->modifiers() & Qt::AltModifier));
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // The entry counts before the sheet around accepts.
        handle(m_editor.clearValue());
        event->ignore();
        return;
    default:
        break;
    }
    const QString typed = event->text();
    if (typed.size() == 1 && (typed.at(0).isDigit() || typed.at(0).isPunct() || typed.at(0).isSpace()
                              || typed.at(0) == QLatin1Char('T'))) {
        handle(m_editor.modifyCurrentElementByTyping(typed.at(0)));
        return;
    }
    QWidget::keyPressEvent(event);
}

bool OrvelleDatePicker::focusNextPrevChild(bool next)
{
    // Tab walks the elements first, then leaves the field.
    if (hasFocus() && m_editor.moveHighlight(next ? 1 : -1)) {
        handle(DateElementEditor::Result::Unchanged);
        return true;
    }
    return QWidget::focusNextPrevChild(next);
}

void OrvelleDatePicker::mousePressEvent(QMouseEvent *event)
{
    const QString text = m_editor.text();
    const QFontMetricsF metrics(font());
    int position = 0;
    while (position < text.size() && textMargin + metrics.horizontalAdvance(text.left(position + 1)) < event->position().x())
        ++position;
    m_editor.highlightElementAtIndex(DateElementEditor::elementAtCharacter(position));
    setFocus(Qt::MouseFocusReason);
    handle(DateElementEditor::Result::Unchanged);
}

void OrvelleDatePicker::wheelEvent(QWheelEvent *event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps != 0)
        handle(m_editor.modifyCurrentElementByAdding(steps));
    event->accept();
}

void OrvelleDatePicker::focusInEvent(QFocusEvent *event)
{
    // As a text field: entered with the keyboard, the whole date stands selected for typing over.
    if (event->reason() != Qt::MouseFocusReason)
        m_editor.selectAll();
    QWidget::focusInEvent(event);
    update();
}

void OrvelleDatePicker::focusOutEvent(QFocusEvent *event)
{
    handle(m_editor.clearValue());
    QWidget::focusOutEvent(event);
}

} // namespace orv
