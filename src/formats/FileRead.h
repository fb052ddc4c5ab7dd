#pragma once

#include <QByteArray>

namespace orv {

// Up to `length` bytes of an open file from `offset`, fewer at its end or on a failure.
QByteArray readAtOffset(int fd, qint64 offset, qint64 length);

} // namespace orv
