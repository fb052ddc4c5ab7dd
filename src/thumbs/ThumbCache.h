#pragma once

#include "thumbs/ThumbEntry.h"

#include <QCache>
#include <QSet>

namespace orv {

class Preferences;

// The one shared thumbnail cache, keyed by the item's sessionUniqueId, bounded in bytes of
// compressed data: when an entry does not fit, the least recently used ones go (an entry is
// used when a strip draws it). It also remembers the items whose thumbnail could not be built
// (they show the unsupported icon and are not tried again).
// Main thread only: decoding threads hand their entries over through MyThumbsQueue.
class ThumbCache
{
public:
    // The preference that holds the bound, in megabytes (thumbCacheMegabytes).
    static inline const QString boundKey = QStringLiteral("thumbCacheMegabytes");
    static qint64 maxBytesFromPreferences(const Preferences &prefs);

    explicit ThumbCache(qint64 maxBytes = 256LL * 1024 * 1024) : m_entries(maxBytes) {}

    // The entry, now the most recently used; null when there is none.
    const ThumbEntry *entry(quint32 id) const { return m_entries.object(id); }
    bool contains(quint32 id) const { return m_entries.contains(id); }

    struct Insertion
    {
        bool stored = false;  // false: larger than the whole bound, refused at once
        bool evicted = false; // older entries went to make room
    };
    Insertion insert(quint32 id, ThumbEntry entry);
    void remove(quint32 id) { m_entries.remove(id); }
    qsizetype count() const { return m_entries.count(); }

    qint64 totalBytes() const { return m_entries.totalCost(); }
    qint64 maxBytes() const { return m_entries.maxCost(); }
    // A smaller bound evicts at once.
    void setMaxBytes(qint64 maxBytes) { m_entries.setMaxCost(maxBytes); }

    bool didBuildThumbFail(quint32 id) const { return m_failed.contains(id); }
    void markFailed(quint32 id) { m_failed.insert(id); }

    void clear();

private:
    QCache<quint32, ThumbEntry> m_entries;
    QSet<quint32> m_failed;
};

} // namespace orv
