#include "viewing/ScreenPreviews.h"

#include <QImageReader>

namespace orv {

void MyFullScreenSimpleCache::setObject(const QImage &image, const QString &key)
{
    if (key.isEmpty())
        return;
    if (m_content.contains(key)) {
        m_order.removeOne(key);
        m_order.prepend(key);
        return;
    }
    m_content.insert(key, image);
    m_order.prepend(key);
    while (m_order.size() > m_limit)
        m_content.remove(m_order.takeLast());
}

QImage MyFullScreenSimpleCache::objectForUniqueString(const QString &key)
{
    const auto found = m_content.constFind(key);
    if (found == m_content.cend())
        return {};
    m_order.removeOne(key);
    m_order.prepend(key);
    return *found;
}

void MyFullScreenSimpleCache::removeObjectForUniqueString(const QString &key)
{
    m_content.remove(key);
    m_order.removeOne(key);
}

ScreenPreviews::ScreenPreviews(QObject *parent) : QObject(parent)
{
    // One decode at a time: the next image is wanted before the one after it.
    m_pool.setMaxThreadCount(1);
}

ScreenPreviews::~ScreenPreviews()
{
    m_pool.clear();
    m_pool.waitForDone();
}

QString ScreenPreviews::key(const QString &path) const
{
    return QStringLiteral("%1@%2x%3").arg(path).arg(m_target.width()).arg(m_target.height());
}

QImage ScreenPreviews::decodeForScreen(const QString &path, QSize target)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    QSize size = reader.size();
    if (!size.isValid())
        return reader.read();
    // Orientation turns the stored size on its side before it meets the screen.
    if (reader.transformation() & QImageIOHandler::TransformationRotate90)
        size.transpose();
    if (size.width() > target.width() || size.height() > target.height()) {
        QSize scaled = size.scaled(target, Qt::KeepAspectRatio);
        if (reader.transformation() & QImageIOHandler::TransformationRotate90)
            scaled.transpose();
        reader.setScaledSize(scaled);
    }
    return reader.read();
}

QImage ScreenPreviews::request(const QString &path)
{
    const QString k = key(path);
    if (m_cache.contains(k))
        return m_cache.objectForUniqueString(k);
    if (m_pending.contains(k) || m_undecodable.contains(k))
        return {};
    m_pending.insert(k);
    const QSize target = m_target;
    m_pool.start([this, path, k, target] {
        const QImage image = decodeForScreen(path, target);
        QMetaObject::invokeMethod(this, [this, path, k, image] { finished(path, k, image); }, Qt::QueuedConnection);
    });
    return {};
}

void ScreenPreviews::finished(const QString &path, const QString &key, const QImage &image)
{
    m_pending.remove(key);
    if (image.isNull())
        m_undecodable.insert(key);
    else
        m_cache.setObject(image, key);
    Q_EMIT previewReady(path);
}

} // namespace orv
