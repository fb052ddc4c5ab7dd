#pragma once

#include <QRectF>

#include <cstddef>
#include <iterator>

namespace orv {

// First index and count of a run of thumbnails on a strip.
struct ThumbRange
{
    qsizetype first = 0;
    qsizetype count = 0;
    qsizetype end() const { return first + count; }
    bool contains(qsizetype index) const { return index >= first && index < end(); }
};

// The layout of one strip as arithmetic on an item's index: the strip is ordinal, so an item's
// place follows from its position in the source alone and nothing is stored per item.
//
// Vertical values are measured upwards from the bottom of the strip (as the drawing measures of
// the design are); the view turns them into its own coordinates with topInView().
class TimelineGeometry
{
public:
    // The thumbnail size modes the zoom steps through, as stored timeline heights, smallest
    // thumbnails first: 31 to 117 points.
    static constexpr int sizeModeHeights[] = {82, 100, 128, 160, 190, 222};
    static constexpr int sizeModeCount = int(std::size(sizeModeHeights));
    // The size mode a stored height stands in: the largest whose height it reaches.
    static int sizeModeForHeight(double timelineHeight);
    // The height steps modes up (positive) or down from timelineHeight, within the table.
    static double zoomedTimelineHeight(double timelineHeight, int steps);
    // The least height of the main strip that lets the timeline height take full effect (0 when
    // any strip does).
    static double mainStripHeightFor(double timelineHeight, bool hasSecondStrip);

    // The measures that follow from the stored timeline height H and the main strip's height B.
    void changedTimelineViewHeight(double timelineHeight, double mainStripHeight, bool hasSecondStrip);
    // Width and height of the visible part, the item count and the options that move things.
    void updateSize(double visibleWidth, double visibleHeight, qsizetype count);
    void setCount(qsizetype count) { m_count = count; }
    void setExtraScrollArea(bool on) { m_extraScrollArea = on; }
    void setLabelsShown(bool on) { m_labelsShown = on; }
    void setScrollersAlwaysVisible(bool on) { m_scrollersAlwaysVisible = on; }

    // The base size s of the size table and the measures taken from it.
    int baseSize() const { return m_baseSize; }
    double thumbSize() const { return m_thumbSize; }
    double theThumbMargin() const { return m_thumbMargin; }
    double borderMarginHorizontal() const { return m_borderMarginHorizontal; }
    double borderMarginHorizontal_orig() const { return m_borderMarginHorizontalOrig; }
    double borderMarginHorizontalMinimum() const { return m_borderMarginHorizontalMinimum; }
    double theThumbExtention() const { return m_thumbExtension; }
    double addBorderSelection() const { return m_addBorderSelection; }
    double addBorderMultiSelection() const { return m_addBorderMultiSelection; }
    double markerWidth() const { return m_markerWidth; }
    double markerBorder() const { return m_markerBorder; }
    double roundValue() const { return m_roundValue; }
    double thumbMovementFromCenter() const { return m_thumbMovementFromCenter; }
    double stride() const { return m_thumbSize + m_thumbMargin; }
    qsizetype count() const { return m_count; }

    // --- Horizontal ---
    double minXForIndex(qsizetype index) const { return m_borderMarginHorizontal + double(index) * stride(); }
    double maxXForIndex(qsizetype index) const { return minXForIndex(index) + m_thumbSize; }
    // The whole strip, at least the visible width minus 2.
    double totalWidth() const;
    // The part of the left margin that only lets the first item reach the centre.
    double xtraScrollAreaWidth() const { return m_borderMarginHorizontal - m_borderMarginHorizontalOrig; }
    // x of the calendar mark after the item at index.
    double gapMarkX(qsizetype index) const { return minXForIndex(index) + m_thumbSize + m_thumbMargin / 2 - 1; }

    // --- Vertical ---
    double correctedThumbMoveFromCenter() const;
    double activeMoveTop() const; // the raised folder's items
    double activeMoveBot() const; // the others
    // The top edge, in a view whose y grows downwards, of a thumbnail standing at bottomY.
    double topInView(double bottomY) const { return m_visibleHeight - bottomY - m_thumbSize; }

    // --- Rectangles (view coordinates) ---
    // The thumbnail itself.
    QRectF thumbRect(qsizetype index, bool raised) const;
    // The drawn rectangle with selection border and growth; empty beyond the source.
    QRectF thumbRectCalculatedAtIndex(qsizetype index, bool raised) const;

    // --- Hit tests and ranges ---
    // The index under x, or -1 beyond the end. Tolerance: the item's width plus extraMargin.
    qsizetype picIndexAtX(double x, double extraMargin) const;
    // y (view coordinates) lies in the band of a raised or lowered thumbnail, give or take
    // extraMargin.
    bool hitsVertically(double y, bool raised, double extraMargin) const;
    // The column under x, clamped to the ends with snapToLegal, else -1 out of range.
    qsizetype picIndexAtHorizontalMouseLocation(double x, bool snapToLegal) const;
    // The items whose columns meet [left, left + width), widened by extension on both sides.
    ThumbRange visibleThumbsRange(double left, double width, qsizetype extension = 0, double shift = 0) const;

private:
    int m_baseSize = 0;
    double m_thumbSize = 0;
    double m_thumbMargin = 16;
    double m_borderMarginHorizontal = 40;
    double m_borderMarginHorizontalOrig = 40;
    double m_borderMarginHorizontalMinimum = 20;
    double m_thumbExtension = 2;
    double m_addBorderSelection = 5;
    double m_addBorderMultiSelection = 4;
    double m_markerWidth = 4;
    double m_markerBorder = 10;
    double m_roundValue = 2;
    double m_thumbMovementFromCenter = 0;
    double m_visibleWidth = 0;
    double m_visibleHeight = 0;
    qsizetype m_count = 0;
    bool m_extraScrollArea = false;
    bool m_labelsShown = true;
    bool m_scrollersAlwaysVisible = false;
};

} // namespace orv
