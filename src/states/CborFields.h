#pragma once

#include "time/Instant.h"

#include <QByteArray>
#include <QCborArray>
#include <QCborMap>
#include <QCborStreamWriter>
#include <QCborValue>
#include <QString>
#include <QStringList>

#include <limits>
#include <memory>
#include <optional>

namespace orv {

// One map of a state, written entry by entry. A value at its default is left out, so that an
// item takes room only for what it has; the reader puts the same default back. Dates are seconds
// since the epoch as doubles, exactly as the model holds them.
class CborMapWriter
{
public:
    explicit CborMapWriter(QCborStreamWriter &writer) : m_writer(writer) { m_writer.startMap(); }
    ~CborMapWriter() { m_writer.endMap(); }
    CborMapWriter(const CborMapWriter &) = delete;
    CborMapWriter &operator=(const CborMapWriter &) = delete;

    void put(QLatin1StringView key, qint64 value, qint64 defaultValue = 0);
    void putDouble(QLatin1StringView key, double value, double defaultValue = 0.0);
    void put(QLatin1StringView key, bool value);
    void put(QLatin1StringView key, const QString &value);
    void put(QLatin1StringView key, const QStringList &values);
    void put(QLatin1StringView key, const QByteArray &value);
    void put(QLatin1StringView key, const OptionalDate &value);
    void put(QLatin1StringView key, const std::optional<double> &value);
    // The key, for a value the caller writes itself (an array or a map).
    QCborStreamWriter &entry(QLatin1StringView key);

private:
    QCborStreamWriter &m_writer;
};

// The first thing wrong with a state, named by where it stands; the rest of the reading is
// pointless once one value is wrong.
class StateProblem
{
public:
    bool has() const { return !m_text.isEmpty(); }
    const QString &text() const { return m_text; }
    void note(const QString &where, const QString &what)
    {
        if (m_text.isEmpty())
            m_text = where.isEmpty() ? what : where + QStringLiteral(": ") + what;
    }

private:
    QString m_text;
};

// Typed reading of one map of a state: a missing key gives the default, a key of the wrong
// type or out of range is a problem, noted once with its place.
class CborFields
{
public:
    CborFields(const QCborValue &value, QString where, StateProblem &problem);

    bool has(QLatin1StringView key) const { return m_map.contains(key); }
    qint64 integer(QLatin1StringView key, qint64 defaultValue = 0,
                   qint64 minimum = std::numeric_limits<qint64>::min(),
                   qint64 maximum = std::numeric_limits<qint64>::max()) const;
    double real(QLatin1StringView key, double defaultValue = 0.0) const;
    bool flag(QLatin1StringView key) const;
    QString text(QLatin1StringView key) const;
    QStringList texts(QLatin1StringView key) const;
    // Refused when longer than maximumLength.
    QByteArray bytes(QLatin1StringView key, qsizetype maximumLength = std::numeric_limits<qsizetype>::max()) const;
    OptionalDate date(QLatin1StringView key) const;
    std::optional<double> optionalReal(QLatin1StringView key) const;
    QCborArray array(QLatin1StringView key) const;
    CborFields map(QLatin1StringView key) const;
    const QCborMap &all() const { return m_map; }
    const QString &where() const { return m_where; }
    StateProblem &problem() const { return m_problem; }
    // Notes a problem at this map.
    void refuse(const QString &what) const { m_problem.note(m_where, what); }

private:
    QCborValue typed(QLatin1StringView key, QCborValue::Type type, const char *what) const;

    QCborMap m_map;
    QString m_where;
    StateProblem &m_problem;
};

} // namespace orv
