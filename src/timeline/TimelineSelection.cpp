#include "timeline/TimelineSelection.h"

#include "core/MySinglePic.h"
#include "folders/ImportKeyStates.h"
#include "folders/MySingleFolder.h"
#include "timeline/TimelineStrip.h"

#include <algorithm>
#include <cstdlib>

namespace orv {

ClickKey clickKeyFor(Qt::KeyboardModifiers modifiers)
{
    const HeldKeys keys = HeldKeys::fromModifiers(modifiers);
    if (keys.shift)
        return ClickKey::Shift;
    if (keys.command && !keys.option)
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

MySinglePic *TimelineSelection::cursor() const
{
    return m_target ? m_target : m_strip.picSelection();
}

qsizetype TimelineSelection::besideCursor(int direction) const
{
    const qsizetype from = m_strip.indexOf(cursor());
    if (from >= 0)
        return from + direction;
    return direction > 0 ? 0 : m_strip.theSource().size() - 1;
}

void TimelineSelection::stepTo(MySinglePic *pic)
{
    if (pic && m_strip.isRaised(*pic))
        setSelection({}, pic);
    else if (pic)
        m_target = pic;
}

MySinglePic *TimelineSelection::arrow(int direction, ClickKey key, bool dropOldMain, bool singleMode)
{
    MySinglePic *main = m_strip.picSelection();
    const bool extending = singleMode && key != ClickKey::Plain && main && !m_target;
    if (!extending) {
        MySinglePic *next = m_strip.picAt(besideCursor(direction));
        stepTo(next);
        return next;
    }
    qsizetype at = m_strip.indexOf(main) + direction;
    while (m_strip.picAt(at) && !m_strip.isRaised(*m_strip.picAt(at)))
        at += direction;
    MySinglePic *next = m_strip.picAt(at);
    if (!next)
        return nullptr;
    QSet<MySinglePic *> items = m_strip.multiSelection();
    if (items.contains(next) || dropOldMain)
        items.remove(main);
    items.insert(next);
    setSelection(items, next);
    return next;
}

MySinglePic *TimelineSelection::jump(int direction, bool addPassed)
{
    const qsizetype from = m_strip.indexOf(cursor());
    if (from < 0)
        return arrow(direction, ClickKey::Plain, false, false);
    const auto raisedAt = [this](qsizetype i) { return m_strip.picAt(i) && m_strip.isRaised(*m_strip.picAt(i)); };
    const bool throughSelection = m_strip.multiSelection().size() > 1 && !m_target;
    qsizetype at = from + direction;
    if (throughSelection) {
        while (m_strip.picAt(at) && !m_strip.isSelected(m_strip.picAt(at)))
            at += direction;
    } else if (raisedAt(at)) {
        while (raisedAt(at + direction))
            at += direction;
    } else {
        while (m_strip.picAt(at) && !raisedAt(at))
            at += direction;
    }
    MySinglePic *to = m_strip.picAt(at);
    if (!to || !m_strip.isRaised(*to))
        return nullptr;
    QSet<MySinglePic *> items = addPassed || throughSelection ? m_strip.multiSelection() : QSet<MySinglePic *>{};
    for (qsizetype i = from; addPassed && i != at; i += direction)
        if (raisedAt(i))
            items.insert(m_strip.picAt(i));
    setSelection(items, to);
    return to;
}

MySinglePic *TimelineSelection::nextChanged(int direction)
{
    qsizetype at = besideCursor(direction);
    while (m_strip.picAt(at) && !m_strip.picAt(at)->isUnsaved())
        at += direction;
    MySinglePic *to = m_strip.picAt(at);
    stepTo(to);
    return to;
}

bool TimelineSelection::isSingleMode(const MySinglePic *pic)
{
    const MySingleFolder *folder = pic ? MySingleFolder::of(*pic) : nullptr;
    return folder && folder->sfEditMode == MySingleFolder::EditSeparately;
}

void TimelineSelection::beginSweep(MySinglePic *pressed)
{
    m_start = m_strip.multiSelection();
    m_startMain = m_strip.picSelection();
    m_swept = {pressed};
}

void TimelineSelection::sweepOver(MySinglePic *pic, ClickKey key)
{
    if (m_swept.isEmpty() || !m_strip.isRaised(*pic) || pic == m_swept.last())
        return;
    QSet<MySinglePic *> items = m_start;
    if (key == ClickKey::Shift) {
        m_swept = {m_swept.first(), pic};
        const qsizetype from = m_strip.indexOf(m_swept.first());
        const qsizetype to = m_strip.indexOf(pic);
        if (from < 0 || to < 0) // the strip was rebuilt under the sweep
            return;
        for (qsizetype i = std::min(from, to); i <= std::max(from, to); ++i)
            if (m_strip.isRaised(*m_strip.picAt(i)))
                items.insert(m_strip.picAt(i));
        setSelection(items, pic);
        return;
    }
    if (m_swept.size() >= 2 && pic == m_swept.at(m_swept.size() - 2))
        m_swept.removeLast();
    else if (pic == m_swept.first())
        m_swept.resize(1);
    else if (!m_swept.contains(pic))
        m_swept.append(pic);
    for (qsizetype i = 1; i < m_swept.size(); ++i)
        if (!items.remove(m_swept.at(i)))
            items.insert(m_swept.at(i));
    MySinglePic *main = items.contains(m_startMain) ? m_startMain : nullptr;
    for (qsizetype i = m_swept.size() - 1; !main && i >= 0; --i)
        if (items.contains(m_swept.at(i)))
            main = m_swept.at(i);
    setSelection(items, main);
}

void TimelineSelection::beginRectangle(ClickKey key)
{
    if (key == ClickKey::Plain)
        setSelection({}, nullptr);
    m_start = m_strip.multiSelection();
    m_startMain = m_strip.picSelection();
}

void TimelineSelection::updateRectangle(const QList<MySinglePic *> &touched, bool toggle, qsizetype pointerIndex)
{
    QSet<MySinglePic *> items = m_start;
    for (MySinglePic *pic : touched) {
        if (toggle && m_start.contains(pic))
            items.remove(pic);
        else
            items.insert(pic);
    }
    MySinglePic *main = items.contains(m_startMain) ? m_startMain : nullptr;
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
