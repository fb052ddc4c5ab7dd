#include "states/CborFields.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace orv {

void CborEntryWriter::put(QLatin1StringView key, qint64 value, qint64 defaultValue)
{
    if (value == defaultValue)
        return;
    m_writer.append(key);
    m_writer.append(value);
}

void CborEntryWriter::putDouble(QLatin1StringView key, double value, double defaultValue)
{
    if (value == defaultValue && std::signbit(value) == std::signbit(defaultValue))
        return;
    m_writer.append(key);
    m_writer.append(value);
}

void CborEntryWriter::put(QLatin1StringView key, bool value)
{
    if (!value)
        return;
    m_writer.append(key);
    m_writer.append(true);
}

void CborEntryWriter::put(QLatin1StringView key, const QString &value)
{
    if (value.isEmpty())
        return;
    m_writer.append(key);
    m_writer.append(value);
}

void CborEntryWriter::put(QLatin1StringView key, const QStringList &values)
{
    if (values.isEmpty())
        return;
    m_writer.append(key);
    m_writer.startArray(quint64(values.size()));
    for (const QString &value : values)
        m_writer.append(value);
    m_writer.endArray();
}

void CborEntryWriter::put(QLatin1StringView key, const QList<qint64> &values)
{
    if (values.isEmpty())
        return;
    m_writer.append(key);
    m_writer.startArray(quint64(values.size()));
    for (qint64 value : values)
        m_writer.append(value);
    m_writer.endArray();
}

void CborEntryWriter::put(QLatin1StringView key, const QByteArray &value)
{
    if (value.isEmpty())
        return;
    m_writer.append(key);
    m_writer.append(value);
}

void CborEntryWriter::put(QLatin1StringView key, const OptionalDate &value)
{
    if (!value)
        return;
    m_writer.append(key);
    m_writer.append(value->secondsSinceEpoch());
}

void CborEntryWriter::put(QLatin1StringView key, const std::optional<double> &value)
{
    if (!value)
        return;
    m_writer.append(key);
    m_writer.append(*value);
}

QCborStreamWriter &CborEntryWriter::entry(QLatin1StringView key)
{
    m_writer.append(key);
    return m_writer;
}

namespace {

// A state nests a few levels; this bounds the walk's stack on hostile input.
constexpr int maximumNesting = 32;

qsizetype itemEnd(QByteArrayView data, qsizetype at, int depth)
{
    if (at < 0 || at >= data.size() || depth > maximumNesting)
        return -1;
    const CborHead head = cborHead(data, at);
    if (head.length == 0)
        return -1;
    const int major = head.major;
    const quint64 argument = head.argument;
    const bool indefinite = head.isIndefinite();
    qsizetype next = at + head.length;
    const qsizetype remaining = data.size() - next;
    switch (major) {
    case 0:
    case 1:
        return indefinite ? -1 : next;
    case 2:
    case 3:
        if (!indefinite)
            return argument <= quint64(remaining) ? next + qsizetype(argument) : -1;
        // Chunks of the same kind, each of a definite length, up to the break.
        while (next < data.size() && quint8(data[next]) != 0xff) {
            if (quint8(data[next]) >> 5 != major || (quint8(data[next]) & 0x1f) == 31)
                return -1;
            next = itemEnd(data, next, depth + 1);
            if (next < 0)
                return -1;
        }
        return next < data.size() ? next + 1 : -1;
    case 4:
    case 5: {
        if (indefinite) {
            while (next < data.size() && quint8(data[next]) != 0xff) {
                for (int part = 0; part < (major == 5 ? 2 : 1) && next >= 0; ++part)
                    next = itemEnd(data, next, depth + 1);
                if (next < 0)
                    return -1;
            }
            return next < data.size() ? next + 1 : -1;
        }
        // Every element takes a byte at least: a count beyond the data is refused at once.
        const quint64 elements = major == 5 ? argument * 2 : argument;
        if (argument > quint64(remaining) || elements > quint64(remaining))
            return -1;
        for (quint64 i = 0; i < elements && next >= 0; ++i)
            next = itemEnd(data, next, depth + 1);
        return next;
    }
    case 6:
        return indefinite ? -1 : itemEnd(data, next, depth + 1);
    default:
        // Simple values and floats carry their bytes in the head; a break stands only inside
        // an indefinite container.
        return indefinite ? -1 : next;
    }
}

} // namespace

qsizetype cborItemEnd(QByteArrayView data, qsizetype at)
{
    return itemEnd(data, at, 0);
}

CborFields::CborFields(const QCborValue &value, QString where, StateProblem &problem)
    : m_data(value.isMap() ? value.toCbor() : QByteArray()), m_map(m_data), m_where(std::move(where)),
      m_problem(problem)
{
    if (!value.isMap())
        refuse(QStringLiteral("expected a map"));
    index();
}

CborFields CborFields::ofItem(const QByteArray &item, QString where, StateProblem &problem)
{
    return CborFields(item, item, std::move(where), {}, problem);
}

CborFields::CborFields(QByteArray data, QByteArrayView map, QString where, QLatin1StringView key,
                       StateProblem &problem)
    : m_data(std::move(data)), m_map(map), m_where(std::move(where)), m_key(key), m_problem(problem)
{
    index();
}

namespace {

bool keyLess(QByteArrayView a, QByteArrayView b)
{
    return a.size() != b.size() ? a.size() < b.size() : std::memcmp(a.data(), b.data(), std::size_t(a.size())) < 0;
}

// The payload of a definite text or byte string; none for an indefinite one.
std::optional<QByteArrayView> stringPayload(QByteArrayView item)
{
    const CborHead head = cborHead(item, 0);
    if (head.isIndefinite())
        return std::nullopt;
    return item.sliced(head.length, qsizetype(head.argument));
}

QCborValue decoded(QByteArrayView item)
{
    return QCborValue::fromCbor(item.data(), item.size());
}

constexpr int unsignedMajor = 0, negativeMajor = 1, bytesMajor = 2, textMajor = 3, arrayMajor = 4, mapMajor = 5,
              simpleMajor = 7;
constexpr int falseValue = 20, trueValue = 21, undefinedValue = 23, halfValue = 25, doubleValue = 27;

} // namespace

std::optional<qint64> cborInteger(QByteArrayView item)
{
    const CborHead head = cborHead(item, 0);
    if ((head.major != unsignedMajor && head.major != negativeMajor) || head.isIndefinite()
        || head.argument > quint64(std::numeric_limits<qint64>::max()))
        return std::nullopt;
    return head.major == unsignedMajor ? qint64(head.argument) : -1 - qint64(head.argument);
}

std::optional<bool> cborFlag(QByteArrayView item)
{
    const CborHead head = cborHead(item, 0);
    if (head.major != simpleMajor || (head.info != falseValue && head.info != trueValue))
        return std::nullopt;
    return head.info == trueValue;
}

std::optional<QByteArray> cborBytes(QByteArrayView item)
{
    if (cborHead(item, 0).major != bytesMajor)
        return std::nullopt;
    const std::optional<QByteArrayView> payload = stringPayload(item);
    return payload ? payload->toByteArray() : decoded(item).toByteArray();
}

std::optional<QList<QByteArrayView>> cborElements(QByteArrayView item)
{
    const CborHead head = cborHead(item, 0);
    if (head.major != arrayMajor)
        return std::nullopt;
    QList<QByteArrayView> elements;
    const qsizetype end = head.isIndefinite() ? item.size() - 1 : item.size();
    for (qsizetype at = head.length; at < end;) {
        const qsizetype next = cborItemEnd(item, at);
        elements.append(item.sliced(at, next - at));
        at = next;
    }
    return elements;
}

// Only well-formed bytes get here: every extent inside the map is whole.
void CborFields::index()
{
    const CborHead head = cborHead(m_map, 0);
    if (m_map.isEmpty() || head.major != mapMajor) {
        if (!m_map.isEmpty())
            refuse(QStringLiteral("expected a map"));
        return;
    }
    const qsizetype end = head.isIndefinite() ? m_map.size() - 1 : m_map.size();
    qsizetype at = head.length;
    m_entries.reserve(head.isIndefinite() ? 32 : std::size_t(std::min<quint64>(head.argument, 256)));
    while (at < end) {
        const qsizetype keyEnd = cborItemEnd(m_map, at);
        const qsizetype valueEnd = cborItemEnd(m_map, keyEnd);
        const QByteArrayView key = m_map.sliced(at, keyEnd - at);
        const std::optional<QByteArrayView> payload =
            cborHead(key, 0).major == textMajor ? stringPayload(key) : std::nullopt;
        if (!payload) {
            refuse(QStringLiteral("a key is not a text"));
            m_entries.clear();
            return;
        }
        m_entries.push_back({*payload, m_map.sliced(keyEnd, valueEnd - keyEnd)});
        at = valueEnd;
    }
    // Equal keys stay in their order (the first one counts), without the buffer a stable sort takes.
    std::ranges::sort(m_entries, [](const Entry &a, const Entry &b) {
        return keyLess(a.key, b.key) || (a.key == b.key && a.value.data() < b.value.data());
    });
}

std::optional<QByteArrayView> CborFields::find(QLatin1StringView key) const
{
    const QByteArrayView wanted(key.data(), key.size());
    const auto at = std::ranges::lower_bound(m_entries, wanted, keyLess, &Entry::key);
    if (at == m_entries.end() || at->key != wanted)
        return std::nullopt;
    const CborHead head = cborHead(at->value, 0);
    if (head.major == simpleMajor && head.info == undefinedValue)
        return std::nullopt;
    return at->value;
}

std::optional<QByteArrayView> CborFields::typed(QLatin1StringView key, int major, const char *what) const
{
    const std::optional<QByteArrayView> value = find(key);
    if (value && cborHead(*value, 0).major != major) {
        refuse(QStringLiteral("%1 is not %2").arg(key, QLatin1String(what)));
        return std::nullopt;
    }
    return value;
}

qint64 CborFields::integer(QLatin1StringView key, qint64 defaultValue, qint64 minimum, qint64 maximum) const
{
    const std::optional<QByteArrayView> value = find(key);
    if (!value)
        return defaultValue;
    const CborHead head = cborHead(*value, 0);
    if (head.major != unsignedMajor && head.major != negativeMajor) {
        refuse(QStringLiteral("%1 is not an integer").arg(key));
        return defaultValue;
    }
    const std::optional<qint64> number = cborInteger(*value);
    if (!number || *number < minimum || *number > maximum) {
        refuse(number ? QStringLiteral("%1 is out of range (%2)").arg(key).arg(*number)
                      : QStringLiteral("%1 is out of range").arg(key));
        return defaultValue;
    }
    return *number;
}

double CborFields::real(QLatin1StringView key, double defaultValue) const
{
    const std::optional<QByteArrayView> value = find(key);
    if (!value)
        return defaultValue;
    const CborHead head = cborHead(*value, 0);
    if (head.major != simpleMajor || head.info < halfValue || head.info > doubleValue) {
        refuse(QStringLiteral("%1 is not a number").arg(key));
        return defaultValue;
    }
    return head.info == doubleValue ? std::bit_cast<double>(head.argument) : decoded(*value).toDouble();
}

bool CborFields::flag(QLatin1StringView key) const
{
    const std::optional<QByteArrayView> value = find(key);
    if (!value)
        return false;
    const std::optional<bool> flag = cborFlag(*value);
    if (!flag)
        refuse(QStringLiteral("%1 is not a boolean").arg(key));
    return flag.value_or(false);
}

QString CborFields::text(QLatin1StringView key) const
{
    const std::optional<QByteArrayView> value = typed(key, textMajor, "a text");
    if (!value)
        return {};
    if (const std::optional<QByteArrayView> payload = stringPayload(*value))
        return QString::fromUtf8(*payload);
    return decoded(*value).toString();
}

QStringList CborFields::texts(QLatin1StringView key) const
{
    QStringList list;
    const QCborArray values = array(key);
    for (const QCborValue &value : values) {
        if (!value.isString()) {
            refuse(QStringLiteral("%1 holds something other than texts").arg(key));
            return {};
        }
        list.append(value.toString());
    }
    return list;
}

QByteArray CborFields::bytes(QLatin1StringView key, qsizetype maximumLength) const
{
    const std::optional<QByteArrayView> value = typed(key, bytesMajor, "bytes");
    if (!value)
        return {};
    const QByteArray data = cborBytes(*value).value_or(QByteArray());
    if (data.size() > maximumLength) {
        refuse(QStringLiteral("%1 is longer than %2 bytes").arg(key).arg(maximumLength));
        return {};
    }
    return data;
}

OptionalDate CborFields::date(QLatin1StringView key) const
{
    if (!has(key))
        return std::nullopt;
    return Instant(real(key));
}

std::optional<double> CborFields::optionalReal(QLatin1StringView key) const
{
    if (!has(key))
        return std::nullopt;
    return real(key);
}

QCborArray CborFields::array(QLatin1StringView key) const
{
    const std::optional<QByteArrayView> value = typed(key, arrayMajor, "an array");
    return value ? decoded(*value).toArray() : QCborArray();
}

CborFields CborFields::map(QLatin1StringView key) const
{
    const std::optional<QByteArrayView> value = find(key);
    if (!value)
        return CborFields(QByteArray(), {}, where(), key, m_problem);
    if (cborHead(*value, 0).major != mapMajor) {
        m_problem.note(where() + QLatin1Char('/') + key, QStringLiteral("expected a map"));
        return CborFields(QByteArray(), {}, where(), key, m_problem);
    }
    return CborFields(m_data, *value, where(), key, m_problem);
}

QCborValue CborFields::value(QLatin1StringView key) const
{
    const std::optional<QByteArrayView> value = find(key);
    return value ? decoded(*value) : QCborValue(QCborValue::Undefined);
}

QCborMap CborFields::all() const
{
    return m_map.isEmpty() ? QCborMap() : decoded(m_map).toMap();
}

} // namespace orv
