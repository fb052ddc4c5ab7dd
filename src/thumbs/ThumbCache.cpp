#include "thumbs/ThumbCache.h"

#include "core/Preferences.h"

namespace orv {

qint64 ThumbCache::maxBytesFromPreferences(const Preferences &prefs)
{
    const qint64 megabytes = prefs.integerForKey(boundKey);
    // Below a few megabytes not even one screen of thumbnails would stay.
    return std::max<qint64>(megabytes, 8) * 1024 * 1024;
}

ThumbCache::Insertion ThumbCache::insert(quint32 id, ThumbEntry entry)
{
    const qsizetype expected = m_entries.count() + (m_entries.contains(id) ? 0 : 1);
    const qsizetype cost = entry.cost();
    m_failed.remove(id);
    Insertion insertion;
    insertion.stored = m_entries.insert(id, new ThumbEntry(std::move(entry)), cost);
    insertion.evicted = insertion.stored && m_entries.count() < expected;
    return insertion;
}

void ThumbCache::clear()
{
    m_entries.clear();
    m_failed.clear();
}

} // namespace orv
