#include "ui/ThumbLayers.h"

#include "core/MySinglePic.h"
#include "thumbs/ThumbCache.h"

#include <algorithm>

namespace orv {

void ThumbLayers::setSide(int side)
{
    if (side == m_side)
        return;
    m_layers.clear();
    m_side = side;
}

void ThumbLayers::keepOnly(const QSet<quint32> &sessionUniqueIds)
{
    m_layers.removeIf([&sessionUniqueIds](const QHash<quint32, QPixmap>::iterator it) {
        return !sessionUniqueIds.contains(it.key());
    });
}

const QPixmap *ThumbLayers::layerFor(const MySinglePic &pic, const ThumbCache &cache, qreal devicePixelRatio)
{
    // Asking the cache for the entry marks it used: it keeps what is on screen the longest.
    const ThumbEntry *entry = cache.entry(pic.sessionUniqueId);
    const auto found = m_layers.constFind(pic.sessionUniqueId);
    if (found != m_layers.cend())
        return &*found;
    if (!entry)
        return nullptr;
    QImage image = entry->decodedForSide(m_side);
    if (image.isNull())
        return nullptr;
    if (std::max(image.width(), image.height()) < m_side) // a small image fills the cell
        image = image.scaled(m_side, m_side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPixmap layer = QPixmap::fromImage(std::move(image));
    layer.setDevicePixelRatio(devicePixelRatio);
    return &*m_layers.insert(pic.sessionUniqueId, std::move(layer));
}

} // namespace orv
