#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace orv::test {

// Intel is little-endian ("II"), Motorola big-endian ("MM").
enum class ByteOrder { Intel, Motorola };

// Appends integers in one byte order; every container the builders write is made with it.
class ByteWriter
{
public:
    explicit ByteWriter(ByteOrder order) : m_order(order) {}

    void u8(quint8 value) { m_data.append(char(value)); }
    void u16(quint16 value) { appendInteger(value, 2); }
    void u24(quint32 value) { appendInteger(value, 3); }
    void u32(quint32 value) { appendInteger(value, 4); }
    void bytes(QByteArrayView data) { m_data.append(data); }
    void zeros(qsizetype count) { m_data.append(count, '\0'); }
    // TIFF values and RIFF chunks start on even offsets.
    void padToEven()
    {
        if (m_data.size() % 2)
            u8(0);
    }

    ByteOrder order() const { return m_order; }
    quint32 size() const { return quint32(m_data.size()); }
    const QByteArray &data() const { return m_data; }

private:
    void appendInteger(quint32 value, int width)
    {
        for (int i = 0; i < width; ++i) {
            const int shift = m_order == ByteOrder::Intel ? 8 * i : 8 * (width - 1 - i);
            u8(quint8(value >> shift));
        }
    }

    ByteOrder m_order;
    QByteArray m_data;
};

} // namespace orv::test
