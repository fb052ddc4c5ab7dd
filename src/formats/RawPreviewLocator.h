#pragma once

#include "formats/ByteSource.h"
#include "formats/TiffIfd.h"

#include <QSize>
#include <QString>

#include <optional>

namespace orv {

struct RawPreviewInfo
{
    QString make;
    QString model;
    // The largest embedded JPEG that decodes; empty data when none did.
    QSize jpgSize;
    QByteArray jpgData;
    quint32 soiOffset = 0;
    quint32 eoiOffset = 0; // one past the end-of-image marker

    bool hasPreview() const { return !jpgData.isEmpty(); }
};

// Finds the embedded preview JPEGs of a RAW file by their markers, for files whose structure
// the platform cannot read.
class RawPreviewLocator
{
public:
    // A preview larger than this on both sides is good enough to stop looking.
    static constexpr int sufficientSide = 640;
    // A candidate range above this is no preview but a false pair of markers.
    static constexpr qint64 maxPreviewLength = 64 * 1024 * 1024;

    explicit RawPreviewLocator(const ByteSource &file) : m_file(file) {}

    // With a TIFF header, make and model come from its IFD0. Nothing when neither a preview
    // nor a maker nor a model was found.
    std::optional<RawPreviewInfo> savereadInternalJPGs(std::optional<TiffHeader> moreInfos);

private:
    struct Candidate
    {
        QByteArray data;
        QSize size;
    };
    std::optional<Candidate> validJpgDataFromSoi(qint64 soi, qint64 eoi);

    const ByteSource &m_file;
};

} // namespace orv
