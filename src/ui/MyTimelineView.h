#pragma once

#include "timeline/TimelineLabels.h"
#include "timeline/TimelineSelection.h"
#include "timeline/TimelineStrip.h"
#include "ui/ThumbLayers.h"

#include <QAbstractScrollArea>
#include <QHash>
#include <QMimeData>
#include <QPixmap>
#include <QTimer>

#include <functional>
#include <optional>

class QRubberBand;

namespace orv {

class MySinglePic;
class MyThumbsQueue;
class MyTimelinesController;

// What the strip shows besides thumbnails, from the preferences.
struct TimelineViewOptions
{
    double timelineHeight = 128;     // timelineHeight_STD
    bool displayTimelineLabels = true;
    bool displayTimelineGaps = true; // calendar marks, with the labels
    bool extraTLsScrollArea = true;  // the first and last item can be scrolled to the centre
    bool folderColorsShown = false;  // each thumbnail carries its folder's colour (several folders)
};

// One strip of the timeline on screen (with its scroll bar: the design's MyTimelineScrollView):
// the thumbnails of its TimelineStrip in source order, the raised folder's above the centre line
// and the others below, the selection framed, unsaved items marked, calendar marks in the gaps
// and date and time labels below, the first of them sticky at the left edge.
//
// It paints from the strip's geometry and only touches the items near the visible range: their
// thumbnails become pixmaps ("layers") here and are dropped when they scroll away.
//
// Clicks, sweeps, rectangles and the selection keys change the selection by the rules of
// TimelineSelection (Ctrl is Command, Alt is Option, Meta is Control). A click on a date label
// scrolls its item to the front; on the sticky one it goes back a date chapter, with Alt forward.
// Home, End and the page keys scroll, with Ctrl the page keys by date chapters; Ctrl with the
// wheel asks for larger or smaller thumbnails. A thumbnail's tooltip names the item, its camera
// and date. Main thread only.
class MyTimelineView : public QAbstractScrollArea
{
    Q_OBJECT
public:
    MyTimelineView(MyTimelinesController &controller, TimelineStrip &strip, MyThumbsQueue &thumbs,
                   QWidget *parent = nullptr);

    MyTimelinesController &controller() const { return m_controller; }
    TimelineStrip &strip() const { return m_strip; }
    TimelineSelection &selection() { return m_selection; }

    void setOptions(const TimelineViewOptions &options);
    const TimelineViewOptions &options() const { return m_options; }
    // Colours of the folders (colorForFolder), the items' own frame colour when lowered.
    void setFolderColors(std::function<QColor(const MySinglePic &)> colorForPic) { m_colorForPic = std::move(colorForPic); }
    // "Today" for the labels; the clock when unset.
    void setToday(std::optional<Instant> today) { m_today = today; }

    // The strip's items changed (source or temporary source): relayout and redraw.
    void sourceChanged();
    // A preview's order on this strip, drawn instead of the source; the items are untouched.
    void setTempSource(const QList<MySinglePic *> &tempSource);
    void clearTempSource();

    // --- Geometry in viewport coordinates ---
    double contentX(double viewportX) const;
    double viewportX(double contentX) const;
    MySinglePic *picAtPoint(QPointF viewportPoint) const;
    qsizetype picIndexAtHorizontalMouseLocation(double viewportX, bool snapToLegal) const;
    QRectF thumbRectInViewport(qsizetype index) const;
    ThumbRange visibleThumbsRange(qsizetype extension = 0) const;
    void scrollToIndex(qsizetype index);
    // The item is on screen (scrolls as little as needed).
    void ensureVisible(const MySinglePic *pic);
    // The item stands first at the left edge (scrollPicToFront).
    void scrollPicToFront(qsizetype index);
    // From the first visible item to the start of the next (1) or previous (-1) date chapter.
    void scrollByDateChapter(int direction);
    // While a drag, sweep or rectangle holds the pointer within 50 points of a side, the strip
    // scrolls that way every 0.02 seconds until the pointer leaves the zone, the end is reached
    // or stopAutoscroll().
    void autoscrollNear(double viewportX);
    void stopAutoscroll() { m_autoscrollTimer.stop(); }

    // Draws the visible part onto any painter: the widget's own paint, and the benchmarks.
    void paintStrip(QPainter &painter);
    // The labels on screen after the last paint, the sticky one first.
    const QList<TimelineLabel> &lastLabels() const { return m_lastLabels; }
    // Where the n-th of those labels stands in the viewport.
    QRectF labelRectInViewport(qsizetype n) const { return m_labelRects.value(n).translated(-contentX(0), 0); }
    // How many thumbnails have a pixmap now.
    qsizetype layerCount() const { return m_layers.count(); }
    // The strip's selection changed here or in a grid over it: the other strips follow, the
    // item shown comes into view, and the window hears of it.
    void selectionChanged(const MySinglePic *shown);
    // Whether the raised items change one by one: the main item's folder, else the first raised.
    bool stripIsSingleMode() const;

public Q_SLOTS:
    void thumbReady(quint32 sessionUniqueId);

Q_SIGNALS:
    // The user selected an item (null: clicked beside every item).
    void picSelectionChanged(orv::MySinglePic *pic);
    // Scrolling or resizing changed what is visible; thumbnails are to be built.
    void visibleRangeChanged();
    // An item of a folder that is not raised was chosen (double click, Return on the target):
    // its folder is to be selected, or with Ctrl added to the selected ones.
    void folderChosen(orv::MySinglePic *pic, bool adding);
    // Files dropped from outside onto the strip, with the keys held.
    void filesDropped(const QMimeData *mime, Qt::KeyboardModifiers keys);
    // Ctrl and the wheel: thumbnails larger (positive) or smaller by so many size modes.
    void zoomRequested(int steps);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    // What the press that holds the button started.
    struct Press
    {
        QPointF contentPoint;
        ClickKey key = ClickKey::Plain;
        qsizetype label = -1; // on a date label
        bool rectangle = false;
        bool sweep = false;
        bool moved = false;   // beyond the 5 points that make a drag
    };
    void updateRectangle(QPointF pointer);
    void sweepTo(QPointF pointer);
    qsizetype labelAt(QPointF viewportPoint) const;
    bool selectionKey(const QKeyEvent &event);

    void relayout();
    // Pixmaps for the items near the range, none for the others.
    void updateLayers(ThumbRange range);
    void drawGapMarks(QPainter &painter, ThumbRange range);
    void drawThumb(QPainter &painter, qsizetype index, MySinglePic &pic);
    void drawLabels(QPainter &painter, ThumbRange range);
    Instant today() const;

    MyTimelinesController &m_controller;
    TimelineStrip &m_strip;
    MyThumbsQueue &m_thumbs;
    TimelineViewOptions m_options;
    TimelineLabels m_labels;
    DateDisplayMode m_mode = DateDisplayMode::Years;
    std::optional<Instant> m_today;
    std::function<QColor(const MySinglePic &)> m_colorForPic;
    ThumbLayers m_layers;
    int m_wheelZoom = 0; // wheel angle not yet turned into a zoom step
    QList<TimelineLabel> m_lastLabels;
    QList<QRectF> m_labelRects; // content coordinates, beside m_lastLabels
    TimelineSelection m_selection;
    Press m_press;
    QPointF m_lastPointer;
    QRubberBand *m_rubberBand;
    QTimer m_autoscrollTimer;
    double m_autoscrollX = 0;
};

} // namespace orv
