#pragma once

// Lets GoogleTest print Qt strings, byte arrays and sizes as text in failure messages instead of
// dumping their bytes. Include it in tests that compare Qt values.

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QStringList>
#include <ostream>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList &list, std::ostream *out)
{
    *out << '{';
    for (qsizetype i = 0; i < list.size(); ++i)
        *out << (i ? ", \"" : "\"") << list[i].toStdString() << '"';
    *out << '}';
}

inline void PrintTo(const QSize &size, std::ostream *out)
{
    *out << size.width() << 'x' << size.height();
}

// Printable bytes as they are, the rest as \xNN.
inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"';
    for (const char c : bytes) {
        if (c >= 0x20 && c < 0x7F)
            *out << c;
        else
            *out << "\\x" << QByteArray(1, c).toHex().constData();
    }
    *out << '"';
}
