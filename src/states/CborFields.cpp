#include "states/CborFields.h"

#include <cmath>

namespace orv {

void CborMapWriter::put(QLatin1StringView key, qint64 value, qint64 defaultValue)
{
    if (value == defaultValue)
        return;
    m_writer.append(key);
    m_writer.append(value);
}

void CborMapWriter::putDouble(QLatin1StringView key, double value, double defaultValue)
{
    if (value == defaultValue && std::signbit(value) == std::signbit(defaultValue))
        return;
    m_writer.append(key);
    m_writer.append(value);
}

void CborMapWriter::put(QLatin1StringView key, bool value)
{
    if (!value)
        return;
    m_writer.append(key);
    m_writer.append(true);
}

void CborMapWriter::put(QLatin1StringView key, const QString &value)
{
    if (value.isEmpty())
        return;
    m_writer.append(key);
    m_writer.append(value);
}

void CborMapWriter::put(QLatin1StringView key, const QStringList &values)
{
    if (values.isEmpty())
        return;
    m_writer.append(key);
    m_writer.startArray(quint64(values.size()));
    for (const QString &value : values)
        m_writer.append(value);
    m_writer.endArray();
}

void CborMapWriter::put(QLatin1StringView key, const QByteArray &value)
{
    if (value.isEmpty())
        return;
    m_writer.append(key);
    m_writer.append(value);
}

void CborMapWriter::put(QLatin1StringView key, const OptionalDate &value)
{
    if (!value)
        return;
    m_writer.append(key);
    m_writer.append(value->secondsSinceEpoch());
}

void CborMapWriter::put(QLatin1StringView key, const std::optional<double> &value)
{
    if (!value)
        return;
    m_writer.append(key);
    m_writer.append(*value);
}

QCborStreamWriter &CborMapWriter::entry(QLatin1StringView key)
{
    m_writer.append(key);
    return m_writer;
}

CborFields::CborFields(const QCborValue &value, QString where, StateProblem &problem)
    : m_map(value.toMap()), m_where(std::move(where)), m_problem(problem)
{
    if (!value.isMap())
        refuse(QStringLiteral("expected a map"));
}

QCborValue CborFields::typed(QLatin1StringView key, QCborValue::Type type, const char *what) const
{
    const QCborValue value = m_map.value(key);
    if (value.isUndefined())
        return value;
    if (value.type() != type) {
        refuse(QStringLiteral("%1 is not %2").arg(key, QLatin1String(what)));
        return {};
    }
    return value;
}

qint64 CborFields::integer(QLatin1StringView key, qint64 defaultValue, qint64 minimum, qint64 maximum) const
{
    const QCborValue value = typed(key, QCborValue::Integer, "an integer");
    if (value.isUndefined())
        return defaultValue;
    const qint64 number = value.toInteger();
    if (number < minimum || number > maximum) {
        refuse(QStringLiteral("%1 is out of range (%2)").arg(key).arg(number));
        return defaultValue;
    }
    return number;
}

double CborFields::real(QLatin1StringView key, double defaultValue) const
{
    const QCborValue value = typed(key, QCborValue::Double, "a number");
    return value.isUndefined() ? defaultValue : value.toDouble();
}

bool CborFields::flag(QLatin1StringView key) const
{
    const QCborValue value = m_map.value(key);
    if (value.isUndefined())
        return false;
    if (!value.isBool()) {
        refuse(QStringLiteral("%1 is not a boolean").arg(key));
        return false;
    }
    return value.isTrue();
}

QString CborFields::text(QLatin1StringView key) const
{
    return typed(key, QCborValue::String, "a text").toString();
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
    const QByteArray data = typed(key, QCborValue::ByteArray, "bytes").toByteArray();
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
    return typed(key, QCborValue::Array, "an array").toArray();
}

CborFields CborFields::map(QLatin1StringView key) const
{
    const QCborValue value = m_map.value(key);
    return CborFields(value.isUndefined() ? QCborValue(QCborMap()) : value, m_where + QLatin1Char('/') + key,
                      m_problem);
}

} // namespace orv
