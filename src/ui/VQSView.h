#pragma once

#include "timeline/TimelineSelection.h"
#include "ui/ThumbLayers.h"
#include "viewing/VQSController.h"

#include <QAbstractScrollArea>
#include <QHash>
#include <QPixmap>

#include <optional>

class QRubberBand;

namespace orv {

class MySinglePic;
class MyThumbsQueue;
class MyTimelineView;

// The grid of a strip's items, larger than on the strip, for looking and rating: it shows and
// changes the strip's selection (a click, Shift and Ctrl as on the strip, the arrows in two
// dimensions, a rectangle dragged from beside the cells where the items change one by one:
// Shift keeps what was selected, Ctrl toggles against it) and draws each item's rating, keepers marked and rejects dimmed. It paints only
// the rows on screen; their thumbnails come from the strips' cache and become pixmaps only while
// near the view. Main thread only.
class VQSView : public QAbstractScrollArea
{
    Q_OBJECT
public:
    VQSView(MyTimelineView &timeline, MyThumbsQueue &thumbs, QWidget *parent = nullptr);

    VQSController &grid() { return m_grid; }
    MyTimelineView &timeline() const { return m_timeline; }

    // The strip's items changed: the grid takes them and keeps the main item in view.
    void sourceChanged();
    // Ratings or the selection changed: redraw.
    void refresh() { viewport()->update(); }
    // Cells larger (positive) or smaller by steps of a fifth.
    void zoom(int steps);
    // The item at index comes into view, scrolling as little as needed.
    void ensureVisible(qsizetype index);
    void ensureMainVisible();
    // The items in the rows on screen.
    ThumbRange visibleRange() const;

    // Draws the visible rows onto any painter: the widget's own paint, and the benchmarks.
    void paintGrid(QPainter &painter);

public Q_SLOTS:
    void thumbReady(quint32 sessionUniqueId);

Q_SIGNALS:
    // Scrolling or resizing changed what is visible; thumbnails are to be built.
    void visibleRangeChanged(orv::ThumbRange range);
    // A double click or Space on an item: look at it full screen.
    void fullScreenRequested(orv::MySinglePic *pic);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void relayout();
    // An arrow from the main item; false when the key is none of them.
    bool arrowKey(const QKeyEvent &event);
    void drawCell(QPainter &painter, qsizetype index, const MySinglePic &pic);
    void dropLayersOutside(ThumbRange range);
    qsizetype indexAt(QPointF viewportPoint) const;
    QPointF contentPoint(QPointF viewportPoint) const;
    // The raised items whose cells the rectangle from the press to the pointer touches join
    // the selection (or are toggled); the band shows the rectangle.
    void updateRectangle(QPointF viewportPoint);

    MyTimelineView &m_timeline;
    MyThumbsQueue &m_thumbs;
    VQSController m_grid;
    ThumbLayers m_layers;
    QRubberBand *m_rubberBand;
    // Where a rectangle began in the content, and the key it was begun with; none outside one.
    struct Rectangle
    {
        QPointF start;
        ClickKey key = ClickKey::Plain;
    };
    std::optional<Rectangle> m_rectangle;
};

} // namespace orv
