#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <algorithm>
#include <array>
#include <cstring>

namespace orv {

// A value's bytes of a fixed-length field (a date stamp, a time offset, a GPS time), held inline
// so that an item's records take no heap block each. Capacity is the field's length; the readers
// and writers never hand in more, and a longer input would be a defect (asserted; cut).
template <qsizetype Capacity>
class InlineBytes
{
    static_assert(Capacity > 0 && Capacity < 256);

public:
    InlineBytes() = default;
    InlineBytes(const QByteArray &bytes) { assign(bytes.constData(), bytes.size()); }
    InlineBytes(const char *text) { assign(text, qsizetype(std::strlen(text))); }

    qsizetype size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }
    const char *data() const { return m_bytes.data(); }
    const char *begin() const { return m_bytes.data(); }
    const char *end() const { return m_bytes.data() + m_size; }

    QByteArray toByteArray() const { return QByteArray(data(), m_size); }
    operator QByteArray() const { return toByteArray(); }
    QByteArray left(qsizetype n) const { return QByteArray(data(), std::clamp<qsizetype>(n, 0, m_size)); }
    QByteArray chopped(qsizetype n) const { return left(m_size - n); }

    friend bool operator==(const InlineBytes &a, const InlineBytes &b)
    {
        return a.m_size == b.m_size && std::memcmp(a.data(), b.data(), size_t(a.m_size)) == 0;
    }
    friend bool operator==(const InlineBytes &a, const QByteArray &b)
    {
        return a.m_size == b.size() && std::memcmp(a.data(), b.constData(), size_t(a.m_size)) == 0;
    }

private:
    void assign(const char *bytes, qsizetype size)
    {
        Q_ASSERT(size <= Capacity);
        m_size = quint8(std::min(size, Capacity));
        std::memcpy(m_bytes.data(), bytes, size_t(m_size));
    }

    std::array<char, Capacity> m_bytes{};
    quint8 m_size = 0;
};

} // namespace orv
