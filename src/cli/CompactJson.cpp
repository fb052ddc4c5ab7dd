#include "cli/CompactJson.h"

#include <QLocale>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <cmath>

namespace orv::CompactJson {

namespace {

char hexDigit(uint value) { return char(value < 10 ? '0' + value : 'a' + value - 10); }

void appendEscape(std::string &out, char16_t unit)
{
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += hexDigit((unit >> shift) & 0xF);
}

void appendAscii(std::string &out, char16_t c)
{
    switch (c) {
    case '"': out += "\\\""; return;
    case '\\': out += "\\\\"; return;
    case '\b': out += "\\b"; return;
    case '\f': out += "\\f"; return;
    case '\n': out += "\\n"; return;
    case '\r': out += "\\r"; return;
    case '\t': out += "\\t"; return;
    default:
        if (c < 0x20)
            appendEscape(out, c);
        else
            out += char(c);
    }
}

// UTF-8 for every code point; a surrogate without its partner is no code point and is written
// as an escape.
void appendString(std::string &out, QStringView text)
{
    out += '"';
    const char16_t *at = text.utf16();
    const char16_t *const end = at + text.size();
    while (at != end) {
        const char16_t unit = *at++;
        if (unit < 0x80) {
            appendAscii(out, unit);
        } else if (QChar::isHighSurrogate(unit) && at != end && QChar::isLowSurrogate(*at)) {
            const char32_t point = QChar::surrogateToUcs4(unit, *at++);
            out += char(0xF0 | (point >> 18));
            out += char(0x80 | ((point >> 12) & 0x3F));
            out += char(0x80 | ((point >> 6) & 0x3F));
            out += char(0x80 | (point & 0x3F));
        } else if (QChar::isSurrogate(unit)) {
            appendEscape(out, unit);
        } else if (unit < 0x800) {
            out += char(0xC0 | (unit >> 6));
            out += char(0x80 | (unit & 0x3F));
        } else {
            out += char(0xE0 | (unit >> 12));
            out += char(0x80 | ((unit >> 6) & 0x3F));
            out += char(0x80 | (unit & 0x3F));
        }
    }
    out += '"';
}

} // namespace

Object::Object()
{
    m_keys.reserve(256);
    m_values.reserve(512);
    m_members.reserve(32);
}

std::string &Object::value(QByteArrayView key)
{
    m_members.push_back({qsizetype(m_keys.size()), key.size(), qsizetype(m_values.size())});
    m_keys.append(key.data(), std::size_t(key.size()));
    return m_values;
}

void Object::insert(QByteArrayView key, std::nullptr_t) { value(key) += "null"; }

void Object::insert(QByteArrayView key, bool flag) { value(key) += flag ? "true" : "false"; }

void Object::insert(QByteArrayView key, qint64 number)
{
    char digits[24];
    const auto written = std::to_chars(digits, digits + sizeof digits, number);
    value(key).append(digits, written.ptr);
}

void Object::insert(QByteArrayView key, double number)
{
    // QJsonValue keeps an integral double that a 64-bit integer holds exactly as that integer.
    constexpr double exactLimit = 9007199254740992.0; // 2^53
    if (!std::isfinite(number))
        insert(key, nullptr);
    else if (std::trunc(number) == number && std::fabs(number) <= exactLimit)
        insert(key, qint64(number));
    else
        value(key) += QByteArray::number(number, 'g', QLocale::FloatingPointShortest)
                          .toStdString();
}

void Object::insert(QByteArrayView key, const QString &text) { appendString(value(key), text); }

void Object::insert(QByteArrayView key, const Object &object) { object.writeTo(value(key)); }

void Object::insert(QByteArrayView key, const std::vector<Object> &objects)
{
    std::string &out = value(key);
    out += '[';
    for (std::size_t i = 0; i < objects.size(); ++i) {
        if (i > 0)
            out += ',';
        objects[i].writeTo(out);
    }
    out += ']';
}

void Object::insert(QByteArrayView key, const QStringList &texts)
{
    std::string &out = value(key);
    out += '[';
    for (qsizetype i = 0; i < texts.size(); ++i) {
        if (i > 0)
            out += ',';
        appendString(out, texts[i]);
    }
    out += ']';
}

void Object::insertLatin1(QByteArrayView key, QByteArrayView text)
{
    std::string &out = value(key);
    out += '"';
    for (const char c : text) {
        const uchar u = uchar(c);
        if (u < 0x80) {
            appendAscii(out, u);
        } else {
            out += char(0xC0 | (u >> 6));
            out += char(0x80 | (u & 0x3F));
        }
    }
    out += '"';
}

void Object::writeTo(std::string &out) const
{
    const auto keyOf = [this](std::size_t i) {
        return std::string_view(m_keys).substr(std::size_t(m_members[i].keyAt),
                                               std::size_t(m_members[i].keySize));
    };
    const auto valueOf = [this](std::size_t i) {
        const std::size_t at = std::size_t(m_members[i].valueAt);
        const std::size_t end =
            i + 1 < m_members.size() ? std::size_t(m_members[i + 1].valueAt) : m_values.size();
        return std::string_view(m_values).substr(at, end - at);
    };
    std::vector<std::size_t> order(m_members.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return keyOf(a) < keyOf(b); });
    out += '{';
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0)
            out += ',';
        out += '"';
        out += keyOf(order[i]);
        out += "\":";
        out += valueOf(order[i]);
    }
    out += '}';
}

} // namespace orv::CompactJson
