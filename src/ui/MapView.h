#pragma once

#include "places/MapPins.h"

#include <QFutureWatcher>
#include <QImage>
#include <QPointer>
#include <QWidget>

#include <optional>

namespace orv {

class MapTileCache;

// Our own Web Mercator map: the offline land and sea layer, the tile server's tiles over it when
// they come, tracks as lines thinned per zoom, and pins clustered per zoom, the selected ones
// marked. Dragging the map pans it, the wheel zooms around the pointer, dragging a pin asks for
// its items to move (pinsDragged), a double click asks to put the selection there. With the
// rectangle tool (or Shift held) a drag selects the pins in its rectangle; with the radius tool
// it selects those within the circle from where it began (pinsSelected). The left and right
// cursor keys ask to walk the main item to the previous or next one (stepRequested). Pins
// outside the owner's filter may be drawn faded, and the main item's pin is ringed. The view
// changes nothing itself: its owner turns each request into a change or a selection and gives
// it new pins.
class MapView : public QWidget
{
    Q_OBJECT

public:
    explicit MapView(MapTileCache *tiles = nullptr, QWidget *parent = nullptr);

    enum class SelectionTool { None, Rectangle, Radius };
    void setSelectionTool(SelectionTool tool);
    SelectionTool selectionTool() const { return m_tool; }
    // The circle of a radius selection, drawn with the tool or shown by the owner; it stays on
    // the map until a rectangle is drawn or the tool changes.
    struct SelectionCircle
    {
        GeoCoordinate centre;
        double selectionRadius = 0.0; // metres
    };
    void showSelectionCircle(const std::optional<SelectionCircle> &circle);
    const std::optional<SelectionCircle> &selectionCircle() const { return m_circle; }

    // Pin i stands for whatever its owner keeps at index i; dimmed ones are drawn faded.
    void setPins(const QList<GeoCoordinate> &pins, const QList<bool> &selected = {}, const QList<bool> &dimmed = {});
    // The pin of the main item, ringed; -1 for none.
    void setMainPin(int pin);
    int mainPin() const { return m_mainPin; }
    void setTracks(const QList<QList<QList<GeoCoordinate>>> &tracks);
    void setAttribution(const QString &text);

    void setView(GeoCoordinate centre, int zoom);
    // The smallest view that shows every coordinate (the whole world without any).
    // closestZoom keeps a single place at a town's scale.
    void showAll(const QList<GeoCoordinate> &coordinates, int closestZoom = 12);
    // The smallest view that holds the circle whole.
    void showCircleWhole(const SelectionCircle &circle);
    // Centres the map on a place that stands outside the view or too near its edge; a place well
    // inside leaves the view as it is.
    void keepInView(GeoCoordinate coordinate);
    int zoom() const { return m_zoom; }
    GeoCoordinate centre() const;
    // Between widget points and places; the world repeats east and west.
    QPointF pointOf(GeoCoordinate coordinate) const;
    GeoCoordinate coordinateAt(QPointF point) const;
    const MapPinClusters &clusters() const { return m_clusters; }

Q_SIGNALS:
    void pinsDragged(const QList<int> &pins, orv::GeoCoordinate to);
    void pinsClicked(const QList<int> &pins);
    // The pins in a rectangle or a circle the user drew.
    void pinsSelected(const QList<int> &pins);
    void placeRequested(orv::GeoCoordinate at);
    // -1 for the previous item, 1 for the next.
    void stepRequested(int direction);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    // The view's top left corner as a world pixel at the present zoom.
    QPointF origin() const;
    double worldSize() const;
    void zoomAround(int zoom, QPointF point);
    void clampCentre();
    void paintTiles(QPainter &painter) const;
    void paintTracks(QPainter &painter) const;
    void paintPins(QPainter &painter) const;
    void paintNotes(QPainter &painter) const;
    void paintSelectionShape(QPainter &painter) const;
    void paintSelectionCircle(QPainter &painter) const;
    void paintMainPin(QPainter &painter) const;
    void showToolCursor();

    QPointer<MapTileCache> m_tiles;
    QFutureWatcher<QImage> m_worldMade; // the offline layer, made off the main thread
    MapPinClusters m_clusters;
    QList<MapTrackLine> m_tracks;
    int m_mainPin = -1;
    QString m_attribution;
    int m_zoom = 2;
    QPointF m_centre; // world pixel at m_zoom

    SelectionTool m_tool = SelectionTool::None;
    std::optional<SelectionCircle> m_circle;
    enum class Gesture { None, Pan, DragPins, Rectangle, Radius };
    Gesture m_gesture = Gesture::None;
    QPoint m_pressPoint;
    QPointF m_lastPoint;
    QList<int> m_draggedPins;
    bool m_moved = false;
};

} // namespace orv
