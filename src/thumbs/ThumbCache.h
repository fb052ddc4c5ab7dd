#pragma once

#include "thumbs/ThumbEntry.h"

#include <QCache>
#include <QSet>

namespace orv {

// The one shared thumbnail cache, keyed by the item's sessionUniqueId, with the items whose
// thumbnail could not be built (they show the unsupported icon and are not tried again).
// Main thread only: decoding threads hand their entries over through MyThumbsQueue.
class ThumbCache
{
public:
    // The budget in kilobytes of entry data; the least recently used entries go first.
    static constexpr qsizetype defaultBudgetKb = 1000000;
    explicit ThumbCache(qsizetype budgetKb = defaultBudgetKb) : m_entries(budgetKb) {}

    const ThumbEntry *entry(quint32 id) const { return m_entries.object(id); }
    bool contains(quint32 id) const { return m_entries.contains(id); }
    // False when the cache refused the entry at once (larger than the whole budget): the sign
    // that background generation must stop.
    bool insert(quint32 id, ThumbEntry entry);
    void remove(quint32 id) { m_entries.remove(id); }
    qsizetype count() const { return m_entries.count(); }

    bool didBuildThumbFail(quint32 id) const { return m_failed.contains(id); }
    void markFailed(quint32 id) { m_failed.insert(id); }

    void clear();

private:
    QCache<quint32, ThumbEntry> m_entries;
    QSet<quint32> m_failed;
};

} // namespace orv
