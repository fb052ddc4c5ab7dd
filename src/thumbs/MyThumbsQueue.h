#pragma once

#include "thumbs/ThumbCache.h"
#include "thumbs/ThumbDecoder.h"
#include "timeline/TimelineGeometry.h"

#include <QList>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QThreadPool>

namespace orv {

class MySinglePic;

// What is built next, and the threads that build it (runThumbs). Each visible strip hands in
// its list and visible range; the queue builds outward from what is on screen, holds at most
// 151 operations at a time, and with background generation goes on through the whole list in
// batches until every item has its thumbnail.
//
// Lives on the main thread, which alone reads items and the cache. The decoding threads get a
// copy of what they need (ThumbRequest) and hand back a finished entry by a queued call.
class MyThumbsQueue : public QObject
{
    Q_OBJECT
public:
    struct Settings
    {
        int side = 252;                // T, from cachedThumbSizeMode
        bool autoBGThumbGeneration = true;
        int autoThumbMode = 0;         // 1 or 2: the embedded thumbnail first; 2: only visible items
        int autoThumbModeMovies = 3;   // 4: movies only when visible
        bool keepMaxi = false;         // vqsFspUsesHigherResScrollingAtTheCostOfMuchRam
        bool reversedScroll = false;
    };
    struct StripList
    {
        QList<MySinglePic *> source;
        ThumbRange visible;
    };
    static constexpr int maxQueued = 151;

    explicit MyThumbsQueue(QObject *parent = nullptr);
    ~MyThumbsQueue() override;

    void setSettings(const Settings &settings);
    const Settings &settings() const { return m_settings; }
    ThumbCache &cache() { return m_cache; }

    // The width of the queue: (processors - 5, at least 0) + 1 with background generation, + 3
    // without.
    static int maxCountWithAutoBG(int processorCount, bool autoBG);
    // One strip's order of work: the visible range widened by 2 and 2 more on each side; with
    // background generation everything, from the range's start forward, then backward from it
    // to the first item (the halves change places for a reversed scroll).
    static QList<MySinglePic *> orderedForStrip(const StripList &strip, bool autoBG, bool reversed);
    // Several strips' orders merged item by item, alternating, without repeats.
    static QList<MySinglePic *> mergedAlternating(const QList<QList<MySinglePic *>> &lists);

    // Builds what the strips show first. The lists are kept for the next batches: the owner
    // hands in new ones whenever the source changes, before any item of the old ones goes.
    void runThumbs(const QList<StripList> &strips);
    // Whether the item's thumbnail is to be built now; visible: on screen in a strip.
    bool addOperationForImage(MySinglePic &pic, bool visible);
    // The thumbnails of the last lists still to be built: the queue's work in the background.
    int remainingCount() const { return m_remaining; }
    int queuedCount() const { return int(m_queued.size()); }
    // While a save runs its threads own the items and write the files: a paused queue reads
    // neither. Pausing drops what no thread took yet and waits for the decodes under way;
    // resuming builds from the last lists again.
    void setPaused(bool paused);
    bool isPaused() const { return m_paused; }
    // Blocks until every operation started has ended and its result is in the cache (tests,
    // benchmarks).
    void waitForDone();

Q_SIGNALS:
    // The thumbnail of an item is in the cache (or it failed and shows the unsupported icon).
    void thumbReady(quint32 sessionUniqueId);
    // The cache is full (it refused an entry or evicted others for it): background generation
    // stopped, and only what the strips show is built from now on (stopAllOnFirstEvictMAIN).
    void autoBGThumbGenerationStopped();
    // How many thumbnails are still to be built; 0 when the queue is idle or paused.
    void remainingChanged(int remaining);

private:
    void finished(quint32 id, ThumbEntry entry, bool failed);
    // Not built yet, not failed, and not left out by the settings.
    bool needsThumb(const MySinglePic &pic, bool visible) const;
    void setRemaining(int remaining);
    void stopAllOnFirstEvictMAIN();
    ThumbRequest requestFor(const MySinglePic &pic) const;

    Settings m_settings;
    ThumbCache m_cache;
    QThreadPool m_pool;
    QSet<quint32> m_queued;   // main thread: queued or building
    QMutex m_startedLock;
    QSet<quint32> m_started;  // under m_startedLock: taken by a thread
    QSet<quint32> m_visible;  // of the last run
    QList<StripList> m_lastStrips;
    bool m_paused = false;
    int m_remaining = 0;
};

} // namespace orv
