#pragma once

#include <QList>
#include <QString>
#include <QVariantMap>

namespace orv {

// One transformation of a folder or file name on its way into a new name. "id" is its kind, the
// settings say how:
//   "CharCount"   keep ("type" 0) or remove (1) "value" characters from the left ("direction" 0)
//                 or the right (1);
//   "UpToString"  at the "value"-th occurrence of "value2", counted from the left ("direction" 0)
//                 or the right (1), keep what stands before it ("type" 0) or after it (1);
//   "ReplaceWith" "value" becomes "value2": every occurrence ("value3" 0) or the first "value3"
//                 counted from the left ("direction" 0) or the right (1);
//   "ChangeCase"  upper case ("value" 1), lower case (2), else each word capitalised: on the
//                 whole text ("position" 0) or on its first ("direction" 0) or last (1)
//                 "position" characters.
// Characters are counted as a reader sees them: an accent with its letter, an emoji sequence, are
// one. A count that would reach the whole text leaves it as it is, so no row empties a name.
struct TextModRow
{
    QString id;
    QVariantMap defaults; // the settings, "isEnabled" among them

    bool isEnabled() const { return defaults.value(QStringLiteral("isEnabled")).toBool(); }
    QVariantMap toDictionary() const { return {{QStringLiteral("id"), id}, {QStringLiteral("defaults"), defaults}}; }
    static TextModRow fromDictionary(const QVariantMap &row);
};

class TextModifications
{
public:
    // The four rows a list starts with, all disabled.
    static QList<TextModRow> defaultSource();
    // Every row in order, each on the result of the one before; an empty text stays empty.
    static QString modifiedStringFromString(const QString &text, const QList<TextModRow> &rows);
    static QString modifiedStringFromString(const QString &text, const TextModRow &row);
};

} // namespace orv
