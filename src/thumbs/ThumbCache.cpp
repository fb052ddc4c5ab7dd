#include "thumbs/ThumbCache.h"

namespace orv {

bool ThumbCache::insert(quint32 id, ThumbEntry entry)
{
    const qsizetype costKb = std::max<qsizetype>(1, entry.cost() / 1024);
    m_failed.remove(id);
    return m_entries.insert(id, new ThumbEntry(std::move(entry)), costKb);
}

void ThumbCache::clear()
{
    m_entries.clear();
    m_failed.clear();
}

} // namespace orv
