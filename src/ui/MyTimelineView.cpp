#include "ui/MyTimelineView.h"

#include "core/MySinglePic.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"

#include "folders/ImportKeyStates.h"

#include <QDateTime>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRubberBand>
#include <QScrollBar>
#include <QToolTip>

#include <cmath>

namespace orv {

namespace {
// Items beyond each side of the visible range that keep their pixmaps.
constexpr qsizetype layerExtension = 2 + 2;
const QColor background(38, 38, 40);
const QColor selectionColor(70, 140, 255);
const QColor unsavedColor(255, 150, 30);
const QColor labelColor(225, 225, 225);
const QColor markColor(120, 120, 125);
// How far the pointer goes before a press becomes a sweep or a rectangle.
constexpr double dragThreshold = 5.0;
// The zone along each side where a drag scrolls the strip (scrollModifier), and each step.
constexpr double autoscrollZone = 50.0;
constexpr int autoscrollStep = 10;
} // namespace

MyTimelineView::MyTimelineView(MyTimelinesController &controller, TimelineStrip &strip, MyThumbsQueue &thumbs,
                               QWidget *parent)
    : QAbstractScrollArea(parent), m_controller(controller), m_strip(strip), m_thumbs(thumbs), m_selection(strip),
      m_rubberBand(new QRubberBand(QRubberBand::Rectangle, viewport()))
{
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
    m_autoscrollTimer.setInterval(20);
    connect(&m_autoscrollTimer, &QTimer::timeout, this, [this] {
        QScrollBar *bar = horizontalScrollBar();
        const int before = bar->value();
        bar->setValue(before + (m_autoscrollX > viewport()->width() / 2.0 ? autoscrollStep : -autoscrollStep));
        if (bar->value() == before) {
            m_autoscrollTimer.stop();
            return;
        }
        if (m_press.rectangle)
            updateRectangle(m_lastPointer);
        else if (m_press.sweep)
            sweepTo(m_lastPointer);
    });
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&thumbs, &MyThumbsQueue::thumbReady, this, &MyTimelineView::thumbReady);
}

void MyTimelineView::setOptions(const TimelineViewOptions &options)
{
    m_options = options;
    relayout();
}

Instant MyTimelineView::today() const
{
    return m_today ? *m_today : Instant(double(QDateTime::currentSecsSinceEpoch()));
}

void MyTimelineView::relayout()
{
    TimelineGeometry &geometry = m_strip.geometry();
    geometry.setExtraScrollArea(m_options.extraTLsScrollArea);
    geometry.setLabelsShown(m_options.displayTimelineLabels);
    const QSize size = viewport()->size();
    geometry.updateSize(size.width(), size.height(), m_strip.geometrySource().size());
    geometry.changedTimelineViewHeight(m_options.timelineHeight, height(), m_controller.isSplit());
    const double overflow = geometry.totalWidth() - size.width();
    horizontalScrollBar()->setRange(0, std::max(0, int(std::ceil(overflow))));
    horizontalScrollBar()->setPageStep(size.width());
    horizontalScrollBar()->setSingleStep(int(geometry.stride()));
    m_mode = m_labels.dateDisplayModeFull(m_controller.source_full(), today());
    const int side = int(std::ceil(geometry.thumbSize() * devicePixelRatioF()));
    m_layers.setSide(side);
    viewport()->update();
}

void MyTimelineView::sourceChanged()
{
    // The target may have gone with its folder; compared, never read.
    if (m_selection.target() && !m_strip.theSource().contains(m_selection.target()))
        m_selection.setTarget(nullptr);
    relayout();
    Q_EMIT visibleRangeChanged();
}

void MyTimelineView::setTempSource(const QList<MySinglePic *> &tempSource)
{
    m_strip.setTempSource(tempSource);
    relayout();
    Q_EMIT visibleRangeChanged();
}

void MyTimelineView::clearTempSource()
{
    m_strip.clearTempSource();
    relayout();
    Q_EMIT visibleRangeChanged();
}

double MyTimelineView::contentX(double x) const
{
    return x + horizontalScrollBar()->value();
}

double MyTimelineView::viewportX(double x) const
{
    return x - horizontalScrollBar()->value();
}

MySinglePic *MyTimelineView::picAtPoint(QPointF point) const
{
    return m_strip.picAtLocationInView(contentX(point.x()), point.y());
}

qsizetype MyTimelineView::picIndexAtHorizontalMouseLocation(double x, bool snapToLegal) const
{
    return m_strip.geometry().picIndexAtHorizontalMouseLocation(contentX(x), snapToLegal);
}

QRectF MyTimelineView::thumbRectInViewport(qsizetype index) const
{
    return m_strip.thumbRectCalculatedAtIndex(index).translated(-horizontalScrollBar()->value(), 0);
}

ThumbRange MyTimelineView::visibleThumbsRange(qsizetype extension) const
{
    return m_strip.visibleThumbsRange(horizontalScrollBar()->value(), viewport()->width(), extension);
}

void MyTimelineView::scrollToIndex(qsizetype index)
{
    const TimelineGeometry &geometry = m_strip.geometry();
    const double centre = geometry.minXForIndex(index) + geometry.thumbSize() / 2;
    horizontalScrollBar()->setValue(int(centre - viewport()->width() / 2.0));
}

void MyTimelineView::ensureVisible(const MySinglePic *pic)
{
    const qsizetype index = m_strip.indexOf(pic);
    if (index < 0)
        return;
    const TimelineGeometry &geometry = m_strip.geometry();
    const double left = horizontalScrollBar()->value();
    const double width = viewport()->width();
    if (geometry.minXForIndex(index) < left || geometry.maxXForIndex(index) > left + width)
        scrollToIndex(index);
}

void MyTimelineView::scrollPicToFront(qsizetype index)
{
    const TimelineGeometry &geometry = m_strip.geometry();
    horizontalScrollBar()->setValue(int(std::ceil(geometry.minXForIndex(index))));
}

void MyTimelineView::scrollByDateChapter(int direction)
{
    const qsizetype chapter =
        m_labels.dateChapterFrom(m_strip.geometrySource(), visibleThumbsRange().first, m_mode, direction);
    if (chapter >= 0)
        scrollPicToFront(chapter);
}

void MyTimelineView::autoscrollNear(double x)
{
    m_autoscrollX = x;
    if (x >= autoscrollZone && x <= viewport()->width() - autoscrollZone)
        m_autoscrollTimer.stop();
    else if (!m_autoscrollTimer.isActive())
        m_autoscrollTimer.start();
}

void MyTimelineView::thumbReady(quint32 sessionUniqueId)
{
    m_layers.remove(sessionUniqueId);
    viewport()->update(); // paints coalesce; only what is visible is drawn
}

void MyTimelineView::updateLayers(ThumbRange range)
{
    const QList<MySinglePic *> &source = m_strip.geometrySource();
    QSet<quint32> keep;
    for (qsizetype i = range.first; i < std::min(range.end(), source.size()); ++i)
        keep.insert(source.at(i)->sessionUniqueId);
    m_layers.keepOnly(keep);
}

void MyTimelineView::drawGapMarks(QPainter &painter, ThumbRange range)
{
    const QList<MySinglePic *> &source = m_strip.geometrySource();
    const TimelineGeometry &geometry = m_strip.geometry();
    const double stripHeight = viewport()->height();
    for (qsizetype i = std::max<qsizetype>(range.first, 1); i < std::min(range.end(), source.size()); ++i) {
        const int percent = m_labels.gapPercent(*source.at(i - 1), *source.at(i), m_mode);
        if (percent == 0)
            continue;
        const double height = TimelineLabels::gapMarkHeight(percent, stripHeight, geometry.theThumbMargin());
        const double x = geometry.gapMarkX(i - 1);
        painter.fillRect(QRectF(x - 1, stripHeight - height, 2, height), markColor);
    }
}

void MyTimelineView::drawThumb(QPainter &painter, qsizetype index, MySinglePic &pic)
{
    const TimelineGeometry &geometry = m_strip.geometry();
    const bool raised = m_strip.isRaised(pic);
    const QRectF cell = geometry.thumbRect(index, raised);
    const bool isMain = m_strip.picSelection() == &pic;
    if (isMain || m_strip.isSelected(&pic)) {
        const double border = isMain ? geometry.addBorderSelection() : geometry.addBorderMultiSelection();
        QPainterPath frame;
        frame.addRoundedRect(cell.adjusted(-border, -border, border, border), geometry.roundValue() + 2,
                             geometry.roundValue() + 2);
        painter.fillPath(frame, isMain ? selectionColor : selectionColor.darker(140));
    }
    if (&pic == m_selection.target()) {
        painter.setPen(QPen(selectionColor, 2, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(cell.adjusted(-3, -3, 3, 3), geometry.roundValue() + 2, geometry.roundValue() + 2);
    }
    if (const QPixmap *layer = m_layers.layerFor(pic, m_thumbs.cache(), devicePixelRatioF())) {
        const QSizeF size = layer->deviceIndependentSize();
        const QPointF origin(cell.x() + (cell.width() - size.width()) / 2, cell.y() + (cell.height() - size.height()) / 2);
        painter.drawPixmap(origin, *layer);
    } else {
        const QColor folder = m_colorForPic ? m_colorForPic(pic) : QColor(80, 80, 80);
        painter.fillRect(cell.adjusted(4, 4, -4, -4), raised ? folder : folder.darker(160));
    }
    if (!raised)
        painter.fillRect(cell, QColor(0, 0, 0, 90)); // the other folders stand back
    if (m_options.folderColorsShown && m_colorForPic) {
        // Which camera or folder the item comes from, along the top edge.
        const double band = geometry.markerWidth();
        painter.fillRect(QRectF(cell.x(), cell.y() - band - 2, cell.width(), band), m_colorForPic(pic));
    }
    if (pic.isUnsaved()) {
        const double w = geometry.markerWidth();
        painter.fillRect(QRectF(cell.x(), cell.bottom() + 2, cell.width(), w), unsavedColor);
    }
}

void MyTimelineView::drawLabels(QPainter &painter, ThumbRange range)
{
    const TimelineGeometry &geometry = m_strip.geometry();
    QFont font = painter.font();
    font.setPointSize(TimelineLabels::labelPointSize(geometry.thumbSize()));
    const QFontMetricsF metrics(font);
    // A label needs the room of a typical date of the mode, with a little air.
    const QString sample = m_labels.formatted(Instant::fromUtc(2024, 9, 28, 23, 59), int(m_mode) - 1);
    const qsizetype spacing = qsizetype(std::ceil((metrics.horizontalAdvance(sample) + 8) / geometry.stride()));
    m_lastLabels = m_labels.addDateTimeLayers(m_strip.geometrySource(), range, m_mode, today(),
                                              QLocale().language() == QLocale::English, spacing);
    if (m_lastLabels.isEmpty())
        return;
    painter.setFont(font);
    painter.setPen(labelColor);
    const double top = geometry.topInView(geometry.activeMoveBot()) + geometry.thumbSize() + geometry.markerWidth() + 6;
    const double left = horizontalScrollBar()->value();
    m_labelRects.clear();
    for (qsizetype n = 0; n < m_lastLabels.size(); ++n) {
        const TimelineLabel &label = m_lastLabels.at(n);
        double x = geometry.minXForIndex(label.index);
        const double next = n + 1 < m_lastLabels.size() ? geometry.minXForIndex(m_lastLabels.at(n + 1).index)
                                                          : left + viewport()->width() + geometry.stride();
        if (n == 0) // sticky: held at the left edge until the next label pushes it out
            x = std::max(x, std::min(left + geometry.borderMarginHorizontalMinimum(),
                                     next - geometry.stride() + geometry.theThumbMargin()));
        const double room = next - x - 4;
        QString date = label.dateText;
        if (metrics.horizontalAdvance(date) > room)
            date = metrics.elidedText(label.shortDateText, Qt::ElideRight, room);
        painter.drawText(QPointF(x, top + metrics.ascent()), date);
        m_labelRects.append(QRectF(x, top, std::max(room, 0.0), metrics.height()));
        if (!label.timeText.isEmpty())
            painter.drawText(QPointF(x, top + metrics.height() + metrics.ascent()),
                             metrics.elidedText(label.timeText, Qt::ElideRight, room));
    }
}

void MyTimelineView::paintStrip(QPainter &painter)
{
    painter.fillRect(viewport()->rect(), background);
    const ThumbRange range = visibleThumbsRange(0);
    updateLayers(visibleThumbsRange(layerExtension));
    painter.save();
    painter.translate(-horizontalScrollBar()->value(), 0);
    if (m_options.displayTimelineLabels && m_options.displayTimelineGaps)
        drawGapMarks(painter, range);
    const QList<MySinglePic *> &source = m_strip.geometrySource();
    for (qsizetype i = range.first; i < std::min(range.end(), source.size()); ++i)
        drawThumb(painter, i, *source.at(i));
    if (m_options.displayTimelineLabels)
        drawLabels(painter, range);
    else {
        m_lastLabels.clear();
        m_labelRects.clear();
    }
    painter.restore();
}

void MyTimelineView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    paintStrip(painter);
}

void MyTimelineView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    relayout();
    Q_EMIT visibleRangeChanged();
}

void MyTimelineView::scrollContentsBy(int, int)
{
    viewport()->update();
    Q_EMIT visibleRangeChanged();
}

void MyTimelineView::selectionChanged(const MySinglePic *shown)
{
    m_controller.selectionChangedIn(m_strip);
    viewport()->update();
    ensureVisible(shown);
    Q_EMIT picSelectionChanged(m_strip.picSelection());
}

bool MyTimelineView::stripIsSingleMode() const
{
    if (const MySinglePic *main = m_strip.picSelection())
        return TimelineSelection::isSingleMode(main);
    for (const MySinglePic *pic : m_strip.theSource())
        if (m_strip.isRaised(*pic))
            return TimelineSelection::isSingleMode(pic);
    return false;
}

qsizetype MyTimelineView::labelAt(QPointF point) const
{
    const QPointF content(contentX(point.x()), point.y());
    for (qsizetype n = 0; n < m_labelRects.size(); ++n)
        if (m_labelRects.at(n).contains(content))
            return n;
    return -1;
}

void MyTimelineView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QAbstractScrollArea::mousePressEvent(event);
        return;
    }
    const QPointF point = event->position();
    m_press = {.contentPoint = QPointF(contentX(point.x()), point.y()), .key = clickKeyFor(event->modifiers())};
    m_lastPointer = point;
    m_press.label = labelAt(point);
    if (m_press.label >= 0)
        return;
    MySinglePic *pic = picAtPoint(point);
    if (pic && m_strip.isRaised(*pic)) {
        const bool single = TimelineSelection::isSingleMode(pic);
        m_selection.press(pic, m_press.key, single);
        m_press.sweep = single && m_press.key != ClickKey::Plain;
        if (m_press.sweep)
            m_selection.beginSweep(pic);
    } else {
        // Beside the raised items a press starts a rectangle in single mode; an item of another
        // folder is only targeted.
        m_press.rectangle = stripIsSingleMode();
        if (m_press.rectangle)
            m_selection.beginRectangle(m_press.key);
        if (pic)
            m_selection.press(pic, m_press.key, false);
    }
    selectionChanged(nullptr);
}

void MyTimelineView::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPointF pointer = event->position();
    const QPointF content(contentX(pointer.x()), pointer.y());
    if (!m_press.moved && std::abs(content.x() - m_press.contentPoint.x()) < dragThreshold
        && std::abs(content.y() - m_press.contentPoint.y()) < dragThreshold)
        return;
    m_press.moved = true;
    if (m_press.rectangle)
        updateRectangle(pointer);
    else if (m_press.sweep)
        sweepTo(pointer);
    m_lastPointer = pointer;
    if (m_press.rectangle || m_press.sweep)
        autoscrollNear(pointer.x());
}

void MyTimelineView::updateRectangle(QPointF pointer)
{
    const QRectF rect = QRectF(m_press.contentPoint, QPointF(contentX(pointer.x()), pointer.y())).normalized();
    QList<MySinglePic *> touched;
    const ThumbRange range = m_strip.visibleThumbsRange(rect.left(), rect.width());
    for (qsizetype i = range.first; i < range.end(); ++i) {
        MySinglePic *pic = m_strip.picAt(i);
        if (pic && m_strip.isRaised(*pic) && m_strip.thumbRectCalculatedAtIndex(i).intersects(rect))
            touched.append(pic);
    }
    m_selection.updateRectangle(touched, m_press.key == ClickKey::Command,
                                picIndexAtHorizontalMouseLocation(pointer.x(), true));
    m_rubberBand->setGeometry(rect.translated(-horizontalScrollBar()->value(), 0).toRect());
    m_rubberBand->show();
    m_controller.selectionChangedIn(m_strip);
    viewport()->update();
}

void MyTimelineView::sweepTo(QPointF pointer)
{
    // Steps of at most half a thumbnail, so that a quick sweep passes every item.
    const double step = std::max(1.0, m_strip.geometry().thumbSize() / 2);
    const QPointF path = pointer - m_lastPointer;
    const int steps = std::max(1, int(std::ceil(std::max(std::abs(path.x()), std::abs(path.y())) / step)));
    for (int n = 1; n <= steps; ++n)
        if (MySinglePic *pic = picAtPoint(m_lastPointer + path * (double(n) / steps)))
            m_selection.sweepOver(pic, m_press.key);
    m_controller.selectionChangedIn(m_strip);
    viewport()->update();
}

void MyTimelineView::mouseReleaseEvent(QMouseEvent *event)
{
    m_rubberBand->hide();
    stopAutoscroll();
    const Press press = std::exchange(m_press, Press{});
    if (event->button() != Qt::LeftButton)
        return;
    if (press.moved) {
        if (press.rectangle || press.sweep)
            Q_EMIT picSelectionChanged(m_strip.picSelection());
        return;
    }
    if (press.label == 0) // the sticky label
        scrollByDateChapter(HeldKeys::fromModifiers(event->modifiers()).option ? 1 : -1);
    else if (press.label > 0 && press.label < m_lastLabels.size())
        scrollPicToFront(m_lastLabels.at(press.label).index);
}

void MyTimelineView::mouseDoubleClickEvent(QMouseEvent *event)
{
    MySinglePic *pic = event->button() == Qt::LeftButton ? picAtPoint(event->position()) : nullptr;
    if (pic && !m_strip.isRaised(*pic)) {
        Q_EMIT folderChosen(pic, clickKeyFor(event->modifiers()) == ClickKey::Command);
        return;
    }
    mousePressEvent(event);
}

bool MyTimelineView::selectionKey(const QKeyEvent &event)
{
    const HeldKeys keys = HeldKeys::fromModifiers(event.modifiers());
    const int direction = event.key() == Qt::Key_Left || event.key() == Qt::Key_Up ? -1 : 1;
    const bool single = stripIsSingleMode();
    MySinglePic *to = nullptr;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        to = keys.option ? m_selection.jump(direction, keys.shift && single)
                         : m_selection.arrow(direction, clickKeyFor(event.modifiers()),
                                             keys.command && keys.control && !keys.shift, single);
        if (!to) // at the end of the strip
            horizontalScrollBar()->triggerAction(direction < 0 ? QScrollBar::SliderToMinimum
                                                               : QScrollBar::SliderToMaximum);
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (!keys.option || keys.command || keys.control || keys.shift)
            return false;
        to = m_selection.nextChanged(direction);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // The selected item's dates are the drag handler's; here the target's folder is chosen.
        if (m_selection.target() && !keys.shift)
            Q_EMIT folderChosen(m_selection.target(), keys.command);
        return true;
    case Qt::Key_Home:
        horizontalScrollBar()->triggerAction(QScrollBar::SliderToMinimum);
        return true;
    case Qt::Key_End:
        horizontalScrollBar()->triggerAction(QScrollBar::SliderToMaximum);
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: {
        const int page = event.key() == Qt::Key_PageUp ? -1 : 1;
        if (keys.command)
            scrollByDateChapter(page);
        else
            horizontalScrollBar()->triggerAction(page < 0 ? QScrollBar::SliderPageStepSub : QScrollBar::SliderPageStepAdd);
        return true;
    }
    default:
        return false;
    }
    if (to)
        selectionChanged(to);
    return true;
}

void MyTimelineView::keyPressEvent(QKeyEvent *event)
{
    if (!selectionKey(*event))
        QAbstractScrollArea::keyPressEvent(event);
}

void MyTimelineView::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MyTimelineView::dragMoveEvent(QDragMoveEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MyTimelineView::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    Q_EMIT filesDropped(event->mimeData(), event->modifiers());
}

bool MyTimelineView::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QAbstractScrollArea::viewportEvent(event);
    const auto *help = static_cast<QHelpEvent *>(event);
    if (const MySinglePic *pic = picAtPoint(help->pos()))
        QToolTip::showText(help->globalPos(), m_labels.tooltipText(*pic), viewport(),
                           thumbRectInViewport(m_strip.indexOf(pic)).toRect());
    else
        QToolTip::hideText();
    return true;
}

void MyTimelineView::wheelEvent(QWheelEvent *event)
{
    event->accept();
    if (event->buttons() & Qt::LeftButton)
        return; // a drag, sweep or rectangle holds its place under the pointer
    if (event->modifiers() & Qt::ControlModifier) {
        // One size mode a notch (120), however finely a touchpad cuts it.
        m_wheelZoom += event->angleDelta().y();
        const int steps = m_wheelZoom / 120;
        m_wheelZoom -= steps * 120;
        if (steps != 0)
            Q_EMIT zoomRequested(steps);
        return;
    }
    // A vertical wheel scrolls the strip sideways.
    const QPoint delta = event->angleDelta();
    const int step = std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - step);
}

} // namespace orv
