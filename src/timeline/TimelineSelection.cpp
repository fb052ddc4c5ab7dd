#include "timeline/TimelineSelection.h"

#include "timeline/TimelineStrip.h"

#include <algorithm>
#include <cstdlib>

namespace orv {

ClickKey clickKeyFor(Qt::KeyboardModifiers modifiers)
{
    if (modifiers & Qt::ShiftModifier)
        return ClickKey::Shift;
    if ((modifiers & Qt::ControlModifier) && !(modifiers & Qt::AltModifier))
        return ClickKey::Command;
    return ClickKey::Plain;
}

QList<MySinglePic *> TimelineSelection::selected() const
{
    QList<MySinglePic *> items;
    for (MySinglePic *pic : m_strip.theSource())
        if (m_strip.isSelected(pic))
            items.append(pic);
    return items;
}

void TimelineSelection::setSelection(const QSet<MySinglePic *> &items, MySinglePic *main)
{
    if (!main && !items.isEmpty())
        main = *items.cbegin();
    m_strip.setMultiSelection(items, main);
    m_target = nullptr;
}

bool TimelineSelection::press(MySinglePic *pic, ClickKey key, bool singleMode)
{
    if (!m_strip.isRaised(*pic)) {
        m_target = pic;
        return false;
    }
    MySinglePic *main = m_strip.picSelection();
    QSet<MySinglePic *> items = m_strip.multiSelection();
    if (!singleMode || key == ClickKey::Plain || !main) {
        // A press inside the multi-selection keeps it, so that the whole of it can be dragged.
        setSelection(items.contains(pic) ? items : QSet<MySinglePic *>{}, pic);
        return false;
    }
    if (key == ClickKey::Shift) {
        const qsizetype from = m_strip.indexOf(main);
        const qsizetype to = m_strip.indexOf(pic);
        for (qsizetype i = std::max<qsizetype>(std::min(from, to), 0); i <= std::max(from, to); ++i)
            if (m_strip.isRaised(*m_strip.picAt(i)))
                items.insert(m_strip.picAt(i));
        setSelection(items, pic);
        return false;
    }
    if (pic == main && items.size() < 2) {
        setSelection({}, nullptr);
        return true;
    }
    if (items.contains(pic)) {
        items.remove(pic);
        if (pic == main) {
            // The next member in strip order takes over, or the one before at the end.
            const QList<MySinglePic *> order = selected();
            const qsizetype at = order.indexOf(pic);
            main = order.value(at + 1, order.value(at - 1));
        }
        setSelection(items, main);
        return false;
    }
    items.insert(main);
    items.insert(pic);
    setSelection(items, pic);
    return false;
}

void TimelineSelection::beginRectangle(ClickKey key)
{
    if (key == ClickKey::Plain)
        setSelection({}, nullptr);
    m_rectangleStart = m_strip.multiSelection();
    m_rectangleMain = m_strip.picSelection();
}

void TimelineSelection::updateRectangle(const QList<MySinglePic *> &touched, bool toggle, qsizetype pointerIndex)
{
    QSet<MySinglePic *> items = m_rectangleStart;
    for (MySinglePic *pic : touched) {
        if (toggle && m_rectangleStart.contains(pic))
            items.remove(pic);
        else
            items.insert(pic);
    }
    MySinglePic *main = items.contains(m_rectangleMain) ? m_rectangleMain : nullptr;
    if (!main && !items.isEmpty()) {
        const auto distance = [this, pointerIndex](const MySinglePic *pic) {
            return std::abs(m_strip.indexOf(pic) - pointerIndex);
        };
        main = *std::min_element(items.cbegin(), items.cend(), [&distance](const MySinglePic *a, const MySinglePic *b) {
            return distance(a) < distance(b);
        });
    }
    setSelection(items, main);
}

} // namespace orv
