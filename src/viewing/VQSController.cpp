#include "viewing/VQSController.h"

#include "core/MySinglePic.h"

#include <algorithm>
#include <cmath>

namespace orv {

SourceRatings SourceRatings::of(const QList<MySinglePic *> &source)
{
    SourceRatings found;
    for (const MySinglePic *pic : source) {
        found.hasKeepers |= pic->isKeeper;
        found.hasRejects |= pic->isRejected;
        found.hasNeutrals |= !pic->isKeeper && !pic->isRejected;
        if (found.hasKeepers && found.hasRejects && found.hasNeutrals)
            break;
    }
    return found;
}

void VQSController::setViewWidth(double width)
{
    m_viewWidth = width;
    updateVqsLength();
}

void VQSController::setThumbSizeTargetValue(double side)
{
    m_targetSide = std::max(side, minimumCellSide);
    updateVqsLength();
}

double VQSController::widthForColumnCount(int count) const
{
    const double usable = m_viewWidth - 2 * paddingView();
    return std::max(std::floor(usable / std::max(count, 1) - paddingCol), minimumCellSide);
}

int VQSController::columnCountForWidth(double side) const
{
    const double usable = m_viewWidth - 2 * paddingView();
    return std::max(int(std::floor(usable / (side + paddingCol))), 1);
}

void VQSController::updateVqsLength()
{
    // The cells grow from the target until the columns fill the width, so no ragged margin stays.
    m_columns = columnCountForWidth(m_targetSide);
    m_cellSide = widthForColumnCount(m_columns);
}

qsizetype VQSController::rowAtPosition(double y) const
{
    return qsizetype(std::floor(std::max(y - paddingView(), 0.0) / heightForRow()));
}

QRectF VQSController::frameForPicAtIndex(qsizetype index) const
{
    if (index < 0 || index >= count())
        return {};
    const qsizetype row = index / m_columns;
    const qsizetype column = index - row * m_columns;
    return {paddingView() + double(column) * (m_cellSide + paddingCol), yForRow(row) + paddingRowTop(),
            m_cellSide, m_cellSide};
}

qsizetype VQSController::picIndexAtLocalPoint(QPointF point, bool snappingToGrid) const
{
    if (count() == 0)
        return -1;
    const qsizetype row = rowAtPosition(point.y());
    const double x = point.x() - paddingView();
    qsizetype column = qsizetype(std::floor(x / (m_cellSide + paddingCol)));
    if (snappingToGrid) {
        column = std::clamp<qsizetype>(column, 0, m_columns - 1);
        return std::min(row * m_columns + column, count() - 1);
    }
    const qsizetype index = row * m_columns + column;
    if (x < 0 || column >= m_columns || index >= count())
        return -1;
    return frameForPicAtIndex(index).contains(point) ? index : -1;
}

ThumbRange VQSController::visibleRange(double top, double height) const
{
    const qsizetype first = std::min(rowAtPosition(top) * m_columns, count());
    const qsizetype end = std::min((rowAtPosition(top + height) + 1) * m_columns, count());
    return {first, end - first};
}

qsizetype VQSController::selectFrom(qsizetype index, Direction direction) const
{
    const qsizetype last = count() - 1;
    if (last < 0)
        return -1;
    const bool backwards = direction == Direction::Left || direction == Direction::Up;
    if (index < 0 || index > last)
        return backwards ? last : 0;
    switch (direction) {
    case Direction::Left: return index > 0 ? index - 1 : -1;
    case Direction::Right: return index < last ? index + 1 : -1;
    case Direction::Up: return index >= m_columns ? index - m_columns : -1;
    case Direction::Down: break;
    }
    if (index + m_columns <= last)
        return index + m_columns;
    // A row above the last ends on the last item; the last row goes nowhere.
    return index / m_columns < last / m_columns ? last : -1;
}

} // namespace orv
