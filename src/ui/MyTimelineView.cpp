#include "ui/MyTimelineView.h"

#include "core/MySinglePic.h"
#include "thumbs/MyThumbsQueue.h"
#include "timeline/MyTimelinesController.h"

#include <QDateTime>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>

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
} // namespace

MyTimelineView::MyTimelineView(MyTimelinesController &controller, TimelineStrip &strip, MyThumbsQueue &thumbs,
                               QWidget *parent)
    : QAbstractScrollArea(parent), m_controller(controller), m_strip(strip), m_thumbs(thumbs)
{
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumHeight(120);
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
    viewport()->update();
}

void MyTimelineView::sourceChanged()
{
    relayout();
    Q_EMIT visibleRangeChanged();
}

void MyTimelineView::setTempSource(const QList<MySinglePic *> &tempSource)
{
    m_strip.setTempSource(tempSource);
    relayout();
}

void MyTimelineView::clearTempSource()
{
    m_strip.clearTempSource();
    relayout();
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
    m_layers.removeIf([&keep](const QHash<quint32, QPixmap>::iterator it) { return !keep.contains(it.key()); });
}

const QPixmap *MyTimelineView::layerFor(const MySinglePic &pic)
{
    const auto found = m_layers.constFind(pic.sessionUniqueId);
    if (found != m_layers.cend())
        return &*found;
    const ThumbEntry *entry = m_thumbs.cache().entry(pic.sessionUniqueId);
    if (!entry)
        return nullptr;
    const int side = int(m_strip.geometry().thumbSize());
    const QImage &image = entry->imageForSide(side);
    if (image.isNull())
        return nullptr;
    const QImage scaled = std::max(image.width(), image.height()) == side
        ? image
        : image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return &*m_layers.insert(pic.sessionUniqueId, QPixmap::fromImage(scaled));
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
    if (const QPixmap *layer = layerFor(pic)) {
        const QSizeF size = layer->size();
        const QPointF origin(cell.x() + (cell.width() - size.width()) / 2, cell.y() + (cell.height() - size.height()) / 2);
        painter.drawPixmap(origin, *layer);
    } else {
        const QColor folder = m_colorForPic ? m_colorForPic(pic) : QColor(80, 80, 80);
        painter.fillRect(cell.adjusted(4, 4, -4, -4), raised ? folder : folder.darker(160));
    }
    if (!raised)
        painter.fillRect(cell, QColor(0, 0, 0, 90)); // the other folders stand back
    if (pic.isUnsaved()) {
        const double w = geometry.markerWidth();
        painter.fillRect(QRectF(cell.x(), cell.bottom() + 2, cell.width(), w), unsavedColor);
    }
}

void MyTimelineView::drawLabels(QPainter &painter, ThumbRange range)
{
    const TimelineGeometry &geometry = m_strip.geometry();
    m_lastLabels = m_labels.addDateTimeLayers(m_strip.geometrySource(), range, m_mode, today(),
                                              QLocale().language() == QLocale::English);
    if (m_lastLabels.isEmpty())
        return;
    QFont font = painter.font();
    font.setPointSize(TimelineLabels::labelPointSize(geometry.thumbSize()));
    painter.setFont(font);
    painter.setPen(labelColor);
    const QFontMetricsF metrics(font);
    const double top = geometry.topInView(geometry.activeMoveBot()) + geometry.thumbSize() + geometry.markerWidth() + 6;
    const double left = horizontalScrollBar()->value();
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
    else
        m_lastLabels.clear();
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

void MyTimelineView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QAbstractScrollArea::mousePressEvent(event);
        return;
    }
    MySinglePic *pic = picAtPoint(event->position());
    m_strip.setPicSelection(pic);
    m_controller.selectionChangedIn(m_strip);
    viewport()->update();
    Q_EMIT picSelectionChanged(pic);
}

void MyTimelineView::wheelEvent(QWheelEvent *event)
{
    // A vertical wheel scrolls the strip sideways.
    const QPoint delta = event->angleDelta();
    const int step = std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - step);
    event->accept();
}

} // namespace orv
