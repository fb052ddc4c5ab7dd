#include "app/TimelineDrop.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "selection/PicSource.h"

#include <QObject>
#include <QSet>

#include <algorithm>
#include <array>

#include <cmath>

namespace orv {

std::optional<double> timelineSecond(const MySinglePic *pic)
{
    if (!pic)
        return std::nullopt;
    const OptionalDate date = pic->spDateTimeModified_sort();
    if (!date)
        return std::nullopt;
    return date->wholeSeconds();
}

double dragGapOuterEdgesSeconds(qint64 index)
{
    static constexpr std::array<double, dragGapOuterEdgesCount> values{5,    10,   15,    30,    60,    300,   600,  900,
                                                   1800, 3600, 7200, 10800, 21600, 43200, 86400};
    return values[size_t(std::clamp<qint64>(index, 0, qint64(values.size()) - 1))];
}

TimelineDrag TimelineDrag::of(const QList<MySinglePic *> &source, MySinglePic *main,
                              const QList<MySinglePic *> &multiSelection, const QList<const MySingleFolder *> &raised)
{
    TimelineDrag drag;
    drag.main = main;
    drag.folders = {MySingleFolder::of(*main)};
    drag.raised = raised;
    if (!drag.isFolderMode() && multiSelection.size() < 2) {
        drag.moving = {main};
        return drag;
    }
    const QSet<MySinglePic *> selected(multiSelection.cbegin(), multiSelection.cend());
    for (MySinglePic *pic : source)
        if (drag.isFolderMode() ? drag.isOfMovingFolder(pic) : selected.contains(pic))
            drag.moving.append(pic);
    return drag;
}

bool TimelineDrag::isFolderMode() const
{
    return MySingleFolder::of(*main) && MySingleFolder::of(*main)->sfEditMode == MySingleFolder::EditTogether;
}

bool TimelineDrag::isOfMovingFolder(const MySinglePic *pic) const
{
    return folders.contains(MySingleFolder::of(*pic));
}

bool TimelineDrag::isRaised(const MySinglePic *pic) const
{
    return raised.isEmpty() || raised.contains(MySingleFolder::of(*pic));
}

QString dropRefusalText(DropRefusal refusal)
{
    switch (refusal) {
    case DropRefusal::OwnFolder:
        return QObject::tr("Same folder: its items move together; drop on another folder’s item");
    case DropRefusal::OwnSelection:
        return QObject::tr("Over the items that move: drop beside another item");
    case DropRefusal::NoDates:
        return QObject::tr("This folder keeps no dates");
    case DropRefusal::NoRoomToSpread:
        return QObject::tr("No gap here to spread the selection into");
    case DropRefusal::None:
        break;
    }
    return {};
}

namespace {

bool isIgnored(const MySinglePic *pic)
{
    return !MySingleFolder::of(*pic) || MySingleFolder::of(*pic)->isEXIFIgnored();
}

DropType typeOfZone(DropZone zone, bool spreading)
{
    const bool left = zone == DropZone::LeftMargin || zone == DropZone::LeftHalf;
    if (spreading)
        return left ? DropType::Spread : DropType::SpreadRight;
    switch (zone) {
    case DropZone::LeftMargin:
        return DropType::LeftGap;
    case DropZone::LeftHalf:
        return DropType::LeftHalf;
    case DropZone::RightHalf:
        return DropType::RightHalf;
    case DropZone::RightMargin:
        break;
    }
    return DropType::RightGap;
}

bool isGap(DropType type)
{
    return type == DropType::LeftGap || type == DropType::RightGap;
}

bool isSpread(DropType type)
{
    return type == DropType::Spread || type == DropType::SpreadRight;
}

// A gap that cannot be dropped into falls onto the target's half on the same side.
DropType collapsed(DropType type)
{
    return type == DropType::LeftGap ? DropType::LeftHalf : DropType::RightHalf;
}

} // namespace

DropHit dropHitAt(const StripMetrics &metrics, const QList<MySinglePic *> &source, const TimelineDrag &drag,
                  double x, double y)
{
    const double width = metrics.thumbSize + metrics.margin;
    const qsizetype count = source.size();
    if (count == 0 || width <= 0.0)
        return {};
    qsizetype index = qsizetype(std::ceil((x - metrics.left + metrics.margin / 2.0) / width)) - 1;
    if (index == count)
        index = count - 1;
    if (index >= count)
        return {};
    index = std::max<qsizetype>(index, 0);

    const double reach = metrics.thumbSize / 2.0 + 8.0;
    const auto inBand = [&](double top, double bottom) { return y >= top - reach && y <= bottom + reach; };
    DropHit hit{.index = index};
    const double top = drag.isRaised(source[index]) ? metrics.raisedTop : metrics.loweredTop;
    if (!inBand(top, top + metrics.thumbSize)) {
        if (!inBand(std::min(metrics.raisedTop, metrics.loweredTop),
                    std::max(metrics.raisedTop, metrics.loweredTop) + metrics.thumbSize))
            return {};
        hit.onlyIfDoubleHeight = true;
    }
    const double thumbLeft = metrics.left + double(index) * width;
    if (x < thumbLeft)
        hit.zone = DropZone::LeftMargin;
    else if (x < thumbLeft + metrics.thumbSize / 2.0)
        hit.zone = DropZone::LeftHalf;
    else if (x < thumbLeft + metrics.thumbSize)
        hit.zone = DropZone::RightHalf;
    else
        hit.zone = DropZone::RightMargin;
    return hit;
}

DropPlace findDropPlace(const QList<MySinglePic *> &source, const TimelineDrag &drag, qsizetype hitIndex,
                        DropZone zone, bool spreading, bool onlyIfDoubleHeight, DropRefusal *refusal)
{
    DropRefusal ignored;
    DropRefusal &why = refusal ? *refusal : ignored;
    why = DropRefusal::None;
    if (hitIndex < 0 || hitIndex >= source.size())
        return {};
    const MySinglePic *target = source[hitIndex];
    if (isIgnored(target)) {
        why = DropRefusal::NoDates;
        return {};
    }
    // Over its own group the drag has no place.
    if (drag.isMoving(target)) {
        why = drag.isFolderMode() ? DropRefusal::OwnFolder : DropRefusal::OwnSelection;
        return {};
    }

    DropPlace place;
    place.type = typeOfZone(zone, spreading && drag.canSpread());
    const bool neighbourOnLeft = place.type == DropType::LeftGap || place.type == DropType::LeftHalf
                                 || place.type == DropType::Spread;
    const qsizetype neighbourIndex = neighbourOnLeft ? hitIndex - 1 : hitIndex + 1;
    const MySinglePic *neighbour =
        neighbourIndex >= 0 && neighbourIndex < source.size() ? source[neighbourIndex] : nullptr;
    bool isCollapsed = false;
    if (!neighbour) {
        if (isSpread(place.type)) {
            why = DropRefusal::NoRoomToSpread;
            return {};
        }
        place.atOuterEdge = isGap(place.type);
    } else if (isIgnored(neighbour) && (isGap(place.type) || isSpread(place.type))) {
        why = DropRefusal::NoDates;
        return {};
    } else if (drag.isMoving(neighbour)) {
        // A folder moves as a whole and cannot fall between its own items.
        if (isSpread(place.type)) {
            why = DropRefusal::NoRoomToSpread;
            return {};
        }
        isCollapsed = isGap(place.type);
    } else if (!drag.isFolderMode() && MySingleFolder::of(*neighbour) != MySingleFolder::of(*target)
               && drag.isRaised(neighbour) != drag.isRaised(target)) {
        // The two items stand at two heights, and the arrows show both.
        place.needsDoubleHeightArrows = true;
        place.isLeftOneUp = drag.isRaised(neighbourOnLeft ? neighbour : target);
    }
    if (isCollapsed)
        place.type = collapsed(place.type);
    place.isCollapsed = isCollapsed;
    if (onlyIfDoubleHeight && !place.needsDoubleHeightArrows && !isCollapsed)
        return {};

    place.index = place.type == DropType::Spread ? hitIndex - 1 : hitIndex;
    if (place.type == DropType::SpreadRight)
        place.type = DropType::Spread;
    return place;
}

const MySinglePic *TimelineDrop::at(qsizetype index) const
{
    return index >= 0 && index < m_source.size() ? m_source[index] : nullptr;
}

std::optional<double> TimelineDrop::mainSecondAt(const DropPlace &place) const
{
    const std::optional<double> target = timelineSecond(at(place.index));
    if (!target)
        return std::nullopt;
    const MySinglePic *neighbour = nullptr;
    switch (place.type) {
    case DropType::LeftHalf:
        return *target - 1.0;
    case DropType::RightHalf:
        return *target + 1.0;
    case DropType::LeftGap:
        neighbour = place.gapLeft ? place.gapLeft : at(place.index - 1);
        if (!neighbour)
            return *target - m_outerEdgeGap;
        break;
    case DropType::RightGap:
        neighbour = place.gapRight ? place.gapRight : at(place.index + 1);
        if (!neighbour)
            return *target + m_outerEdgeGap;
        break;
    default:
        return std::nullopt;
    }
    const std::optional<double> other = timelineSecond(neighbour);
    if (!other)
        return std::nullopt;
    // Towards the target: a left neighbour's half is negative and rounds up.
    return *target + std::ceil((*other - *target) / 2.0);
}

std::optional<double> TimelineDrop::previewDifference(const DropPlace &place) const
{
    const std::optional<double> second = mainSecondAt(place);
    const std::optional<double> present = timelineSecond(m_drag.main);
    if (!second || !present)
        return std::nullopt;
    return *second - *present;
}

DateChangeResult TimelineDrop::perform(DateChanges &changes, const DropPlace &place, const QString &mergeKey) const
{
    if (place.type == DropType::Spread) {
        const std::optional<double> from = timelineSecond(place.gapLeft ? place.gapLeft : at(place.index));
        const std::optional<double> to = timelineSecond(place.gapRight ? place.gapRight : at(place.index + 1));
        if (!from || !to)
            return DateChangeResult::Unchanged;
        return changes.dragChangedSinglePicAltModeDates(m_drag.moving, Instant(*from), Instant(*to), mergeKey);
    }
    const std::optional<double> second = mainSecondAt(place);
    if (!second)
        return DateChangeResult::Unchanged;
    return moveMainTo(changes, m_drag, *second, mergeKey);
}

bool TimelineDrop::setPreviewDates(const DropPlace &place) const
{
    endPreview();
    if (place.type == DropType::Spread) {
        const std::optional<double> from = timelineSecond(place.gapLeft ? place.gapLeft : at(place.index));
        const std::optional<double> to = timelineSecond(place.gapRight ? place.gapRight : at(place.index + 1));
        if (!from || !to)
            return false;
        for (qsizetype i = 0; i < m_drag.moving.size(); ++i)
            m_drag.moving[i]->tempTimeDuringLiveMod =
                DateChanges::spreadDate(i, m_drag.moving.size(), Instant(*from), Instant(*to));
        return true;
    }
    const std::optional<double> difference = previewDifference(place);
    if (!difference)
        return false;
    setPreviewDatesByDifference(*difference);
    return true;
}

void TimelineDrop::setPreviewDatesByDifference(double difference) const
{
    for (MySinglePic *pic : m_drag.moving)
        if (const OptionalDate date = pic->spDateTimeModified_sort())
            pic->tempTimeDuringLiveMod = date->addingSeconds(difference);
}

QList<MySinglePic *> TimelineDrop::previewStrip(const DropPlace &place, const PicSource &sorter) const
{
    if (!setPreviewDates(place))
        return {};
    QList<MySinglePic *> order = m_source;
    sorter.sortedByPreviewDates(order);
    return order;
}

QList<MySinglePic *> TimelineDrop::previewStripForSecond(double second, const PicSource &sorter) const
{
    endPreview();
    const std::optional<double> present = timelineSecond(m_drag.main);
    if (!present)
        return {};
    setPreviewDatesByDifference(second - *present);
    QList<MySinglePic *> order = m_source;
    sorter.sortedByPreviewDates(order);
    return order;
}

DropPreview TimelineDrop::preview(const DropPlace &place, const PicSource &sorter, qsizetype visibleCount) const
{
    if (!setPreviewDates(place))
        return {};

    DropPreview preview{.order = m_drag.moving};
    const double target = timelineSecond(at(place.index)).value_or(0.0);
    for (const qsizetype sign : {-1, 1}) {
        qsizetype beyond = -1; // still to take once an item two seconds away was found
        for (qsizetype i = sign < 0 ? place.index : place.index + 1; i >= 0 && i < m_source.size() && beyond != 0;
             i += sign) {
            if (m_drag.isMoving(m_source[i]))
                continue;
            preview.order.append(m_source[i]);
            if (beyond > 0)
                --beyond;
            else if (std::abs(timelineSecond(m_source[i]).value_or(target) - target) >= 2.0)
                beyond = visibleCount / 2;
        }
    }
    sorter.sortedByPreviewDates(preview.order);
    preview.mainIndex = preview.order.indexOf(m_drag.main);
    return preview;
}

void TimelineDrop::endPreview() const
{
    for (MySinglePic *pic : m_drag.moving)
        pic->tempTimeDuringLiveMod.reset();
}

TimeZone dateZoneOf(const MySinglePic &pic)
{
    const MySingleFolder *folder = MySingleFolder::of(pic);
    const std::optional<TimeZone> zone = folder ? folder->targetTimeZoneForPic(pic) : std::nullopt;
    return zone ? *zone : TimeZone::systemZone();
}

std::optional<DropOutcome> dropOutcome(const QList<MySinglePic *> &source, const TimelineDrag &drag,
                                       const DropPlace &place, double outerEdgeGap)
{
    const TimelineDrop drop(source, drag, outerEdgeGap);
    DropOutcome outcome;
    outcome.isFolderOffset = drag.isFolderMode();
    outcome.outerEdgeGap = outerEdgeGap;
    outcome.target = place.index >= 0 && place.index < source.size() ? source[place.index] : nullptr;
    if (place.type == DropType::Spread) {
        const std::optional<double> from = timelineSecond(place.gapLeft ? place.gapLeft : outcome.target);
        if (!from)
            return std::nullopt;
        outcome.rule = DropOutcome::Rule::Spread;
        outcome.newDate = Instant(*from);
        outcome.spreadCount = drag.moving.size();
        return outcome;
    }
    const std::optional<double> second = drop.mainSecondAt(place);
    const std::optional<double> present = timelineSecond(drag.main);
    const OptionalDate original = drag.main->spDateTimeOriginal_sort();
    if (!second || !present || !original)
        return std::nullopt;
    outcome.newDate = Instant(*second);
    outcome.change = drag.isFolderMode() ? *second - original->wholeSeconds() : *second - *present;
    switch (place.type) {
    case DropType::LeftHalf:
        outcome.rule = DropOutcome::Rule::BeforeTarget;
        break;
    case DropType::RightHalf:
        outcome.rule = DropOutcome::Rule::AfterTarget;
        break;
    default:
        outcome.rule = !place.atOuterEdge                   ? DropOutcome::Rule::Halfway
                       : place.type == DropType::LeftGap ? DropOutcome::Rule::BeyondFirst
                                                         : DropOutcome::Rule::BeyondLast;
        if (place.type == DropType::LeftGap)
            outcome.neighbour = place.gapLeft ? place.gapLeft : source.value(place.index - 1);
        else
            outcome.neighbour = place.gapRight ? place.gapRight : source.value(place.index + 1);
        break;
    }
    return outcome;
}

DateChangeResult TimelineDrop::moveMainTo(DateChanges &changes, const TimelineDrag &drag, double second,
                                          const QString &mergeKey)
{
    if (drag.isFolderMode()) {
        // From the date the file holds, so that the difference is the folder offset itself.
        const OptionalDate original = drag.main->spDateTimeOriginal_sort();
        if (!original)
            return DateChangeResult::Unchanged;
        const double offset = second - original->wholeSeconds();
        if (drag.folders.size() > 1)
            return changes.dragChangedDatesWithDiff(
                drag.folders, offset - MySingleFolder::of(*drag.main)->sfDateModificationsTimeInterval, mergeKey);
        return changes.dragChangedDates(drag.folders, offset, offset < 0.0, mergeKey);
    }
    const std::optional<double> present = timelineSecond(drag.main);
    if (!present)
        return DateChangeResult::Unchanged;
    return changes.dragChangedSinglePicModeDate(drag.moving, second - *present, mergeKey);
}

} // namespace orv
