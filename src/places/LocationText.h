#pragma once

#include "places/MyGpxTrack.h"

#include <QByteArray>
#include <QString>

#include <optional>

class QMimeData;

namespace orv {

// Coordinates as people paste them: decimal degrees with a point ("47.1N,8.5E", "-33.86,151.21")
// or with decimal commas ("47,1N,8,5E"), and degrees, minutes and seconds with typographic or
// plain marks (47°6’12.5”N 8°30’0.0”E). (0, 0) and values off the globe are no place.
namespace LocationText {

bool seemsCoordinates(const QString &text);
std::optional<GeoCoordinate> coordinateFromString(const QString &text);
// "38.71667, -9.13333": what a copied place reads as in any other program.
QString plainText(GeoCoordinate coordinate);

} // namespace LocationText

// A place on the clipboard: the application's own type, a CBOR array of latitude and
// longitude, beside the plain text; read back from the own type, else from the text.
namespace LocationPasteboard {

inline constexpr char mimeType[] = "orvelle.desktopPasteboardLocationData";
void write(QMimeData &mime, GeoCoordinate coordinate);
std::optional<GeoCoordinate> read(const QMimeData &mime);

} // namespace LocationPasteboard

} // namespace orv
