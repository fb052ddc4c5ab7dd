#include "app/TimelineSelection.h"

#include "core/MySinglePic.h"

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
    if (!m_multi.isEmpty())
        return m_multi;
    return m_main ? QList<MySinglePic *>{m_main} : QList<MySinglePic *>{};
}

bool TimelineSelection::isSelected(const MySinglePic *pic) const
{
    return pic && (pic == m_main || m_multi.contains(pic));
}

void TimelineSelection::select(MySinglePic *pic)
{
    setSelection({}, pic);
}

void TimelineSelection::setSelection(QList<MySinglePic *> items, MySinglePic *main)
{
    m_main = main;
    m_multi = items.size() >= 2 ? std::move(items) : QList<MySinglePic *>{};
    if (m_multi.isEmpty() && !items.isEmpty() && !m_main)
        m_main = items.first();
    m_target = nullptr;
}

bool TimelineSelection::press(const QList<MySinglePic *> &source, MySinglePic *pic, ClickKey key,
                              const QList<MySingleFolder *> &raised, bool singleMode)
{
    if (!raised.contains(pic->spSingleFolder)) {
        m_target = pic;
        return false;
    }
    if (!singleMode || key == ClickKey::Plain || !m_main) {
        // A press inside the multi-selection keeps it, so that the whole of it can be dragged.
        setSelection(m_multi.contains(pic) ? m_multi : QList<MySinglePic *>{}, pic);
        return false;
    }
    QList<MySinglePic *> items = selected();
    if (key == ClickKey::Shift) {
        const qsizetype from = source.indexOf(m_main);
        const qsizetype to = source.indexOf(pic);
        for (qsizetype i = std::min(from, to); i <= std::max(from, to) && i >= 0; ++i)
            if (raised.contains(source[i]->spSingleFolder) && !items.contains(source[i]))
                items.append(source[i]);
        setSelection(items, pic);
        return false;
    }
    if (pic == m_main && m_multi.isEmpty()) {
        setSelection({}, nullptr);
        return true;
    }
    if (items.contains(pic)) {
        MySinglePic *main = m_main;
        if (pic == main) {
            // The next member takes over, or the one before at the end.
            const qsizetype at = items.indexOf(pic);
            main = items.value(at + 1, items.value(at - 1));
        }
        items.removeOne(pic);
        setSelection(items, main);
        return false;
    }
    items.append(pic);
    setSelection(items, pic);
    return false;
}

void TimelineSelection::beginRectangle(ClickKey key)
{
    if (key == ClickKey::Plain)
        setSelection({}, nullptr);
    m_rectangleStart = selected();
    m_rectangleMain = m_main;
}

void TimelineSelection::updateRectangle(const QList<MySinglePic *> &source, const QList<MySinglePic *> &touched,
                                        bool toggle, qsizetype pointerIndex)
{
    QList<MySinglePic *> items = m_rectangleStart;
    for (MySinglePic *pic : touched) {
        if (toggle && items.contains(pic))
            items.removeOne(pic);
        else if (!items.contains(pic))
            items.append(pic);
    }
    MySinglePic *main = items.contains(m_rectangleMain) ? m_rectangleMain : nullptr;
    if (!main && !items.isEmpty()) {
        const auto distance = [&source, pointerIndex](const MySinglePic *pic) {
            return std::abs(source.indexOf(pic) - pointerIndex);
        };
        main = *std::min_element(items.cbegin(), items.cend(), [&distance](const MySinglePic *a, const MySinglePic *b) {
            return distance(a) < distance(b);
        });
    }
    setSelection(items, main);
}

} // namespace orv
