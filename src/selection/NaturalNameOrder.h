#pragma once

#include <QCollator>

namespace orv {

// The order of file names as a file manager shows them: IMG_2 before IMG_10, case aside.
// Collation in the C locale would ignore the numeric mode; names then sort as in English.
QCollator naturalNameCollator();

} // namespace orv
