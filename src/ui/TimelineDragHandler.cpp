#include "ui/TimelineDragHandler.h"

#include "core/DateDisplay.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "timeline/MyTimelinesController.h"
#include "timeline/TimelineStrip.h"
#include "ui/MyTimelineView.h"
#include "ui/TimelineDatePopover.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>
#include <QPolygonF>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace orv {

// A transparent layer over the strip for what only a drag shows.
class PaintOverlay : public QWidget
{
public:
    PaintOverlay(QWidget *parent, std::function<void(QPainter &)> paint) : QWidget(parent), m_paint(std::move(paint))
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_NoSystemBackground);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        m_paint(painter);
    }

private:
    std::function<void(QPainter &)> m_paint;
};

namespace {

constexpr double dragThreshold = 5.0;

// The outer-edge gaps are whole seconds, minutes or hours.
QString gapText(double seconds)
{
    if (seconds < 60)
        return TimelineDragHandler::tr("%1 s").arg(seconds);
    if (seconds < 3600)
        return TimelineDragHandler::tr("%1 min").arg(seconds / 60);
    return TimelineDragHandler::tr("%1 h").arg(seconds / 3600);
}

bool samePlace(const DropPlace &a, const DropPlace &b)
{
    return a.index == b.index && a.type == b.type;
}

// A signed change in its largest units: "−1 h 23 min 0 s", "+1 s".
QString changeText(double seconds)
{
    const qint64 whole = qint64(std::llround(std::abs(seconds)));
    const qint64 days = whole / 86400, hours = whole / 3600 % 24, minutes = whole / 60 % 60, rest = whole % 60;
    QStringList parts;
    if (days)
        parts.append(TimelineDragHandler::tr("%1 d").arg(days));
    if (days || hours)
        parts.append(TimelineDragHandler::tr("%1 h").arg(hours));
    if (days || hours || minutes)
        parts.append(TimelineDragHandler::tr("%1 min").arg(minutes));
    parts.append(TimelineDragHandler::tr("%1 s").arg(rest));
    return (seconds < 0 ? QStringLiteral("−") : QStringLiteral("+")) + parts.join(QLatin1Char(' '));
}

QString nameOf(const MySinglePic *pic)
{
    return pic ? pic->spName : QString();
}

QString ruleText(const DropOutcome &outcome, const DropPlace &place)
{
    using Rule = DropOutcome::Rule;
    QString text;
    switch (outcome.rule) {
    case Rule::BeforeTarget:
        text = TimelineDragHandler::tr("Left half: 1 s before %1").arg(nameOf(outcome.target));
        break;
    case Rule::AfterTarget:
        text = TimelineDragHandler::tr("Right half: 1 s after %1").arg(nameOf(outcome.target));
        break;
    case Rule::Halfway:
        text = TimelineDragHandler::tr("Gap: halfway between %1 and %2").arg(nameOf(outcome.target), nameOf(outcome.neighbour));
        break;
    case Rule::BeyondFirst:
        text = TimelineDragHandler::tr("%1 before the first item (Up, Down: other gaps)").arg(gapText(outcome.outerEdgeGap));
        break;
    case Rule::BeyondLast:
        text = TimelineDragHandler::tr("%1 after the last item (Up, Down: other gaps)").arg(gapText(outcome.outerEdgeGap));
        break;
    case Rule::Spread:
        text = TimelineDragHandler::tr("%n items spread evenly into the gap", "", int(outcome.spreadCount));
        break;
    }
    if (place.isCollapsed)
        text += TimelineDragHandler::tr("\n(a folder cannot fall between its own items)");
    return text;
}

} // namespace

TimelineDragHandler::TimelineDragHandler(MyTimelineView &view, DateChanges &changes, QUndoStack &stack,
                                         qint64 dragGapOuterEdges)
    : QObject(&view), m_view(view), m_changes(changes), m_stack(stack), m_outerEdgeIndex(dragGapOuterEdges),
      m_liveMove(changes, dragGapOuterEdgesSeconds(dragGapOuterEdges))
{
    m_previewTimer.setSingleShot(true);
    m_previewTimer.setInterval(50);
    connect(&m_previewTimer, &QTimer::timeout, this, &TimelineDragHandler::showPreview);
    // Autoscroll and the scrolling keys move the strip under a still pointer.
    connect(view.horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (m_dragging && !m_anchoring)
            updatePlace();
    });
    m_marker = new PaintOverlay(view.viewport(), [this](QPainter &painter) { paintMarker(painter); });
    m_marker->hide();
    m_pointerLabel = new QLabel(view.viewport());
    m_pointerLabel->setObjectName(QStringLiteral("dragPointerLabel"));
    m_pointerLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_pointerLabel->setStyleSheet(QStringLiteral(
        "QLabel { background: rgba(20, 20, 22, 230); color: white; border: 1px solid #4682ff;"
        " border-radius: 4px; padding: 4px 6px; }"));
    m_pointerLabel->hide();
    view.viewport()->installEventFilter(this);
    view.installEventFilter(this);
}

bool TimelineDragHandler::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_view) {
        switch (event->type()) {
        case QEvent::KeyPress: {
            const auto *key = static_cast<QKeyEvent *>(event);
            if (m_dragging && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down)) {
                modifyDragGapOuterEdges(key->key() == Qt::Key_Up ? 1 : -1);
                return true;
            }
            if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && !m_view.selection().target()
                && canMoveDatesOf(m_view.strip().picSelection())) {
                openPopover(m_view.strip().picSelection());
                return true;
            }
            return liveMoveKey(*key);
        }
        case QEvent::KeyRelease: {
            const int key = static_cast<QKeyEvent *>(event)->key();
            if (key == Qt::Key_Control || key == Qt::Key_Alt)
                m_liveMove.disableArrowsLiveMove();
            break;
        }
        case QEvent::FocusOut:
            m_liveMove.disableArrowsLiveMove();
            break;
        default:
            break;
        }
        return QObject::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        m_pressPoint = mouse->position();
        MySinglePic *pic = m_view.picAtPoint(m_pressPoint);
        const bool plain = mouse->button() == Qt::LeftButton
                           && !(mouse->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier));
        m_pressed = plain && canMoveDatesOf(pic) ? pic : nullptr;
        m_pressRefusal = plain && pic && !m_pressed ? whyDatesCannotMove(*pic) : QString();
        break;
    }
    case QEvent::MouseMove: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        m_pointer = mouse->position();
        m_modifiers = mouse->modifiers();
        const bool beyondThreshold = (mouse->buttons() & Qt::LeftButton)
                                     && (std::abs(m_pointer.x() - m_pressPoint.x()) >= dragThreshold
                                         || std::abs(m_pointer.y() - m_pressPoint.y()) >= dragThreshold);
        if (!m_dragging && m_pressed && beyondThreshold)
            beginDrag();
        if (!m_dragging) {
            // A drag that cannot move this item's dates says why.
            if (beyondThreshold && !m_pressRefusal.isEmpty())
                showLabelAtPointer(m_pressRefusal);
            break;
        }
        updatePlace();
        return true;
    }
    case QEvent::MouseButtonDblClick: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        MySinglePic *pic = m_view.picAtPoint(mouse->position());
        if (!canMoveDatesOf(pic) || pic != m_view.strip().picSelection())
            break;
        openPopover(pic);
        return true;
    }
    case QEvent::Resize:
        m_marker->setGeometry(m_view.viewport()->rect());
        break;
    case QEvent::MouseButtonRelease:
        m_pressed = nullptr;
        m_pressRefusal.clear();
        m_pointerLabel->hide();
        if (!m_dragging)
            break;
        endDrag(true);
        return true;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool TimelineDragHandler::canMoveDatesOf(const MySinglePic *pic) const
{
    return pic && m_view.strip().isRaised(*pic) && MySingleFolder::of(*pic) && !MySingleFolder::of(*pic)->isEXIFIgnored()
           && !m_changes.isBlocked();
}

QString TimelineDragHandler::whyDatesCannotMove(const MySinglePic &pic) const
{
    if (m_changes.isBlocked())
        return tr("Dates are locked while the save runs");
    if (!MySingleFolder::of(pic) || MySingleFolder::of(pic)->isEXIFIgnored())
        return dropRefusalText(DropRefusal::NoDates);
    // Beside the raised folders a press in single mode draws a rectangle instead.
    if (!m_view.strip().isRaised(pic) && !TimelineSelection::isSingleMode(&pic))
        return tr("This folder is not raised: drag a raised item onto it, or double-click to raise it");
    return {};
}

TimelineDrag TimelineDragHandler::dragOfSelection(MySinglePic *pressed) const
{
    const TimelineStrip &strip = m_view.strip();
    QList<MySinglePic *> multi;
    for (MySinglePic *pic : strip.theSource())
        if (strip.isSelected(pic))
            multi.append(pic);
    MySinglePic *main = strip.picSelection() ? strip.picSelection() : pressed;
    return TimelineDrag::of(strip.theSource(), main, multi, strip.raisedFolders().values());
}

void TimelineDragHandler::openPopover(MySinglePic *pic)
{
    auto *popover = new TimelineDatePopover(m_changes, dragOfSelection(pic), &m_view);
    // The strip previews the typed date as it would a drop; the model waits for the accept.
    connect(popover, &TimelineDatePopover::datePreviewed, this, [this, popover](double second) {
        const QList<MySinglePic *> source = m_view.strip().theSource();
        const TimelineDrop drop(source, popover->drag(), outerEdgeGap());
        m_view.setTempSource(drop.previewStripForSecond(second, m_view.controller().source()));
        m_view.ensureVisible(popover->drag().main);
    });
    connect(popover, &QObject::destroyed, this, [this, drag = popover->drag()] {
        const QList<MySinglePic *> source = m_view.strip().theSource();
        TimelineDrop(source, drag, outerEdgeGap()).endPreview();
        if (m_view.strip().hasTempSource())
            m_view.clearTempSource();
    });
    popover->move(
        m_view.viewport()->mapToGlobal(m_view.thumbRectInViewport(m_view.strip().indexOf(pic)).bottomLeft().toPoint()));
    popover->show();
}

void TimelineDragHandler::beginDrag()
{
    m_source = m_view.strip().theSource();
    m_drag = dragOfSelection(m_pressed);
    m_place = {};
    m_dragging = true;
    m_marker->setGeometry(m_view.viewport()->rect());
    m_marker->show();
}

QString TimelineDragHandler::outerEdgeText() const
{
    return tr("Beyond the end: %1 from the nearest item").arg(gapText(outerEdgeGap()));
}

void TimelineDragHandler::modifyDragGapOuterEdges(int step)
{
    const qint64 index = std::clamp<qint64>(m_outerEdgeIndex + step, 0, dragGapOuterEdgesCount - 1);
    if (index == m_outerEdgeIndex)
        return;
    m_outerEdgeIndex = index;
    m_liveMove.setOuterEdgeGap(outerEdgeGap());
    if (m_place.atOuterEdge) {
        Q_EMIT outerEdgeStateChanged(outerEdgeText());
        m_previewTimer.start();
    }
    Q_EMIT dragGapOuterEdgesChanged(index);
}

MyTimelineView *TimelineDragHandler::otherStripAt(QPointF viewportPoint) const
{
    const QWidget *box = m_view.parentWidget();
    if (!box || m_view.viewport()->rect().contains(viewportPoint.toPoint()))
        return nullptr;
    const QPoint global = m_view.viewport()->mapToGlobal(viewportPoint.toPoint());
    for (MyTimelineView *other : box->findChildren<MyTimelineView *>(Qt::FindDirectChildrenOnly)) {
        if (other == &m_view)
            continue;
        if (other->viewport()->rect().contains(other->viewport()->mapFromGlobal(global)))
            return other;
    }
    return nullptr;
}

DropPlace TimelineDragHandler::placeAtPointer(DropRefusal &refusal) const
{
    refusal = DropRefusal::None;
    if (!m_view.viewport()->rect().contains(m_pointer.toPoint()))
        return {};
    const TimelineStrip &strip = m_view.strip();
    const TimelineGeometry &geometry = strip.geometry();
    const StripMetrics metrics{.left = geometry.borderMarginHorizontal(),
                               .thumbSize = geometry.thumbSize(),
                               .margin = geometry.theThumbMargin(),
                               .raisedTop = geometry.thumbRect(0, true).top(),
                               .loweredTop = geometry.thumbRect(0, false).top()};
    // The user points at what the strip shows, a preview's order too.
    const QList<MySinglePic *> &shown = strip.geometrySource();
    const DropHit hit = dropHitAt(metrics, shown, m_drag, m_view.contentX(m_pointer.x()), m_pointer.y());
    if (!hit.isHit())
        return {};
    MySinglePic *pic = shown[hit.index];
    if (strip.hasTempSource() && m_drag.isMoving(pic)) {
        if (!m_place.isValid())
            refusal = m_drag.isFolderMode() ? DropRefusal::OwnFolder : DropRefusal::OwnSelection;
        return m_place;
    }
    // Alt or Ctrl held alone spreads the selection.
    const Qt::KeyboardModifiers keys = m_modifiers & (Qt::AltModifier | Qt::ControlModifier | Qt::ShiftModifier | Qt::MetaModifier);
    const bool spreading = keys == Qt::AltModifier || keys == Qt::ControlModifier;
    return findDropPlace(m_source, m_drag, m_source.indexOf(pic), hit.zone, spreading, hit.onlyIfDoubleHeight,
                         &refusal);
}

void TimelineDragHandler::updatePlace()
{
    m_stripTarget = otherStripAt(m_pointer);
    DropRefusal refusal = DropRefusal::None;
    const DropPlace place = placeAtPointer(refusal);
    if (!samePlace(place, m_place)) {
        if (place.atOuterEdge != m_place.atOuterEdge)
            Q_EMIT outerEdgeStateChanged(place.atOuterEdge ? outerEdgeText() : QString());
        m_place = place;
        m_previewTimer.start();
        m_marker->update();
    }
    showPointerLabel(refusal);
    m_view.autoscrollNear(m_pointer.x());
}

void TimelineDragHandler::showPreview()
{
    TimelineStrip &strip = m_view.strip();
    const TimelineDrop drop(m_source, m_drag, outerEdgeGap());
    m_anchoring = true;
    if (!m_place.isValid()) {
        drop.endPreview();
        if (strip.hasTempSource())
            m_view.clearTempSource();
    } else {
        // The target stays under the pointer while the items around it take their new order.
        const MySinglePic *target = m_source.value(m_place.index);
        const double targetX = m_view.viewportX(strip.geometry().minXForIndex(strip.indexOf(target)));
        m_view.setTempSource(drop.previewStrip(m_place, m_view.controller().source()));
        m_view.horizontalScrollBar()->setValue(
            int(std::lround(strip.geometry().minXForIndex(strip.indexOf(target)) - targetX)));
        Q_EMIT thumbDragUpdated(drop.preview(m_place, m_view.controller().source(), m_view.visibleThumbsRange().count));
    }
    m_anchoring = false;
    m_marker->update();
}

void TimelineDragHandler::showPointerLabel(DropRefusal refusal)
{
    QString text;
    if (m_stripTarget)
        text = m_stripTarget->strip().isShelf() || m_view.strip().isShelf() ? tr("Move the selection to this strip")
                                                                             : tr("Select these items on this strip");
    else if (const auto outcome = m_place.isValid() ? dropOutcome(m_source, m_drag, m_place, outerEdgeGap())
                                                    : std::nullopt) {
        const QString date = DateDisplay::localDateTime(outcome->newDate, dateZoneOf(*m_drag.main));
        const QString change = outcome->rule == DropOutcome::Rule::Spread ? tr("From %1").arg(date)
                               : outcome->isFolderOffset ? tr("%1\nFolder offset %2").arg(date, changeText(outcome->change))
                                                         : tr("%1\nMoves by %2").arg(date, changeText(outcome->change));
        text = change + QLatin1Char('\n') + ruleText(*outcome, m_place);
    } else
        text = dropRefusalText(refusal);
    showLabelAtPointer(text);
}

void TimelineDragHandler::showLabelAtPointer(const QString &text)
{
    if (text.isEmpty()) {
        m_pointerLabel->hide();
        return;
    }
    m_pointerLabel->setText(text);
    m_pointerLabel->adjustSize();
    // Beside the pointer, inside the strip.
    const QRect room = m_view.viewport()->rect();
    const QSize size = m_pointerLabel->size();
    const QPoint at = m_pointer.toPoint() + QPoint(16, 16);
    m_pointerLabel->move(std::clamp(at.x(), 0, std::max(0, room.width() - size.width())),
                         std::clamp(at.y(), 0, std::max(0, room.height() - size.height())));
    m_pointerLabel->show();
    m_pointerLabel->raise();
}

bool TimelineDragHandler::liveMoveKey(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    const bool arrows = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    if (!arrows || (held & ~Qt::MetaModifier) != (Qt::ControlModifier | Qt::AltModifier))
        return false;
    MySinglePic *main = m_view.strip().picSelection();
    if (!m_liveMove.isArmed() && !(canMoveDatesOf(main) && m_liveMove.arm(m_view.strip().theSource(), dragOfSelection(main))))
        return true;
    m_liveMove.liveMoveWithType(m_view.strip().theSource(),
                                event.key() == Qt::Key_Left ? MoveDirection::Left : MoveDirection::Right,
                                held & Qt::MetaModifier);
    m_view.ensureVisible(main);
    return true;
}

void TimelineDragHandler::endDrag(bool drop)
{
    m_previewTimer.stop();
    m_view.stopAutoscroll();
    Q_EMIT thumbDragWillEnd();
    const TimelineDrop timelineDrop(m_source, m_drag, outerEdgeGap());
    timelineDrop.endPreview();
    const DropPlace place = std::exchange(m_place, DropPlace{});
    if (place.atOuterEdge)
        Q_EMIT outerEdgeStateChanged(QString());
    MyTimelineView *stripTarget = std::exchange(m_stripTarget, nullptr);
    m_dragging = false;
    m_pointerLabel->hide();
    // A drop rebuilds the strip in the previewed order; otherwise the strip goes back as it was.
    m_anchoring = true;
    if (drop && stripTarget && (stripTarget->strip().isShelf() || m_view.strip().isShelf()))
        m_view.controller().moveSelectionFromOrigin(m_view.strip(), stripTarget->strip().isShelf(), m_stack);
    else if (drop && stripTarget)
        m_view.controller().getSelectionFromOrigin(m_view.strip(), stripTarget->strip());
    else if (drop && place.isValid())
        timelineDrop.perform(m_changes, place);
    if (m_view.strip().hasTempSource())
        m_view.clearTempSource();
    m_anchoring = false;
    m_marker->hide();
}

void TimelineDragHandler::paintMarker(QPainter &painter) const
{
    if (!m_place.isValid())
        return;
    const TimelineGeometry &geometry = m_view.strip().geometry();
    const MySinglePic *target = m_source.value(m_place.index);
    const qsizetype shownIndex = m_view.strip().indexOf(target);
    const double left = geometry.minXForIndex(shownIndex);
    const double size = geometry.thumbSize();
    const double halfMargin = geometry.theThumbMargin() / 2.0;
    double x = left - halfMargin;
    switch (m_place.type) {
    case DropType::LeftHalf:
        x = left + size / 4.0;
        break;
    case DropType::RightHalf:
        x = left + size * 3.0 / 4.0;
        break;
    case DropType::RightGap:
    case DropType::Spread:
        x = left + size + halfMargin;
        break;
    default:
        break;
    }
    const QRectF targetRect = geometry.thumbRect(shownIndex, target && m_view.strip().isRaised(*target));
    QRectF rows = targetRect;
    if (m_place.needsDoubleHeightArrows)
        rows = geometry.thumbRect(0, true).united(geometry.thumbRect(0, false));
    const double viewX = m_view.viewportX(x);
    painter.setRenderHint(QPainter::Antialiasing);
    // The half a drop on the thumbnail takes: one second before or after the target.
    if (m_place.type == DropType::LeftHalf || m_place.type == DropType::RightHalf) {
        QRectF half = targetRect.translated(m_view.viewportX(0), 0);
        half.setWidth(half.width() / 2);
        if (m_place.type == DropType::RightHalf)
            half.translate(half.width(), 0);
        QColor shade = m_view.palette().highlight().color();
        shade.setAlpha(90);
        painter.fillRect(half, shade);
    }
    painter.setPen(QPen(m_view.palette().highlight().color(), 3));
    painter.drawLine(QPointF(viewX, rows.top()), QPointF(viewX, rows.bottom()));
    painter.setBrush(m_view.palette().highlight());
    painter.drawPolygon(QPolygonF({QPointF(viewX - 6, rows.top() - 8), QPointF(viewX + 6, rows.top() - 8),
                                   QPointF(viewX, rows.top())}));
}

} // namespace orv
