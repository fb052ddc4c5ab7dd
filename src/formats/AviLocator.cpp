#include "formats/AviLocator.h"

#include "formats/BoxWalker.h"

#include <functional>

namespace orv {

namespace {
// From the digits of a day and a time with seconds to the longest form with padding.
constexpr qint64 shortestStamp = 19;
constexpr qint64 longestStamp = 64;

QByteArray cString(const QByteArray &text)
{
    const qsizetype nul = text.indexOf('\0');
    return nul < 0 ? text : text.left(nul);
}
} // namespace

std::optional<RiffMovieData> riffHeaderDataForMovie(const ByteSource &source)
{
    if (source.read32(0, false) != fourCC("RIFF") || source.read32(8, false) != fourCC("AVI "))
        return std::nullopt;
    // Recorders that stopped early leave a RIFF size beyond the file; what is there still counts.
    const qint64 riffEnd = qMin(qint64(source.read32(4, true).value_or(0)) + 8, source.length());
    BoxWalker walker(source, BoxWalker::Form::Riff);
    RiffMovieData data;
    bool stampSeen = false;
    // Lists nest: cameras put the INFO list inside the header list or beside it.
    std::function<bool(const Box &, int)> visit = [&](const Box &chunk, int depth) {
        if (chunk.type == fourCC("LIST")) {
            const std::optional<quint32> listType = source.read32(chunk.payload, false);
            // The frames and their index hold no metadata.
            if (listType == fourCC("movi"))
                return true;
            walker.children(chunk.payload + 4, chunk.end, depth + 1,
                            [&](const Box &child) { return visit(child, depth + 1); });
        } else if (chunk.type == fourCC("IDIT") && !stampSeen) {
            stampSeen = true;
            if (chunk.payloadSize() >= shortestStamp && chunk.payloadSize() <= longestStamp) {
                data.creaDateData = source.read(chunk.payload, chunk.payloadSize());
                data.creaDateDataOffset = quint64(chunk.payload);
                // A read the disk cut short is no stamp.
                if (data.creaDateData.size() != chunk.payloadSize())
                    data.creaDateData.clear();
            }
        } else if (chunk.type == fourCC("ISFT") && data.infoString.isEmpty()) {
            data.infoString = cString(source.read(chunk.payload, qMin<qint64>(chunk.payloadSize(), 256)));
        } else if (chunk.type == fourCC("avih") && chunk.payloadSize() >= 40) {
            const auto field = [&](qint64 at) { return source.read32(chunk.payload + at, true).value_or(0); };
            if (field(32) && field(36))
                data.pixelSize = QSize(int(field(32)), int(field(36)));
            if (field(0) && field(16))
                data.duration = double(field(0)) * double(field(16)) / 1e6;
        }
        return !(stampSeen && !data.infoString.isEmpty() && data.pixelSize.isValid());
    };
    walker.children(12, riffEnd, 1, [&](const Box &chunk) { return visit(chunk, 1); });
    if (data.creaDateData.size() < shortestStamp)
        return std::nullopt;
    return data;
}

} // namespace orv
