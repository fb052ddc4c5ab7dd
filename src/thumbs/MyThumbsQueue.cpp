#include "thumbs/MyThumbsQueue.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QCoreApplication>
#include <QThread>

namespace orv {

namespace {
// Items beyond each side of the visible range that are built with it.
constexpr qsizetype rangeExtension = 2 + 2;
} // namespace

MyThumbsQueue::MyThumbsQueue(QObject *parent) : QObject(parent)
{
    setSettings(m_settings);
}

MyThumbsQueue::~MyThumbsQueue()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void MyThumbsQueue::setSettings(const Settings &settings)
{
    m_settings = settings;
    m_pool.setMaxThreadCount(maxCountWithAutoBG(QThread::idealThreadCount(), settings.autoBGThumbGeneration));
}

int MyThumbsQueue::maxCountWithAutoBG(int processorCount, bool autoBG)
{
    return std::max(processorCount - 5, 0) + (autoBG ? 1 : 3);
}

QList<MySinglePic *> MyThumbsQueue::orderedForStrip(const StripList &strip, bool autoBG, bool reversed)
{
    const qsizetype count = strip.source.size();
    const qsizetype first = std::clamp<qsizetype>(strip.visible.first - rangeExtension, 0, count);
    const qsizetype end = std::clamp<qsizetype>(strip.visible.end() + rangeExtension, first, count);
    QList<MySinglePic *> order;
    if (!autoBG) {
        order = strip.source.mid(first, end - first);
        return order;
    }
    order.reserve(count);
    QList<MySinglePic *> forward = strip.source.mid(first);
    QList<MySinglePic *> backward;
    for (qsizetype i = first - 1; i >= 0; --i)
        backward.append(strip.source.at(i));
    if (reversed) {
        // Scrolling towards the start: what lies before the range comes right after it.
        order = strip.source.mid(first, end - first);
        order.append(backward);
        order.append(strip.source.mid(end));
    } else {
        order = forward;
        order.append(backward);
    }
    return order;
}

QList<MySinglePic *> MyThumbsQueue::mergedAlternating(const QList<QList<MySinglePic *>> &lists)
{
    if (lists.size() == 1)
        return lists.first();
    QList<MySinglePic *> merged;
    QSet<MySinglePic *> seen;
    qsizetype longest = 0;
    for (const auto &list : lists)
        longest = std::max(longest, list.size());
    for (qsizetype i = 0; i < longest; ++i)
        for (const auto &list : lists)
            if (i < list.size() && !seen.contains(list.at(i))) {
                seen.insert(list.at(i));
                merged.append(list.at(i));
            }
    return merged;
}

ThumbRequest MyThumbsQueue::requestFor(const MySinglePic &pic) const
{
    ThumbRequest request;
    request.sessionUniqueId = pic.sessionUniqueId;
    // A RAW shown by its JPEG partner draws the JPEG.
    const MySinglePic &shown = pic.bundleDependentImage && !pic.bundleDependentImage->isMovie()
                                       && pic.isRaw()
                                   ? *pic.bundleDependentImage
                                   : pic;
    request.path = shown.spPath();
    if (shown.isMovie())
        request.kind = ThumbRequest::Kind::Movie;
    else if (shown.fileFormatType == HeicFormat || shown.fileFormatType == AvifFormat)
        request.kind = ThumbRequest::Kind::Heif;
    else if (shown.isRaw())
        request.kind = ThumbRequest::Kind::Raw;
    request.side = m_settings.side;
    request.embeddedFirst = m_settings.autoThumbMode != 0;
    return request;
}

bool MyThumbsQueue::needsThumb(const MySinglePic &pic, bool visible) const
{
    const quint32 id = pic.sessionUniqueId;
    if (m_cache.contains(id) || m_cache.didBuildThumbFail(id) || pic.isMovedToTrash
        || (pic.spSingleFolder && MySingleFolder::of(pic)->isDisconnected))
        return false;
    if (pic.isMovie() && m_settings.autoThumbModeMovies == 4 && !visible)
        return false;
    return pic.isMovie() || m_settings.autoThumbMode != 2 || visible;
}

bool MyThumbsQueue::addOperationForImage(MySinglePic &pic, bool visible)
{
    const quint32 id = pic.sessionUniqueId;
    if (m_paused || m_queued.contains(id) || !needsThumb(pic, visible))
        return false;
    m_queued.insert(id);
    const ThumbRequest request = requestFor(pic);
    const bool keepMaxi = m_settings.keepMaxi;
    m_pool.start([this, request, keepMaxi] {
        {
            QMutexLocker lock(&m_startedLock);
            m_started.insert(request.sessionUniqueId);
        }
        const QImage image = ThumbDecoder::decode(request);
        const bool failed = image.isNull();
        ThumbEntry entry = ThumbEntry::make(failed ? ThumbDecoder::unsupportedIcon(request.side) : image, request.side,
                                            keepMaxi);
        QMetaObject::invokeMethod(
            this, [this, id = request.sessionUniqueId, entry = std::move(entry), failed]() mutable {
                finished(id, std::move(entry), failed);
            }, Qt::QueuedConnection);
    });
    return true;
}

void MyThumbsQueue::runThumbs(const QList<StripList> &strips)
{
    // Queued operations that no thread took yet are dropped; those building go on and are not
    // queued twice.
    m_pool.clear();
    {
        QMutexLocker lock(&m_startedLock);
        m_queued.intersect(m_started);
    }
    m_lastStrips = strips;
    if (m_paused) {
        setRemaining(0);
        return;
    }
    m_visible.clear();
    QList<QList<MySinglePic *>> lists;
    for (const StripList &strip : strips) {
        for (qsizetype i = strip.visible.first; i < std::min(strip.visible.end(), strip.source.size()); ++i)
            m_visible.insert(strip.source.at(i)->sessionUniqueId);
        lists.append(orderedForStrip(strip, m_settings.autoBGThumbGeneration, m_settings.reversedScroll));
    }
    const QList<MySinglePic *> order = mergedAlternating(lists);
    int remaining = 0;
    for (MySinglePic *pic : order) {
        const bool visible = m_visible.contains(pic->sessionUniqueId);
        if (!needsThumb(*pic, visible))
            continue;
        ++remaining;
        if (m_queued.size() < maxQueued)
            addOperationForImage(*pic, visible);
    }
    setRemaining(remaining);
}

void MyThumbsQueue::setRemaining(int remaining)
{
    if (remaining == m_remaining)
        return;
    m_remaining = remaining;
    Q_EMIT remainingChanged(remaining);
}

void MyThumbsQueue::finished(quint32 id, ThumbEntry entry, bool failed)
{
    {
        QMutexLocker lock(&m_startedLock);
        m_started.remove(id);
    }
    // Kept even when a new run forgot the operation: the work is done.
    m_queued.remove(id);
    // A full cache ends the background work: going on would only evict what was built before, and
    // build it again when its turn came round, for ever.
    // What the strips show counts as just used, so that room is made from what they do not.
    for (const quint32 shown : std::as_const(m_visible))
        m_cache.entry(shown);
    const ThumbCache::Insertion insertion = m_cache.insert(id, std::move(entry));
    if (failed)
        m_cache.markFailed(id);
    setRemaining(std::max(0, m_remaining - 1));
    if ((!insertion.stored || insertion.evicted) && m_settings.autoBGThumbGeneration)
        stopAllOnFirstEvictMAIN();
    Q_EMIT thumbReady(id);
    // checkThumbs: a drained queue takes the next batch while items still lack thumbnails.
    if (m_queued.isEmpty() && m_settings.autoBGThumbGeneration && !m_paused)
        runThumbs(m_lastStrips);
}

void MyThumbsQueue::setPaused(bool paused)
{
    if (paused == m_paused)
        return;
    m_paused = paused;
    if (!paused) {
        runThumbs(m_lastStrips);
        return;
    }
    setRemaining(0);
    m_pool.clear();
    m_pool.waitForDone();
    QMutexLocker lock(&m_startedLock);
    m_queued.intersect(m_started);
}

void MyThumbsQueue::stopAllOnFirstEvictMAIN()
{
    m_settings.autoBGThumbGeneration = false;
    setSettings(m_settings);
    // What waits in the queue for the background is dropped; the strips' ranges are queued anew.
    runThumbs(m_lastStrips);
    Q_EMIT autoBGThumbGenerationStopped();
}

void MyThumbsQueue::waitForDone()
{
    while (!m_queued.isEmpty()) {
        m_pool.waitForDone();
        QCoreApplication::sendPostedEvents(this);
        QCoreApplication::processEvents();
    }
}

} // namespace orv
