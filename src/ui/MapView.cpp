#include "ui/MapView.h"

#include "places/MapBaseLayer.h"
#include "places/MapProjection.h"
#include "ui/MapTileCache.h"

#include <QCache>
#include <QHash>
#include <QMouseEvent>
#include <QtConcurrent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv {

namespace {

constexpr double pinRadius = 9.0;
constexpr double pinHitRadius = 14.0;
constexpr int dragThreshold = 4;
constexpr double earthRadius = 6371000.0; // metres, as the distances of the selection tools

// Made once per process on a worker thread (a few hundred milliseconds), shared by every map.
QFuture<QImage> worldImage()
{
    static const QFuture<QImage> world = QtConcurrent::run([] { return MapBaseLayer::mercatorWorld(); });
    return world;
}

// The offline layer once it is made; a null pixmap until then, or when it cannot be read.
const QPixmap &baseLayer()
{
    static QPixmap world;
    static bool taken = false;
    if (!taken && worldImage().isFinished()) {
        world = QPixmap::fromImage(worldImage().result());
        taken = true;
    }
    return world;
}

// The offline layer cut like a server's tiles, each scaled once: a frame then only copies
// pixels. About a hundred tiles, several screens' worth, are kept.
QPixmap baseTile(int zoom, int column, int row)
{
    static QCache<quint64, QPixmap> tiles(128);
    const quint64 key = (quint64(zoom) << 48) | (quint64(column) << 24) | quint64(row);
    if (const QPixmap *kept = tiles.object(key))
        return *kept;
    const int size = MapProjection::tileSize;
    QPixmap tile(size, size);
    tile.fill(QColor::fromRgb(MapBaseLayer::seaColour));
    const QPixmap &world = baseLayer();
    if (world.isNull())
        return tile; // the sea alone, and kept only once the layer is there
    const double scale = world.width() / MapProjection::worldSize(zoom);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRectF(0, 0, size, size), world,
                       QRectF(column * size * scale, row * size * scale, size * scale, size * scale));
    painter.end();
    tiles.insert(key, new QPixmap(tile));
    return tile;
}

double clusterRadius(int count)
{
    return count == 1 ? pinRadius : std::min(22.0, 11.0 + 2.5 * std::log2(double(count)));
}

// A pin or a cluster's disc with its count, drawn once per look and copied after: thousands of
// discs a frame cost no more than thousands of small copies.
const QPixmap &pinSprite(int count, bool selected, bool dragged, bool dimmed, qreal pixelRatio)
{
    static QHash<quint64, QPixmap> sprites;
    const quint64 key = (quint64(count) << 24) | (quint64(selected) << 23) | (quint64(dragged) << 22)
        | (quint64(dimmed) << 21) | quint64(pixelRatio * 100.0);
    if (const auto kept = sprites.constFind(key); kept != sprites.cend())
        return *kept;
    if (sprites.size() > 4096)
        sprites.clear();
    const double radius = clusterRadius(count);
    const int side = int(std::ceil(2 * radius + 4));
    QPixmap sprite(QSize(side, side) * pixelRatio);
    sprite.setDevicePixelRatio(pixelRatio);
    sprite.fill(Qt::transparent);
    QPainter painter(&sprite);
    painter.setRenderHint(QPainter::Antialiasing);
    // A pin outside the filter keeps its colour, faded, so that it still reads as a pin.
    if (dimmed)
        painter.setOpacity(0.35);
    const QColor fill = selected ? QColor(230, 90, 20) : QColor(30, 110, 210);
    painter.setPen(QPen(Qt::white, 2.0));
    painter.setBrush(dragged ? fill.lighter(130) : fill);
    const QPointF middle(side / 2.0, side / 2.0);
    painter.drawEllipse(middle, radius, radius);
    if (count > 1) {
        QFont font = painter.font();
        font.setBold(true);
        font.setPixelSize(11);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QRectF(0, 0, side, side), Qt::AlignCenter, QString::number(count));
    }
    painter.end();
    return *sprites.insert(key, sprite);
}

} // namespace

MapView::MapView(MapTileCache *tiles, QWidget *parent) : QWidget(parent), m_tiles(tiles)
{
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(200, 150);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&m_worldMade, &QFutureWatcher<QImage>::finished, this, qOverload<>(&QWidget::update));
    m_worldMade.setFuture(worldImage());
    if (m_tiles) {
        connect(m_tiles, &MapTileCache::tileArrived, this, qOverload<>(&QWidget::update));
        connect(m_tiles, &MapTileCache::unavailable, this, qOverload<>(&QWidget::update));
    }
    setView({30.0, 0.0}, 2);
}

void MapView::setSelectionTool(SelectionTool tool)
{
    if (tool != SelectionTool::Radius)
        m_circle.reset();
    m_tool = tool;
    update();
    showToolCursor();
}

void MapView::showToolCursor()
{
    if (m_tool == SelectionTool::None)
        unsetCursor();
    else
        setCursor(Qt::CrossCursor);
}

void MapView::setPins(const QList<GeoCoordinate> &pins, const QList<bool> &selected, const QList<bool> &dimmed)
{
    m_clusters.setPins(pins, selected, dimmed);
    if (m_mainPin >= pins.size())
        m_mainPin = -1;
    update();
}

void MapView::setMainPin(int pin)
{
    m_mainPin = pin >= 0 && pin < m_clusters.pins().size() ? pin : -1;
    update();
}

void MapView::keepInView(GeoCoordinate coordinate)
{
    // A pin closer to the edge than this is half hidden under a cluster's disc or the notes.
    const double margin = std::min({48.0, width() / 4.0, height() / 4.0});
    if (QRectF(rect()).adjusted(margin, margin, -margin, -margin).contains(pointOf(coordinate)))
        return;
    m_centre = MapProjection::worldPixel(coordinate, m_zoom);
    clampCentre();
    update();
}

void MapView::setTracks(const QList<QList<QList<GeoCoordinate>>> &tracks)
{
    m_tracks.clear();
    for (const QList<QList<GeoCoordinate>> &segments : tracks)
        m_tracks.append(MapTrackLine(segments));
    update();
}

void MapView::setAttribution(const QString &text)
{
    m_attribution = text;
    update();
}

double MapView::worldSize() const
{
    return MapProjection::worldSize(m_zoom);
}

void MapView::setView(GeoCoordinate centre, int zoom)
{
    m_zoom = std::clamp(zoom, MapProjection::minZoom, MapProjection::maxZoom);
    m_centre = MapProjection::worldPixel(centre, m_zoom);
    clampCentre();
    update();
}

void MapView::showAll(const QList<GeoCoordinate> &coordinates, int closestZoom)
{
    if (coordinates.isEmpty()) {
        setView({30.0, 0.0}, 1);
        return;
    }
    // The smallest rectangle at zoom 0, then the largest zoom at which it fits with a margin.
    // An empty QSizeF is (-1, -1): the rectangle starts as the first point alone.
    const QPointF first = MapProjection::worldPixel(coordinates.first(), 0);
    QRectF bounds(first, first);
    for (const GeoCoordinate &c : coordinates) {
        const QPointF p = MapProjection::worldPixel(c, 0);
        bounds = bounds.united(QRectF(p, QSizeF(1e-9, 1e-9)));
    }
    const double margin = 80.0;
    int zoom = MapProjection::minZoom;
    while (zoom < closestZoom && bounds.width() * std::exp2(zoom + 1) < width() - margin
           && bounds.height() * std::exp2(zoom + 1) < height() - margin)
        ++zoom;
    m_zoom = zoom;
    m_centre = bounds.center() * std::exp2(zoom);
    clampCentre();
    update();
}

void MapView::showCircleWhole(const SelectionCircle &circle)
{
    const double latitude = circle.selectionRadius / earthRadius * 180.0 / std::numbers::pi;
    const double longitude = latitude / std::max(0.01, std::cos(circle.centre.latitude * std::numbers::pi / 180.0));
    const GeoCoordinate &c = circle.centre;
    showAll({{c.latitude - latitude, c.longitude - longitude}, {c.latitude + latitude, c.longitude + longitude}},
            MapProjection::maxZoom);
}

GeoCoordinate MapView::centre() const
{
    return MapProjection::coordinate(m_centre, m_zoom);
}

QPointF MapView::origin() const
{
    return m_centre - QPointF(width() / 2.0, height() / 2.0);
}

QPointF MapView::pointOf(GeoCoordinate coordinate) const
{
    const double size = worldSize();
    QPointF point = MapProjection::worldPixel(coordinate, m_zoom) - origin();
    // The copy of the world nearest the view's middle.
    point.rx() -= std::round((point.x() - width() / 2.0) / size) * size;
    return point;
}

GeoCoordinate MapView::coordinateAt(QPointF point) const
{
    return MapProjection::coordinate(origin() + point, m_zoom);
}

void MapView::clampCentre()
{
    const double size = worldSize();
    m_centre.rx() = std::fmod(std::fmod(m_centre.x(), size) + size, size);
    // The poles' edge never leaves the view's middle when the world is taller than the view.
    const double half = height() / 2.0;
    m_centre.ry() = size > height() ? std::clamp(m_centre.y(), half, size - half) : size / 2.0;
}

void MapView::zoomAround(int zoom, QPointF point)
{
    zoom = std::clamp(zoom, MapProjection::minZoom, MapProjection::maxZoom);
    if (zoom == m_zoom)
        return;
    const QPointF world = origin() + point;
    const double scale = std::exp2(zoom - m_zoom);
    m_centre = world * scale - (point - QPointF(width() / 2.0, height() / 2.0));
    m_zoom = zoom;
    clampCentre();
    update();
}

void MapView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgb(MapBaseLayer::seaColour));
    paintTiles(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    paintTracks(painter);
    paintPins(painter);
    paintMainPin(painter);
    paintSelectionShape(painter);
    paintNotes(painter);
}

void MapView::showSelectionCircle(const std::optional<SelectionCircle> &circle)
{
    m_circle = circle;
    update();
}

void MapView::paintSelectionShape(QPainter &painter) const
{
    if (m_gesture != Gesture::Rectangle && !m_circle)
        return;
    painter.setPen(QPen(QColor(230, 90, 20), 1.5, Qt::DashLine));
    painter.setBrush(QColor(230, 90, 20, 40));
    if (m_gesture == Gesture::Rectangle)
        painter.drawRect(QRectF(m_pressPoint, m_lastPoint).normalized());
    else if (m_circle)
        paintSelectionCircle(painter);
}

void MapView::paintSelectionCircle(QPainter &painter) const
{
    // Mercator stretches a distance by 1 / cos(latitude): a circle a few hundred kilometres wide
    // stays round enough on screen to be drawn as one.
    const double metresPerPixel = 2 * std::numbers::pi * earthRadius
        * std::cos(m_circle->centre.latitude * std::numbers::pi / 180.0) / worldSize();
    const double radius = m_circle->selectionRadius / metresPerPixel;
    const QPointF centre = pointOf(m_circle->centre);
    painter.drawEllipse(centre, radius, radius);
    const double metres = m_circle->selectionRadius;
    const QString text = metres >= 1000 ? tr("%1 km").arg(metres / 1000.0, 0, 'f', metres < 10000 ? 2 : 1)
                                        : tr("%1 m").arg(std::round(metres));
    painter.setPen(Qt::black);
    painter.drawText(centre + QPointF(radius + 6, -6), text);
}

void MapView::paintTiles(QPainter &painter) const
{
    const bool serverTiles = m_tiles && !m_tiles->urlTemplate().isEmpty();
    const QPointF corner = origin();
    const int size = MapProjection::tileSize;
    const int last = (1 << m_zoom) - 1;
    const int firstColumn = int(std::floor(corner.x() / size));
    const int lastColumn = int(std::floor((corner.x() + width()) / size));
    const int firstRow = std::max(0, int(std::floor(corner.y() / size)));
    const int lastRow = std::min(last, int(std::floor((corner.y() + height()) / size)));
    for (int row = firstRow; row <= lastRow; ++row) {
        for (int column = firstColumn; column <= lastColumn; ++column) {
            const int wrapped = MapProjection::wrappedColumn(column, m_zoom);
            const QPointF at(column * size - corner.x(), row * size - corner.y());
            // The server's tile where it has come, the offline layer's until then.
            const QPixmap tile = serverTiles ? m_tiles->tile(m_zoom, wrapped, row) : QPixmap();
            painter.drawPixmap(at, tile.isNull() ? baseTile(m_zoom, wrapped, row) : tile);
        }
    }
}

void MapView::paintTracks(QPainter &painter) const
{
    painter.setPen(QPen(QColor(200, 40, 120, 220), 3.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const QPointF corner = origin();
    const double size = worldSize();
    const QRectF view = QRectF(rect()).adjusted(-4, -4, 4, 4);
    for (const MapTrackLine &track : m_tracks) {
        for (const QList<QPointF> &segment : track.segmentsAt(m_zoom)) {
            if (segment.isEmpty())
                continue;
            const double shift = std::round((segment.first().x() - corner.x() - width() / 2.0) / size) * size;
            // Only the runs of the line that cross the view are handed to the painter.
            QPolygonF run;
            for (qsizetype i = 0; i < segment.size(); ++i) {
                const QPointF point = segment[i] - corner - QPointF(shift, 0);
                const bool nearView = view.contains(point)
                    || (i > 0 && view.intersects(QRectF(segment[i - 1] - corner - QPointF(shift, 0), point).normalized()));
                if (nearView) {
                    if (run.isEmpty() && i > 0)
                        run.append(segment[i - 1] - corner - QPointF(shift, 0));
                    run.append(point);
                } else if (!run.isEmpty()) {
                    run.append(point);
                    painter.drawPolyline(run);
                    run.clear();
                }
            }
            if (run.size() > 1)
                painter.drawPolyline(run);
        }
    }
}

void MapView::paintPins(QPainter &painter) const
{
    const double size = worldSize();
    const QPointF corner = origin();
    const QRectF view = QRectF(rect()).adjusted(-24, -24, 24, 24);
    const qreal pixelRatio = devicePixelRatioF();
    const std::vector<MapCluster> &clusters = m_clusters.clustersAt(m_zoom);
    for (const MapCluster &cluster : clusters) {
        QPointF point = cluster.worldPixel - corner;
        point.rx() -= std::round((point.x() - width() / 2.0) / size) * size;
        const bool dragged = m_gesture == Gesture::DragPins && m_moved && cluster.count == m_draggedPins.size()
            && m_draggedPins == m_clusters.membersOf(m_zoom, cluster);
        if (dragged)
            point = m_lastPoint;
        if (!view.contains(point))
            continue;
        const QPixmap &sprite =
            pinSprite(cluster.count, cluster.selectedCount > 0, dragged, cluster.dimmedCount == cluster.count, pixelRatio);
        const QSizeF side = sprite.deviceIndependentSize();
        painter.drawPixmap(point - QPointF(side.width() / 2.0, side.height() / 2.0), sprite);
    }
}

void MapView::paintMainPin(QPainter &painter) const
{
    if (m_mainPin < 0 || (m_gesture == Gesture::DragPins && m_moved))
        return;
    // Around the disc of whatever cluster holds the pin, so that a walk from pin to pin is seen
    // at every zoom.
    const MapCluster &cluster = m_clusters.clustersAt(m_zoom)[std::size_t(m_clusters.clusterOf(m_zoom, m_mainPin))];
    const double radius = clusterRadius(cluster.count) + 4.0;
    const QPointF at = pointOf(MapProjection::coordinate(cluster.worldPixel, m_zoom));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 5.0));
    painter.drawEllipse(at, radius, radius);
    painter.setPen(QPen(QColor(230, 90, 20), 2.5));
    painter.drawEllipse(at, radius, radius);
}

void MapView::paintNotes(QPainter &painter) const
{
    QStringList notes;
    if (m_tiles && m_tiles->isUnavailable())
        notes << tr("Map tiles are unavailable (%1); showing the offline map.").arg(m_tiles->problem());
    const auto note = [&](const QString &text, Qt::Alignment corner) {
        QFont font = painter.font();
        font.setBold(false);
        font.setPixelSize(11);
        painter.setFont(font);
        const QRectF box = painter.boundingRect(rect().adjusted(6, 6, -6, -6), int(corner), text).adjusted(-4, -2, 4, 2);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(255, 255, 255, 200));
        painter.drawRect(box);
        painter.setPen(Qt::black);
        painter.drawText(box, Qt::AlignCenter, text);
    };
    const QString attribution = m_tiles && !m_tiles->urlTemplate().isEmpty() && !m_tiles->isUnavailable()
            && !m_attribution.isEmpty()
        ? m_attribution
        : tr("Offline map: GeoNames zone map (libtimezonemap-data)");
    note(attribution, Qt::AlignRight | Qt::AlignBottom);
    if (!notes.isEmpty())
        note(notes.join(u'\n'), Qt::AlignLeft | Qt::AlignTop);
}

void MapView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return QWidget::mousePressEvent(event);
    m_pressPoint = event->position().toPoint();
    m_lastPoint = event->position();
    m_moved = false;
    const int hit = m_clusters.clusterAt(m_zoom, origin() + event->position(), pinHitRadius);
    if (m_tool == SelectionTool::Radius) {
        m_gesture = Gesture::Radius;
        m_circle = SelectionCircle{coordinateAt(event->position()), 0.0};
    } else if (m_tool == SelectionTool::Rectangle || event->modifiers().testFlag(Qt::ShiftModifier)) {
        m_gesture = Gesture::Rectangle;
        m_circle.reset();
    } else if (hit >= 0) {
        m_gesture = Gesture::DragPins;
        m_draggedPins = m_clusters.membersOf(m_zoom, m_clusters.clustersAt(m_zoom)[std::size_t(hit)]);
    } else {
        m_gesture = Gesture::Pan;
        setCursor(Qt::ClosedHandCursor);
    }
}

void MapView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_gesture == Gesture::None)
        return;
    m_moved = m_moved || (event->position().toPoint() - m_pressPoint).manhattanLength() >= dragThreshold;
    if (m_gesture == Gesture::Pan) {
        m_centre -= event->position() - m_lastPoint;
        clampCentre();
    }
    m_lastPoint = event->position();
    if (m_gesture == Gesture::Radius)
        m_circle->selectionRadius = 1000.0 * MyGpxTrack::haversineKilometres(m_circle->centre, coordinateAt(m_lastPoint));
    update();
}

void MapView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || m_gesture == Gesture::None)
        return QWidget::mouseReleaseEvent(event);
    m_lastPoint = event->position();
    const Gesture gesture = std::exchange(m_gesture, Gesture::None);
    const QList<int> pins = std::exchange(m_draggedPins, {});
    showToolCursor();
    update();
    if (gesture == Gesture::Rectangle || gesture == Gesture::Radius) {
        if (gesture == Gesture::Radius)
            m_circle->selectionRadius = 1000.0 * MyGpxTrack::haversineKilometres(m_circle->centre, coordinateAt(m_lastPoint));
        QList<int> chosen;
        const QRectF rectangle = QRectF(m_pressPoint, m_lastPoint).normalized();
        const QList<GeoCoordinate> &all = m_clusters.pins();
        for (int i = 0; i < all.size(); ++i) {
            const bool inside = gesture == Gesture::Rectangle
                ? rectangle.contains(pointOf(all[i]))
                : MyGpxTrack::haversineKilometres(m_circle->centre, all[i]) * 1000.0 <= m_circle->selectionRadius;
            if (inside)
                chosen.append(i);
        }
        Q_EMIT pinsSelected(chosen);
        return;
    }
    if (gesture != Gesture::DragPins)
        return;
    m_moved = m_moved || (event->position().toPoint() - m_pressPoint).manhattanLength() >= dragThreshold;
    if (m_moved)
        Q_EMIT pinsDragged(pins, coordinateAt(event->position()));
    else
        Q_EMIT pinsClicked(pins);
}

void MapView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT placeRequested(coordinateAt(event->position()));
}

void MapView::wheelEvent(QWheelEvent *event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps != 0)
        zoomAround(m_zoom + steps, event->position());
    event->accept();
}

void MapView::keyPressEvent(QKeyEvent *event)
{
    const QPointF middle(width() / 2.0, height() / 2.0);
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomAround(m_zoom + 1, middle);
        break;
    case Qt::Key_Minus:
        zoomAround(m_zoom - 1, middle);
        break;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (event->modifiers() & ~Qt::KeypadModifier)
            return QWidget::keyPressEvent(event);
        Q_EMIT stepRequested(event->key() == Qt::Key_Left ? -1 : 1);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace orv
