#include "timeline/TimelineGeometry.h"

#include <algorithm>
#include <cmath>

namespace orv {

namespace {

constexpr double lowestLimit = 144;
constexpr double highestLimit = 222;
double fullLimitHeight(bool hasSecondStrip) { return hasSecondStrip ? 186 : 374; }
double lowLimitHeight(bool hasSecondStrip) { return hasSecondStrip ? 158 : 314; }

// The limit the main strip's height B puts on the timeline height.
double heightLimit(double mainStripHeight, bool hasSecondStrip)
{
    const double full = fullLimitHeight(hasSecondStrip);
    const double low = lowLimitHeight(hasSecondStrip);
    if (mainStripHeight >= full)
        return highestLimit;
    if (mainStripHeight < low)
        return lowestLimit;
    return lowestLimit + (highestLimit - lowestLimit) * (mainStripHeight - low) / (full - low);
}

struct SizeRow
{
    int fromSize;
    double baseMargin;
    double roundValue;
};

// Rows of the size table, largest first.
constexpr SizeRow sizeTable[] = {
    {108, 28, 4}, {98, 26, 4}, {88, 24, 3}, {78, 22, 3}, {68, 20, 2}, {41, 18, 2}, {0, 18, 1},
};

constexpr double scrollerHeight = 9;
constexpr double topRoom = 16.5;

} // namespace

int TimelineGeometry::sizeModeForHeight(double timelineHeight)
{
    int mode = 0;
    while (mode + 1 < sizeModeCount && sizeModeHeights[mode + 1] <= timelineHeight)
        ++mode;
    return mode;
}

double TimelineGeometry::zoomedTimelineHeight(double timelineHeight, int steps)
{
    double height = timelineHeight;
    for (; steps > 0; --steps) {
        const auto next = std::upper_bound(std::begin(sizeModeHeights), std::end(sizeModeHeights), height);
        height = next == std::end(sizeModeHeights) ? height : *next;
    }
    for (; steps < 0; ++steps) {
        const auto next = std::lower_bound(std::begin(sizeModeHeights), std::end(sizeModeHeights), height);
        height = next == std::begin(sizeModeHeights) ? height : *std::prev(next);
    }
    return height;
}

double TimelineGeometry::mainStripHeightFor(double timelineHeight, bool hasSecondStrip)
{
    if (timelineHeight <= lowestLimit)
        return 0;
    const double full = fullLimitHeight(hasSecondStrip);
    const double low = lowLimitHeight(hasSecondStrip);
    const double h = std::min(timelineHeight, highestLimit);
    return std::ceil(low + (h - lowestLimit) * (full - low) / (highestLimit - lowestLimit));
}

void TimelineGeometry::changedTimelineViewHeight(double timelineHeight, double mainStripHeight, bool hasSecondStrip)
{
    const double h = std::clamp(std::floor(timelineHeight), 82.0, 222.0);
    const double a = std::min(h, heightLimit(mainStripHeight, hasSecondStrip));
    const int s = int(std::floor(((a - 62) * 0.00093 + 0.39116) * a));
    m_baseSize = s;
    m_thumbSize = s - 2;
    const SizeRow &row = *std::find_if(std::begin(sizeTable), std::end(sizeTable),
                                       [s](const SizeRow &r) { return s >= r.fromSize; });
    m_borderMarginHorizontalMinimum = row.baseMargin;
    m_borderMarginHorizontalOrig = 2 * row.baseMargin;
    m_thumbMargin = row.baseMargin + 8;
    m_roundValue = row.roundValue + 1;
    const bool large = s >= 95;
    m_thumbExtension = (large ? 4 : 3) + 4;
    m_addBorderSelection = large ? 6 : 5;
    m_addBorderMultiSelection = large ? 5 : 4;
    m_markerWidth = large ? 5 : 4;
    m_markerBorder = large ? 12 : 10;
    m_thumbMovementFromCenter = s / 2.0 - s / 6.0;
    updateSize(m_visibleWidth, m_visibleHeight, m_count);
}

void TimelineGeometry::updateSize(double visibleWidth, double visibleHeight, qsizetype count)
{
    m_visibleWidth = visibleWidth;
    m_visibleHeight = visibleHeight;
    m_count = count;
    m_borderMarginHorizontal = m_extraScrollArea
        ? std::max(m_borderMarginHorizontalOrig, std::floor((visibleWidth - m_thumbSize) / 2))
        : m_borderMarginHorizontalOrig;
}

double TimelineGeometry::totalWidth() const
{
    const double width = 2 * m_borderMarginHorizontal + double(m_count) * stride() - m_thumbMargin;
    return std::max(width, m_visibleWidth - 2);
}

double TimelineGeometry::correctedThumbMoveFromCenter() const
{
    const double v = m_visibleHeight - scrollerHeight;
    const double c = v / 2 - m_thumbSize / 2;
    const double bottomRoom = (m_labelsShown ? 38 : 18) + (m_scrollersAlwaysVisible ? 10 : 0);
    const double least = m_scrollersAlwaysVisible ? 2 : 5;
    double m = m_thumbMovementFromCenter;
    m = std::min(m, c + 3 - bottomRoom);           // the label row stays free below
    m = std::min(m, v - topRoom - m_thumbSize - c - 3); // and room above the raised one
    return std::max(m, least);
}

double TimelineGeometry::activeMoveTop() const
{
    const double c = (m_visibleHeight - scrollerHeight) / 2 - m_thumbSize / 2;
    const double m = correctedThumbMoveFromCenter();
    const double y = c + m + 3;
    return m != m_thumbMovementFromCenter ? std::ceil(y) : std::floor(y);
}

double TimelineGeometry::activeMoveBot() const
{
    const double c = (m_visibleHeight - scrollerHeight) / 2 - m_thumbSize / 2;
    return std::floor(c - correctedThumbMoveFromCenter() + 3);
}

QRectF TimelineGeometry::thumbRect(qsizetype index, bool raised) const
{
    const double bottom = raised ? activeMoveTop() : activeMoveBot();
    return QRectF(minXForIndex(index), topInView(bottom), m_thumbSize, m_thumbSize);
}

QRectF TimelineGeometry::thumbRectCalculatedAtIndex(qsizetype index, bool raised) const
{
    if (index < 0 || index >= m_count)
        return {};
    const double grow = m_addBorderSelection - 2 + m_thumbExtension;
    return thumbRect(index, raised).adjusted(-grow, -grow, grow, grow);
}

qsizetype TimelineGeometry::picIndexAtX(double x, double extraMargin) const
{
    const qsizetype index =
        std::max<qsizetype>(0, qsizetype(std::floor((x - m_borderMarginHorizontal + m_thumbMargin / 2) / stride())));
    if (index >= m_count)
        return -1;
    const bool inside = x >= minXForIndex(index) - extraMargin - 1 && x <= maxXForIndex(index) + extraMargin + 1;
    return inside ? index : -1;
}

bool TimelineGeometry::hitsVertically(double y, bool raised, double extraMargin) const
{
    const double top = topInView(raised ? activeMoveTop() : activeMoveBot());
    return y >= top - extraMargin - 2 && y <= top + m_thumbSize + extraMargin + 2;
}

qsizetype TimelineGeometry::picIndexAtHorizontalMouseLocation(double x, bool snapToLegal) const
{
    if (m_count == 0)
        return -1;
    const qsizetype index = qsizetype(std::floor((x - m_borderMarginHorizontal + m_thumbMargin / 2) / stride()));
    if (index >= 0 && index < m_count)
        return index;
    if (!snapToLegal)
        return -1;
    return index < 0 ? 0 : m_count - 1;
}

ThumbRange TimelineGeometry::visibleThumbsRange(double left, double width, qsizetype extension, double shift) const
{
    if (m_count == 0 || stride() <= 0)
        return {};
    const qsizetype firstVisible = qsizetype(std::max(0.0, left - m_borderMarginHorizontal + shift) / stride());
    const qsizetype first = std::max<qsizetype>(0, firstVisible - extension);
    if (first >= m_count)
        return {m_count, 0};
    const qsizetype length = qsizetype(width / stride()) + 2 + extension + (firstVisible - first);
    return {first, std::min(length, m_count - first)};
}

} // namespace orv
