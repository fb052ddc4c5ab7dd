#pragma once

#include "formats/ByteSource.h"
#include "formats/TiffIfd.h"

#include <QSize>
#include <QString>

namespace orv {

// The few non-date facts the scan needs from a still image's own TIFF structure.
struct TiffImageTags
{
    QString make;
    QString model;
    int orientation = 1; // the TIFF default when the tag is absent
    QSize pixelSize;     // invalid when the file names none
    // The Live Photo content identifier of the Apple maker note; empty when absent.
    QString contentIdentifier;

    // The size as displayed: orientations 5 to 8 turn the image by a quarter.
    QSize orientedPixelSize() const
    {
        return orientation >= 5 && orientation <= 8 ? pixelSize.transposed() : pixelSize;
    }
};

class TiffTagReader
{
public:
    explicit TiffTagReader(const ByteSource &file) : m_file(file) {}

    TiffImageTags read(const TiffHeader &header);

private:
    QString appleContentIdentifier(qint64 makerNoteOffset);

    const ByteSource &m_file;
};

} // namespace orv
