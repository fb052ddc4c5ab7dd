#pragma once

#include "time/Instant.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QCborArray>
#include <QCborMap>
#include <QCborStreamWriter>
#include <QCborValue>
#include <QString>
#include <QStringList>

#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace orv {

// The entries of one map of a state. A value at its default is left out, so that an item takes
// room only for what it has; the reader puts the same default back. Dates are seconds since the
// epoch as doubles, exactly as the model holds them.
class CborEntryWriter
{
public:
    explicit CborEntryWriter(QCborStreamWriter &writer) : m_writer(writer) {}
    CborEntryWriter(const CborEntryWriter &) = delete;
    CborEntryWriter &operator=(const CborEntryWriter &) = delete;

    void put(QLatin1StringView key, qint64 value, qint64 defaultValue = 0);
    void putDouble(QLatin1StringView key, double value, double defaultValue = 0.0);
    void put(QLatin1StringView key, bool value);
    void put(QLatin1StringView key, const QString &value);
    void put(QLatin1StringView key, const QStringList &values);
    void put(QLatin1StringView key, const QList<qint64> &values);
    void put(QLatin1StringView key, const QByteArray &value);
    void put(QLatin1StringView key, const OptionalDate &value);
    void put(QLatin1StringView key, const std::optional<double> &value);
    // The key, for a value the caller writes itself (an array or a map).
    QCborStreamWriter &entry(QLatin1StringView key);

protected:
    QCborStreamWriter &m_writer;
};

// One whole map, opened at construction and closed at destruction.
class CborMapWriter : public CborEntryWriter
{
public:
    explicit CborMapWriter(QCborStreamWriter &writer) : CborEntryWriter(writer) { m_writer.startMap(); }
    ~CborMapWriter() { m_writer.endMap(); }
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

// The head of the CBOR data item at `at`: its major type, its additional information, its
// argument (a length, a count, a number or a float's bits) and the head's own length, 0 when
// the head is malformed or cut.
struct CborHead
{
    int major = 0;
    int info = 0;
    quint64 argument = 0;
    qsizetype length = 0;
    bool isIndefinite() const { return info == 31; }
};
inline CborHead cborHead(QByteArrayView data, qsizetype at)
{
    if (at < 0 || at >= data.size())
        return {};
    const int major = quint8(data[at]) >> 5;
    const int info = quint8(data[at]) & 0x1f;
    if (info < 24)
        return {major, info, quint64(info), 1};
    if (info == 31)
        return {major, info, 0, 1};
    if (info > 27)
        return {};
    const qsizetype size = qsizetype(1) << (info - 24);
    if (data.size() - at - 1 < size)
        return {};
    quint64 value = 0;
    for (qsizetype i = 1; i <= size; ++i)
        value = (value << 8) | quint8(data[at + i]);
    return {major, info, value, 1 + size};
}

// Where the CBOR data item that starts at `at` ends, from its heads alone: nothing is decoded or
// copied, so a reader can cut a folder into its items at the cost of a walk over the bytes.
// -1 when the item is malformed, runs past the data or nests deeper than a state ever does.
qsizetype cborItemEnd(QByteArrayView data, qsizetype at);

// The values of one well-formed data item (as cborItemEnd vouches for), decoded from its bytes;
// none when the item is not of that kind (an integer also when it does not fit).
std::optional<qint64> cborInteger(QByteArrayView item);
std::optional<bool> cborFlag(QByteArrayView item);
std::optional<QByteArray> cborBytes(QByteArrayView item);
// The elements of an array, each as its bytes.
std::optional<QList<QByteArrayView>> cborElements(QByteArrayView item);

// Typed reading of one map of a state: a missing key gives the default, a key of the wrong
// type or out of range is a problem, noted once with its place. The map is read from its CBOR
// bytes: keys are found in a sorted index of the entries and a value is decoded only when asked
// for, so an item costs no tree of values and no text for each of its keys.
class CborFields
{
public:
    CborFields(const QCborValue &value, QString where, StateProblem &problem);
    // One whole data item as cborItemEnd cut it (so its inner heads are whole), expected to be
    // a map; its bytes are shared, not copied (QByteArray::fromRawData works).
    static CborFields ofItem(const QByteArray &item, QString where, StateProblem &problem);

    bool has(QLatin1StringView key) const { return find(key).has_value(); }
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
    // The value under key as it stands, undefined when there is none.
    QCborValue value(QLatin1StringView key) const;
    // The bytes of the value under key, for a reader of its own (cborElements and the like);
    // none when there is none.
    std::optional<QByteArrayView> raw(QLatin1StringView key) const { return find(key); }
    // The whole map, for walking its entries.
    QCborMap all() const;
    QString where() const { return m_key.isEmpty() ? m_where : m_where + QLatin1Char('/') + m_key; }
    StateProblem &problem() const { return m_problem; }
    // Notes a problem at this map.
    void refuse(const QString &what) const { m_problem.note(where(), what); }

private:
    struct Entry
    {
        QByteArrayView key; // the key's UTF-8 bytes
        QByteArrayView value; // the whole data item
    };
    // A map under key in another: its place is spelt out only for a problem.
    CborFields(QByteArray data, QByteArrayView map, QString where, QLatin1StringView key, StateProblem &problem);
    void index();
    // The value's bytes under key (the first of equal keys); none when absent or undefined.
    std::optional<QByteArrayView> find(QLatin1StringView key) const;
    // The value's bytes when it has the major type, else refused as not being what.
    std::optional<QByteArrayView> typed(QLatin1StringView key, int major, const char *what) const;

    QByteArray m_data;
    QByteArrayView m_map;
    std::vector<Entry> m_entries; // sorted by key: length, then bytes
    QString m_where;
    QLatin1StringView m_key;
    StateProblem &m_problem;
};

} // namespace orv
