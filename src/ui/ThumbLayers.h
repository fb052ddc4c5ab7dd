#pragma once

#include <QHash>
#include <QPixmap>
#include <QSet>

namespace orv {

class MySinglePic;
class ThumbCache;

// The drawn thumbnails of the items a view shows or nearly shows, all at one pixel side. Only
// they are ever decoded: the cache holds compressed bytes.
class ThumbLayers
{
public:
    // A new side drops the layers made for the old one.
    void setSide(int side);
    int side() const { return m_side; }
    qsizetype count() const { return m_layers.size(); }
    void clear() { m_layers.clear(); }
    // The item's thumbnail changed: its layer is made again when next drawn.
    void remove(quint32 sessionUniqueId) { m_layers.remove(sessionUniqueId); }
    void keepOnly(const QSet<quint32> &sessionUniqueIds);
    // The item's layer, made now from the cache; none while the cache has no thumbnail for it.
    const QPixmap *layerFor(const MySinglePic &pic, const ThumbCache &cache, qreal devicePixelRatio);

private:
    QHash<quint32, QPixmap> m_layers;
    int m_side = 0;
};

} // namespace orv
