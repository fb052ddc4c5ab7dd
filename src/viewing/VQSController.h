#pragma once

#include "timeline/TimelineGeometry.h"

#include <QList>
#include <QPointF>
#include <QRectF>

namespace orv {

class MySinglePic;

// Which ratings a source holds, found by a walk that stops once all three are seen.
struct SourceRatings
{
    bool hasKeepers = false, hasRejects = false, hasNeutrals = false;

    static SourceRatings of(const QList<MySinglePic *> &source);
};

// The grid of the items of one strip, row by row in the strip's order: square cells of a side
// chosen by a size target, as many columns as the width takes, each row padded above and below.
// Pure arithmetic on an item's index, like the strip's geometry, so that 100,000 items cost no
// more per frame than 100; the widget paints and scrolls by it, and the arrow keys find their
// targets here.
//
// The grid has no selection of its own: it shows and changes the strip's. Main thread only.
class VQSController
{
public:
    // Inside the main window, or inside the full-screen view.
    enum Type : int { InWindow = 1, InFullScreen = 2 };
    enum class Direction { Left, Right, Up, Down };
    static constexpr double paddingCol = 8;
    static constexpr double minimumCellSide = 48;

    explicit VQSController(Type type = InWindow) : m_type(type) {}

    Type type() const { return m_type; }
    void setSource(const QList<MySinglePic *> &source) { m_source = source; }
    const QList<MySinglePic *> &theSource() const { return m_source; }
    qsizetype count() const { return m_source.size(); }

    // --- Columns and cells ---
    // The width the grid stands in (the scroll view's viewport) and the side the user asks
    // for; the cell side follows from both, the count of items never enters it.
    void setViewWidth(double width);
    void setThumbSizeTargetValue(double side);
    double thumbSizeTargetValue() const { return m_targetSide; }
    // The cell side that fits count columns in the width, and the columns a side allows.
    double widthForColumnCount(int count) const;
    int columnCountForWidth(double side) const;
    double vqsWidth() const { return m_cellSide; }
    int currentColumnCount() const { return m_columns; }

    // --- Rows ---
    double paddingView() const { return m_type == InWindow ? 10 : 6; }
    double paddingRowTop() const { return m_type == InWindow ? 6 : 0; }
    double paddingRowBottom() const { return paddingRowTop(); }
    double heightForRow() const { return paddingRowTop() + m_cellSide + paddingRowBottom(); }
    qsizetype rowCount() const { return (count() + m_columns - 1) / m_columns; }
    double yForRow(qsizetype row) const { return paddingView() + double(row) * heightForRow(); }
    // The row at a height of the content; rows beyond the last are counted on.
    qsizetype rowAtPosition(double y) const;
    double contentHeight() const { return yForRow(rowCount()) + paddingView(); }

    // --- Items ---
    QRectF frameForPicAtIndex(qsizetype index) const;
    // The item under a point of the content, -1 for none. Snapping takes the nearest cell of
    // the row instead, and behind the last item the last one.
    qsizetype picIndexAtLocalPoint(QPointF point, bool snappingToGrid) const;
    // The items in the rows a band of the content shows, whole rows.
    ThumbRange visibleRange(double top, double height) const;
    // Where an arrow goes from the item at index: left and right by one, up and down by a row,
    // down onto the last item from a row above the last. -1: nothing moves (at the edge). From
    // no item (index -1) the first item or, for left and up, the last.
    qsizetype selectFrom(qsizetype index, Direction direction) const;

private:
    void updateVqsLength();

    Type m_type;
    QList<MySinglePic *> m_source;
    double m_viewWidth = 800;
    double m_targetSide = 180;
    double m_cellSide = 180;
    int m_columns = 1;
};

} // namespace orv
