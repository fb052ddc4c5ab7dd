#pragma once

#include <QByteArray>
#include <QSize>

namespace orv::test {

// A smooth gradient of the given size encoded by Qt's image writer ("jpeg", "webp", ...), so
// every built file carries pixels a real decoder accepts. Throws std::runtime_error when the
// format has no writer (for WebP: Debian's qt6-image-formats-plugins).
QByteArray encodeGradient(QSize size, const char *format, int quality, bool progressive = false);

} // namespace orv::test
