#include "states/SavedThumbs.h"

#include <QtEndian>

#include <bit>
#include <optional>

namespace orv::SavedThumbs {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView magic = "orvelThumbs";

void appendInteger(QByteArray &out, qint64 value)
{
    char bytes[8];
    qToLittleEndian(value, bytes);
    out.append(bytes, 8);
}

// Reads from the front of the rest, advancing it; nothing when the rest is too short.
std::optional<qint64> takeInteger(QByteArrayView &rest)
{
    if (rest.size() < 8)
        return std::nullopt;
    const qint64 value = qFromLittleEndian<qint64>(rest.data());
    rest = rest.sliced(8);
    return value;
}

} // namespace

QByteArray write(const QList<ThumbRecord> &records)
{
    QByteArray out;
    out.append(magic);
    appendInteger(out, version);
    appendInteger(out, records.size());
    for (const ThumbRecord &record : records) {
        appendInteger(out, record.data.size());
        appendInteger(out, record.indexInSource);
        out.append(record.data);
        appendInteger(out, std::bit_cast<qint64>(record.seconds));
    }
    return out;
}

ReadResult read(const QByteArray &data, qint64 itemCount, const QString &fileName)
{
    ReadResult result;
    const auto refuse = [&result, &fileName](const QString &what) { result.problem = u"%1: %2"_s.arg(fileName, what); };
    QByteArrayView rest(data);
    if (!rest.startsWith(magic)) {
        refuse(u"not a thumbnails file"_s);
        return result;
    }
    rest = rest.sliced(magic.size());
    const std::optional<qint64> fileVersion = takeInteger(rest);
    const std::optional<qint64> count = takeInteger(rest);
    if (!count || *fileVersion != version) {
        refuse(u"version %1 is not read"_s.arg(fileVersion.value_or(-1)));
        return result;
    }
    for (qint64 n = 0; n < *count; ++n) {
        const std::optional<qint64> length = takeInteger(rest);
        const std::optional<qint64> index = takeInteger(rest);
        if (!index || *length < 0 || *length > rest.size() - 8) {
            refuse(u"record %1 is cut short"_s.arg(n));
            return result;
        }
        if (*index < 0 || *index >= itemCount) {
            refuse(u"record %1 names item %2 of %3"_s.arg(n).arg(*index).arg(itemCount));
            return result;
        }
        ThumbRecord record;
        record.indexInSource = *index;
        record.data = rest.first(*length).toByteArray();
        rest = rest.sliced(*length);
        record.seconds = std::bit_cast<double>(*takeInteger(rest));
        result.records.append(std::move(record));
    }
    if (!rest.isEmpty())
        refuse(u"%1 bytes after the last record"_s.arg(rest.size()));
    return result;
}

} // namespace orv::SavedThumbs
