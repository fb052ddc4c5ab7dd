#pragma once

#include "time/Instant.h"

#include <QString>

#include <memory>

class QMimeData;

namespace orv {

class MySinglePic;

// A date, and with it a place, on the clipboard under the system's private types, so that the
// date of one item can be given to others, also in another window of the application.
namespace DatePasteboard {

inline const QString dateType = QStringLiteral("orvelle.desktopPasteboardDateData");
inline const QString locationType = QStringLiteral("orvelle.desktopPasteboardLocationData");

// The item's date as the timeline shows it, and its latitude and longitude when it has them;
// nothing for an item without a date or of a folder whose dates are not read.
std::unique_ptr<QMimeData> copy(const MySinglePic &pic);
bool hasPasteDate(const QMimeData *mime);
OptionalDate pastedDate(const QMimeData *mime);

} // namespace DatePasteboard

} // namespace orv
