#pragma once

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QSize>
#include <QString>
#include <QThreadPool>

namespace orv {

// Images kept by a unique text, the most recently used first, at most a count of them: the
// full-screen view's images at screen size, so that stepping back and forth decodes nothing.
class MyFullScreenSimpleCache
{
public:
    explicit MyFullScreenSimpleCache(qsizetype countLimit) : m_limit(countLimit) {}

    // A key already there only moves to the front, keeping its image; a new one goes in front and
    // pushes the oldest out past the limit.
    void setObject(const QImage &image, const QString &key);
    // The image, which moves to the front; a null image when the key is not there.
    QImage objectForUniqueString(const QString &key);
    bool contains(const QString &key) const { return m_content.contains(key); }
    void removeObjectForUniqueString(const QString &key);
    qsizetype count() const { return m_order.size(); }

private:
    QHash<QString, QImage> m_content;
    QList<QString> m_order; // most recent first
    qsizetype m_limit;
};

// Decodes photos at the size of the screen on a worker thread, ahead of the user: the image on
// screen first, then the next and the previous. A JPEG is decoded scaled down by the decoder
// itself, so a 24-megapixel photo costs a fraction of its full decode. Results come back on the
// thread that owns this object; a file that cannot be decoded comes back as a null image.
class ScreenPreviews : public QObject
{
    Q_OBJECT
public:
    explicit ScreenPreviews(QObject *parent = nullptr);
    ~ScreenPreviews() override;

    void setTargetSize(QSize size) { m_target = size; }
    QSize targetSize() const { return m_target; }
    // The decoded image, or null while it is not (yet) decoded. A path not decoded nor under way
    // is queued.
    QImage request(const QString &path);
    // Whether a path was decoded and could not be.
    bool isUndecodable(const QString &path) const { return m_undecodable.contains(key(path)); }
    // Blocks until the decodes under way have ended (tests, benchmarks).
    void waitForDone() { m_pool.waitForDone(); }

    // The image of a file at most as large as target, decoded scaled where the format can.
    static QImage decodeForScreen(const QString &path, QSize target);

Q_SIGNALS:
    void previewReady(const QString &path);

private:
    QString key(const QString &path) const;
    void finished(const QString &path, const QString &key, const QImage &image);

    QSize m_target{1920, 1080};
    MyFullScreenSimpleCache m_cache{8};
    QSet<QString> m_pending;
    QSet<QString> m_undecodable;
    QThreadPool m_pool;
};

} // namespace orv
