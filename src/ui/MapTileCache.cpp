#include "ui/MapTileCache.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QStandardPaths>

namespace orv {

namespace {

// Tiles of 256 x 256 pixels in 32 bits: about 400 of them, a few screens' worth.
constexpr int memoryCacheKilobytes = 400 * 256;
constexpr qint64 diskCacheBytes = 200LL * 1024 * 1024;

} // namespace

MapTileCache::MapTileCache(const QString &urlTemplate, QObject *parent)
    : QObject(parent), m_template(urlTemplate), m_network(new QNetworkAccessManager(this)),
      m_pixmaps(memoryCacheKilobytes)
{
    auto *disk = new QNetworkDiskCache(this);
    disk->setCacheDirectory(cacheFolder());
    disk->setMaximumCacheSize(diskCacheBytes);
    m_network->setCache(disk);
}

QString MapTileCache::userAgent()
{
    return QStringLiteral("Orvelle/%1 (desktop photo organiser; Qt %2)")
        .arg(QCoreApplication::applicationVersion().isEmpty() ? QStringLiteral(ORV_VERSION)
                                                              : QCoreApplication::applicationVersion(),
             QString::fromLatin1(qVersion()));
}

QString MapTileCache::cacheFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QStringLiteral("/orvelle/tiles");
}

QString MapTileCache::keyOf(int zoom, int x, int y) const
{
    return QString(m_template)
        .replace(QLatin1String("{z}"), QString::number(zoom))
        .replace(QLatin1String("{x}"), QString::number(x))
        .replace(QLatin1String("{y}"), QString::number(y));
}

QPixmap MapTileCache::tile(int zoom, int x, int y)
{
    if (m_template.isEmpty())
        return {};
    const QString key = keyOf(zoom, x, y);
    if (const QPixmap *kept = m_pixmaps.object(key))
        return *kept;
    if (m_pending.contains(key) || m_failed.contains(key))
        return {};
    QNetworkRequest request{QUrl(key)};
    request.setHeader(QNetworkRequest::UserAgentHeader, userAgent());
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::PreferCache);
    request.setTransferTimeout(15000);
    QNetworkReply *reply = m_network->get(request);
    m_pending.insert(key);
    connect(reply, &QNetworkReply::finished, this, [this, reply, key] { arrived(reply, key); });
    return {};
}

void MapTileCache::arrived(QNetworkReply *reply, const QString &key)
{
    reply->deleteLater();
    m_pending.remove(key);
    QPixmap pixmap;
    const bool loaded = reply->error() == QNetworkReply::NoError && pixmap.loadFromData(reply->readAll());
    if (!loaded) {
        m_failed.insert(key);
        if (m_problem.isEmpty()) {
            m_problem = reply->error() != QNetworkReply::NoError ? reply->errorString()
                                                                 : tr("the tile server sent no image");
            Q_EMIT unavailable(m_problem);
        }
        return;
    }
    m_pixmaps.insert(key, new QPixmap(pixmap), int(pixmap.width() * pixmap.height() * 4 / 1024));
    Q_EMIT tileArrived();
}

} // namespace orv
