#include "viewing/FullScreenSequence.h"

#include "core/MySinglePic.h"

#include <QString>

#include <algorithm>

namespace orv {

bool FspSources::admits(const MySinglePic &pic) const
{
    const MySinglePic &rated = pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    if (rated.isRejected)
        return rejects;
    return rated.isKeeper ? keepers : neutrals;
}

QList<MySinglePic *> FullScreenSequence::walk() const
{
    QList<MySinglePic *> items;
    for (MySinglePic *pic : m_source)
        if (m_sources.admits(*pic))
            items.append(pic);
    return items;
}

MySinglePic *FullScreenSequence::peek(int direction, bool looping) const
{
    const qsizetype count = m_source.size();
    if (count == 0)
        return nullptr;
    const qsizetype from = m_source.indexOf(m_current);
    // From an item outside the source the walk starts at its first (or last) item.
    qsizetype at = from >= 0 ? from + direction : (direction > 0 ? 0 : count - 1);
    for (qsizetype tried = 0; tried < count; ++tried, at += direction) {
        if (at < 0 || at >= count) {
            if (!looping)
                return nullptr;
            at = at < 0 ? count - 1 : 0;
        }
        if (at == from)
            return nullptr;
        if (m_sources.admits(*m_source.at(at)))
            return m_source.at(at);
    }
    return nullptr;
}

MySinglePic *FullScreenSequence::step(int direction, bool looping)
{
    if (MySinglePic *next = peek(direction, looping))
        m_current = next;
    return m_current;
}

QString FullScreenSequence::slideCountText() const
{
    const QList<MySinglePic *> items = walk();
    const qsizetype at = items.indexOf(m_current);
    const QString place = at >= 0 ? QString::number(at + 1) : QStringLiteral("–");
    return QStringLiteral("%1 / %2").arg(place).arg(items.size());
}

int FullScreenSequence::durationUp(int seconds)
{
    if (seconds > 85)
        return seconds;
    if (seconds < 10)
        return seconds + 1;
    return std::min(seconds + (seconds < 60 ? 5 : 10), maxSlideDuration);
}

int FullScreenSequence::durationDown(int seconds)
{
    if (seconds < 2)
        return seconds;
    if (seconds <= 10)
        return seconds - 1;
    return seconds - (seconds < 70 ? 5 : 10);
}

} // namespace orv
