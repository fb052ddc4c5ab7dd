#include "naming/TextModifications.h"

#include <QTextBoundaryFinder>

#include <optional>
#include <vector>

namespace orv {

namespace {

int intSetting(const TextModRow &row, const char *key)
{
    return row.defaults.value(QLatin1String(key)).toInt();
}

QString textSetting(const TextModRow &row, const char *key)
{
    return row.defaults.value(QLatin1String(key)).toString();
}

// Where each character a reader sees begins, and the text's end.
std::vector<qsizetype> characterBounds(const QString &text)
{
    std::vector<qsizetype> bounds;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype at = 0; at >= 0; at = finder.toNextBoundary())
        bounds.push_back(at);
    return bounds;
}

// The index `steps` characters in from the left or the right; nothing for no step or a walk
// that reaches the far end.
std::optional<qsizetype> indexForSteps(const QString &text, int steps, bool fromRight)
{
    const std::vector<qsizetype> bounds = characterBounds(text);
    const qsizetype characters = qsizetype(bounds.size()) - 1;
    if (steps <= 0 || characters < 2 || steps >= characters)
        return std::nullopt;
    return bounds[std::size_t(fromRight ? characters - steps : steps)];
}

QString charCount(const QString &text, const TextModRow &row)
{
    const bool fromRight = intSetting(row, "direction") == 1;
    const std::optional<qsizetype> at = indexForSteps(text, intSetting(row, "value"), fromRight);
    if (!at)
        return text;
    const bool keep = intSetting(row, "type") == 0;
    return keep == fromRight ? text.mid(*at) : text.left(*at);
}

// Where the n-th occurrence begins, counted from the left or the right.
std::optional<qsizetype> occurrence(const QString &text, const QString &needle, int n, bool fromRight)
{
    if (needle.isEmpty() || n < 1)
        return std::nullopt;
    qsizetype at = fromRight ? text.size() : -needle.size();
    for (int found = 0; found < n; ++found) {
        at = fromRight ? (at == 0 ? -1 : text.lastIndexOf(needle, at - 1))
                       : text.indexOf(needle, at + needle.size());
        if (at < 0)
            return std::nullopt;
    }
    return at;
}

QString upToString(const QString &text, const TextModRow &row)
{
    const QString needle = textSetting(row, "value2");
    const std::optional<qsizetype> at =
        occurrence(text, needle, intSetting(row, "value"), intSetting(row, "direction") == 1);
    if (!at)
        return text;
    return intSetting(row, "type") == 0 ? text.left(*at) : text.mid(*at + needle.size());
}

QString replaceWith(QString text, const TextModRow &row)
{
    const QString from = textSetting(row, "value");
    const QString to = textSetting(row, "value2");
    const int limit = intSetting(row, "value3");
    if (from.isEmpty())
        return text;
    if (limit <= 0)
        return text.replace(from, to);
    const bool fromRight = intSetting(row, "direction") == 1;
    // From the right, each replacement leaves the positions to its left as they were; from the
    // left, the search goes on after the text put in.
    qsizetype at = fromRight ? text.size() : 0;
    for (int done = 0; done < limit; ++done) {
        at = fromRight ? (at < from.size() ? -1 : text.lastIndexOf(from, at - from.size())) : text.indexOf(from, at);
        if (at < 0)
            break;
        text.replace(at, from.size(), to);
        if (!fromRight)
            at += to.size();
    }
    return text;
}

QString capitalized(const QString &text)
{
    QString result = text;
    bool wordStart = true;
    for (QChar &c : result) {
        c = wordStart ? c.toUpper() : c.toLower();
        wordStart = !c.isLetterOrNumber();
    }
    return result;
}

QString changeCase(const QString &text, const TextModRow &row)
{
    const auto changed = [&](const QString &part) {
        switch (intSetting(row, "value")) {
        case 1:
            return part.toUpper();
        case 2:
            return part.toLower();
        default:
            return capitalized(part);
        }
    };
    const int position = intSetting(row, "position");
    if (position == 0)
        return changed(text);
    const bool fromRight = intSetting(row, "direction") == 1;
    const std::optional<qsizetype> at = indexForSteps(text, position, fromRight);
    if (!at)
        return text;
    return fromRight ? text.left(*at) + changed(text.mid(*at)) : changed(text.left(*at)) + text.mid(*at);
}

TextModRow row(const char *id, QVariantMap settings)
{
    settings.insert(QStringLiteral("isEnabled"), false);
    return {QLatin1String(id), settings};
}

} // namespace

TextModRow TextModRow::fromDictionary(const QVariantMap &row)
{
    return {row.value(QStringLiteral("id")).toString(), row.value(QStringLiteral("defaults")).toMap()};
}

QList<TextModRow> TextModifications::defaultSource()
{
    return {row("CharCount", {{QStringLiteral("direction"), 0}, {QStringLiteral("type"), 0}, {QStringLiteral("value"), 1}}),
            row("UpToString", {{QStringLiteral("direction"), 0},
                               {QStringLiteral("type"), 0},
                               {QStringLiteral("value"), 1},
                               {QStringLiteral("value2"), QString()}}),
            row("ReplaceWith", {{QStringLiteral("direction"), 0},
                                {QStringLiteral("value"), QString()},
                                {QStringLiteral("value2"), QString()},
                                {QStringLiteral("value3"), 0}}),
            row("ChangeCase", {{QStringLiteral("value"), 0}})};
}

QString TextModifications::modifiedStringFromString(const QString &text, const QList<TextModRow> &rows)
{
    QString result = text;
    for (const TextModRow &row : rows)
        result = modifiedStringFromString(result, row);
    return result;
}

QString TextModifications::modifiedStringFromString(const QString &text, const TextModRow &row)
{
    if (text.isEmpty() || !row.isEnabled())
        return text;
    if (row.id == QLatin1String("CharCount"))
        return charCount(text, row);
    if (row.id == QLatin1String("UpToString"))
        return upToString(text, row);
    if (row.id == QLatin1String("ReplaceWith"))
        return replaceWith(text, row);
    if (row.id == QLatin1String("ChangeCase"))
        return changeCase(text, row);
    return text;
}

} // namespace orv
