#include "ui/VQSView.h"

#include "core/MySinglePic.h"
#include "folders/ImportKeyStates.h"
#include "thumbs/MyThumbsQueue.h"
#include "ui/MyTimelineView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QRubberBand>
#include <QScrollBar>

#include <cmath>

namespace orv {

namespace {

const QColor gridBackground(38, 38, 40);
const QColor selectionColor(60, 140, 255);
const QColor keeperColor(70, 190, 90);
const QColor rejectColor(220, 70, 60);
// Rows kept as pixmaps beyond those on screen, so a short scroll back decodes nothing.
constexpr qsizetype layerRowsAround = 2;

} // namespace

VQSView::VQSView(MyTimelineView &timeline, MyThumbsQueue &thumbs, QWidget *parent)
    : QAbstractScrollArea(parent), m_timeline(timeline), m_thumbs(thumbs),
      m_rubberBand(new QRubberBand(QRubberBand::Rectangle, viewport()))
{
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setAutoFillBackground(false);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    sourceChanged();
}

void VQSView::sourceChanged()
{
    m_grid.setSource(m_timeline.strip().geometrySource());
    relayout();
    ensureMainVisible();
    viewport()->update();
}

void VQSView::ensureMainVisible()
{
    if (const MySinglePic *main = m_timeline.strip().picSelection())
        ensureVisible(m_timeline.strip().indexOf(main));
}

void VQSView::zoom(int steps)
{
    m_grid.setThumbSizeTargetValue(m_grid.thumbSizeTargetValue() * std::pow(1.2, steps));
    relayout();
    viewport()->update();
}

void VQSView::relayout()
{
    m_grid.setViewWidth(viewport()->width());
    QScrollBar *bar = verticalScrollBar();
    bar->setRange(0, std::max(0, int(std::ceil(m_grid.contentHeight())) - viewport()->height()));
    bar->setPageStep(viewport()->height());
    bar->setSingleStep(int(m_grid.heightForRow() / 4));
    Q_EMIT visibleRangeChanged(visibleRange());
}

ThumbRange VQSView::visibleRange() const
{
    return m_grid.visibleRange(verticalScrollBar()->value(), viewport()->height());
}

void VQSView::ensureVisible(qsizetype index)
{
    const QRectF frame = m_grid.frameForPicAtIndex(index);
    if (frame.isEmpty())
        return;
    QScrollBar *bar = verticalScrollBar();
    const double pad = m_grid.paddingRowTop();
    if (frame.top() - pad < bar->value())
        bar->setValue(int(std::floor(frame.top() - pad)));
    else if (frame.bottom() + pad > bar->value() + viewport()->height())
        bar->setValue(int(std::ceil(frame.bottom() + pad)) - viewport()->height());
}

void VQSView::thumbReady(quint32 sessionUniqueId)
{
    const ThumbRange range = visibleRange();
    for (qsizetype i = range.first; i < range.end(); ++i) {
        if (m_grid.theSource().at(i)->sessionUniqueId == sessionUniqueId) {
            m_layers.remove(sessionUniqueId);
            viewport()->update(m_grid.frameForPicAtIndex(i).translated(0, -verticalScrollBar()->value()).toAlignedRect());
            return;
        }
    }
}

void VQSView::dropLayersOutside(ThumbRange range)
{
    const qsizetype around = layerRowsAround * m_grid.currentColumnCount();
    const qsizetype first = std::max<qsizetype>(range.first - around, 0);
    const qsizetype end = std::min(range.end() + around, m_grid.count());
    QSet<quint32> keep;
    for (qsizetype i = first; i < end; ++i)
        keep.insert(m_grid.theSource().at(i)->sessionUniqueId);
    m_layers.keepOnly(keep);
}

void VQSView::drawCell(QPainter &painter, qsizetype index, const MySinglePic &pic)
{
    const QRectF cell = m_grid.frameForPicAtIndex(index);
    const TimelineStrip &strip = m_timeline.strip();
    if (const QPixmap *layer = m_layers.layerFor(pic, m_thumbs.cache(), devicePixelRatioF())) {
        const QSizeF size = layer->deviceIndependentSize();
        painter.drawPixmap(QPointF(cell.x() + (cell.width() - size.width()) / 2,
                                   cell.y() + (cell.height() - size.height()) / 2),
                           *layer);
    } else {
        painter.fillRect(cell.adjusted(6, 6, -6, -6), QColor(70, 70, 74));
    }
    const MySinglePic &rated = pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    const double mark = std::max(cell.width() / 8, 10.0);
    if (rated.isRejected) {
        painter.fillRect(cell, QColor(0, 0, 0, 140)); // rejects stand back
        painter.setPen(QPen(rejectColor, mark / 4));
        const QRectF cross(cell.right() - mark * 1.4, cell.top() + mark * 0.4, mark, mark);
        painter.drawLine(cross.topLeft(), cross.bottomRight());
        painter.drawLine(cross.topRight(), cross.bottomLeft());
    } else if (rated.isKeeper) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(keeperColor);
        painter.drawEllipse(QRectF(cell.right() - mark * 1.4, cell.top() + mark * 0.4, mark, mark));
        painter.setBrush(Qt::NoBrush);
    }
    if (!strip.isRaised(pic))
        painter.fillRect(cell, QColor(0, 0, 0, 90));
    if (strip.isSelected(&pic) || strip.picSelection() == &pic) {
        const double width = strip.picSelection() == &pic ? 4 : 2;
        painter.setPen(QPen(selectionColor, width));
        painter.drawRect(cell.adjusted(-width / 2, -width / 2, width / 2, width / 2));
    }
}

void VQSView::paintGrid(QPainter &painter)
{
    painter.fillRect(QRect(QPoint(), viewport()->size()), gridBackground);
    m_layers.setSide(int(std::lround(m_grid.vqsWidth() * devicePixelRatioF())));
    const ThumbRange range = visibleRange();
    dropLayersOutside(range);
    painter.save();
    painter.translate(0, -verticalScrollBar()->value());
    for (qsizetype i = range.first; i < range.end(); ++i)
        drawCell(painter, i, *m_grid.theSource().at(i));
    painter.restore();
}

void VQSView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    paintGrid(painter);
}

void VQSView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    m_layers.clear(); // the cell side may have changed
    relayout();
    // A grid made before it had a size, as at a restore, scrolled for an empty viewport.
    ensureMainVisible();
}

void VQSView::scrollContentsBy(int, int)
{
    viewport()->update();
    Q_EMIT visibleRangeChanged(visibleRange());
}

QPointF VQSView::contentPoint(QPointF viewportPoint) const
{
    return viewportPoint + QPointF(0, verticalScrollBar()->value());
}

qsizetype VQSView::indexAt(QPointF viewportPoint) const
{
    return m_grid.picIndexAtLocalPoint(contentPoint(viewportPoint), false);
}

void VQSView::mousePressEvent(QMouseEvent *event)
{
    const qsizetype index = indexAt(event->position());
    if (event->button() == Qt::LeftButton && index < 0 && m_timeline.stripIsSingleMode()) {
        m_rectangle = Rectangle{contentPoint(event->position()), clickKeyFor(event->modifiers())};
        m_timeline.selection().beginRectangle(m_rectangle->key);
        m_timeline.viewport()->update();
        refresh();
        return;
    }
    if (event->button() != Qt::LeftButton || index < 0) {
        QAbstractScrollArea::mousePressEvent(event);
        return;
    }
    MySinglePic *pic = m_grid.theSource().at(index);
    m_timeline.selection().press(pic, clickKeyFor(event->modifiers()), m_timeline.stripIsSingleMode());
    m_timeline.selectionChanged(pic);
    refresh();
}

void VQSView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_rectangle || !(event->buttons() & Qt::LeftButton)) {
        QAbstractScrollArea::mouseMoveEvent(event);
        return;
    }
    // Beyond the top or bottom edge the grid scrolls by as much as the pointer is out.
    const double y = event->position().y();
    QScrollBar *bar = verticalScrollBar();
    if (y < 0)
        bar->setValue(bar->value() + int(std::floor(y)));
    else if (y > viewport()->height())
        bar->setValue(bar->value() + int(std::ceil(y - viewport()->height())));
    updateRectangle(event->position());
}

void VQSView::updateRectangle(QPointF viewportPoint)
{
    const QPointF pointer = contentPoint(viewportPoint);
    const QRectF rect = QRectF(m_rectangle->start, pointer).normalized();
    const TimelineStrip &strip = m_timeline.strip();
    QList<MySinglePic *> touched;
    const ThumbRange rows = m_grid.visibleRange(rect.top(), rect.height());
    for (qsizetype i = rows.first; i < rows.end(); ++i) {
        MySinglePic *pic = m_grid.theSource().at(i);
        if (strip.isRaised(*pic) && m_grid.frameForPicAtIndex(i).intersects(rect))
            touched.append(pic);
    }
    m_timeline.selection().updateRectangle(touched, m_rectangle->key == ClickKey::Command,
                                           m_grid.picIndexAtLocalPoint(pointer, true));
    m_rubberBand->setGeometry(rect.translated(0, -verticalScrollBar()->value()).toAlignedRect());
    m_rubberBand->show();
    // The window hears of the selection once, at the release: the grid must not scroll to the
    // main item under the user's hand.
    m_timeline.viewport()->update();
    refresh();
}

void VQSView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_rectangle || event->button() != Qt::LeftButton) {
        QAbstractScrollArea::mouseReleaseEvent(event);
        return;
    }
    m_rubberBand->hide();
    m_rectangle.reset();
    m_timeline.selectionChanged(m_timeline.strip().picSelection());
    refresh();
}

void VQSView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const qsizetype index = indexAt(event->position());
    if (index >= 0)
        Q_EMIT fullScreenRequested(m_grid.theSource().at(index));
}

bool VQSView::arrowKey(const QKeyEvent &event)
{
    VQSController::Direction direction;
    switch (event.key()) {
    case Qt::Key_Left: direction = VQSController::Direction::Left; break;
    case Qt::Key_Right: direction = VQSController::Direction::Right; break;
    case Qt::Key_Up: direction = VQSController::Direction::Up; break;
    case Qt::Key_Down: direction = VQSController::Direction::Down; break;
    default: return false;
    }
    TimelineStrip &strip = m_timeline.strip();
    const MySinglePic *cursor = m_timeline.selection().target() ? m_timeline.selection().target() : strip.picSelection();
    const qsizetype from = strip.indexOf(cursor);
    const qsizetype to = m_grid.selectFrom(from, direction);
    if (to < 0)
        return true; // at the edge nothing moves
    // From no item the strip's own arrow starts at the first or last item.
    const int step = from < 0 ? (to == 0 ? 1 : -1) : int(to - from);
    const HeldKeys keys = HeldKeys::fromModifiers(event.modifiers());
    MySinglePic *reached = m_timeline.selection().arrow(step, clickKeyFor(event.modifiers()),
                                                        keys.command && keys.control && !keys.shift,
                                                        m_timeline.stripIsSingleMode());
    if (reached) {
        ensureVisible(strip.indexOf(reached));
        m_timeline.selectionChanged(reached);
    }
    refresh();
    return true;
}

void VQSView::keyPressEvent(QKeyEvent *event)
{
    if (arrowKey(*event))
        return;
    QScrollBar *bar = verticalScrollBar();
    switch (event->key()) {
    case Qt::Key_Home: bar->triggerAction(QScrollBar::SliderToMinimum); return;
    case Qt::Key_End: bar->triggerAction(QScrollBar::SliderToMaximum); return;
    case Qt::Key_PageUp: bar->triggerAction(QScrollBar::SliderPageStepSub); return;
    case Qt::Key_PageDown: bar->triggerAction(QScrollBar::SliderPageStepAdd); return;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (MySinglePic *main = m_timeline.strip().picSelection()) {
            Q_EMIT fullScreenRequested(main);
            return;
        }
        break;
    default: break;
    }
    QAbstractScrollArea::keyPressEvent(event);
}

} // namespace orv
