#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSet>

class QNetworkAccessManager;
class QNetworkReply;

namespace orv {

// Raster tiles of the map from an XYZ server ("https://host/{z}/{x}/{y}.png") or a local folder
// ("file:///path/{z}/{x}/{y}.png"). Only the tiles a frame shows are asked for, never more
// (no prefetch, no bulk download); answers are kept on disk under the XDG cache folder and as
// pixmaps in memory. A server that fails or sends no image is said once through unavailable();
// the map goes on drawing its offline layer. Everything is asynchronous: a frame never waits.
class MapTileCache : public QObject
{
    Q_OBJECT

public:
    // An empty template: no tiles at all.
    explicit MapTileCache(const QString &urlTemplate, QObject *parent = nullptr);

    const QString &urlTemplate() const { return m_template; }
    // The tile if it is at hand; otherwise it is asked for (once) and a null pixmap answered.
    QPixmap tile(int zoom, int x, int y);
    bool isUnavailable() const { return !m_problem.isEmpty(); }
    const QString &problem() const { return m_problem; }

    static QString userAgent();
    static QString cacheFolder();

Q_SIGNALS:
    void tileArrived();
    // Said once: the first tile that could not be had, and why.
    void unavailable(const QString &why);

private:
    QString keyOf(int zoom, int x, int y) const;
    void arrived(QNetworkReply *reply, const QString &key);

    QString m_template;
    QNetworkAccessManager *m_network;
    QCache<QString, QPixmap> m_pixmaps;
    QSet<QString> m_pending;
    QSet<QString> m_failed;
    QString m_problem;
};

} // namespace orv
