#pragma once

#include <QString>

namespace orv {

// What a still's own TIFF walk tells beside the dates: camera, pixel size as shown (already
// turned for orientations 5 to 8), and the Live Photo content identifier.
struct ImageFacts
{
    QString make;
    QString model;
    qint32 width = -1;
    qint32 height = -1;
    QString contentIdentifier; // empty when looked for and absent
};

} // namespace orv
