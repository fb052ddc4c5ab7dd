#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <string>
#include <vector>

namespace orv::CompactJson {

// A JSON object written straight into bytes, exactly as QJsonDocument's compact form writes the
// same values: members in key order, as QJsonObject keeps them; numbers in the form QJsonValue
// stores them (an integral double as an integer); strings escaped alike. A scan writes
// thousands of items a second, and a document built per item cost more than the scan itself,
// so members go into one plain byte buffer and only their order is kept aside.
//
// Keys are plain ASCII names, each inserted once.
class Object
{
public:
    Object();

    void insert(QByteArrayView key, std::nullptr_t);
    void insert(QByteArrayView key, bool value);
    void insert(QByteArrayView key, int number) { insert(key, qint64(number)); }
    void insert(QByteArrayView key, qint64 number);
    void insert(QByteArrayView key, double number);
    void insert(QByteArrayView key, const QString &text);
    // A string literal is a value's text only through insertLatin1, never a bool.
    void insert(QByteArrayView key, const char *) = delete;
    void insert(QByteArrayView key, const Object &object);
    void insert(QByteArrayView key, const std::vector<Object> &objects);
    void insert(QByteArrayView key, const QStringList &texts);
    // Text of one byte per character, as QString::fromLatin1 reads it.
    void insertLatin1(QByteArrayView key, QByteArrayView text);

    void writeTo(std::string &out) const;

private:
    // A member's value runs from its start to the next member's, or to the buffer's end.
    struct Member
    {
        qsizetype keyAt, keySize, valueAt;
    };
    // Opens a member whose value is then appended to the returned buffer.
    std::string &value(QByteArrayView key);

    std::string m_keys;
    std::string m_values;
    std::vector<Member> m_members;
};

} // namespace orv::CompactJson
