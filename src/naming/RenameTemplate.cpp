#include "naming/RenameTemplate.h"

#include <QCborValue>
#include <QVariantList>

#include <algorithm>
#include <array>

namespace orv {

namespace {

const QString kindKey = QStringLiteral("kind");
const QString textIdKey = QStringLiteral("textId");
const QString stringPartsKey = QStringLiteral("stringParts");
const QString optionsKey = QStringLiteral("options");
const QString textKind = QStringLiteral("text");
const QString graphicKind = QStringLiteral("graphic");

constexpr int firstElement = 1;
constexpr int lastElement = int(NameElement::Camera);

// The words of the plain-text form, with the option each sets.
struct Word
{
    const char *name;
    NameElement element;
    const QString *option;
    int value;
};

const std::array<Word, 13> &words()
{
    static const std::array<Word, 13> all = {{
        {"year", NameElement::Year, &RenameTemplate::yearOption, 1},
        {"year2", NameElement::Year, &RenameTemplate::yearOption, 0},
        {"month", NameElement::Month, &RenameTemplate::monthOption, 1},
        {"month1", NameElement::Month, &RenameTemplate::monthOption, 0},
        {"day", NameElement::Day, nullptr, 0},
        {"hour", NameElement::Hour, nullptr, 0},
        {"minute", NameElement::Minute, nullptr, 0},
        {"second", NameElement::Second, nullptr, 0},
        {"counter", NameElement::Counter, &RenameTemplate::counterOption, 0},
        {"folder", NameElement::FolderName, nullptr, 0},
        {"text", NameElement::AdditionalText, nullptr, 0},
        {"name", NameElement::OldName, nullptr, 0},
        {"camera", NameElement::Camera, nullptr, 0},
    }};
    return all;
}

QVariantList partsToList(const QList<TemplatePart> &parts)
{
    QVariantList list;
    for (const TemplatePart &part : parts)
        list.append(QVariantMap{{kindKey, part.kind == TemplatePart::Kind::Text ? textKind : graphicKind},
                                {textIdKey, part.textId}});
    return list;
}

QList<TemplatePart> partsFromList(const QVariantList &list)
{
    QList<TemplatePart> parts;
    for (const QVariant &value : list) {
        const QVariantMap part = value.toMap();
        parts.append({part.value(kindKey).toString() == graphicKind ? TemplatePart::Kind::Graphic
                                                                    : TemplatePart::Kind::Text,
                      part.value(textIdKey).toString()});
    }
    return parts;
}

} // namespace

TemplatePart TemplatePart::graphic(NameElement element)
{
    return {Kind::Graphic, RenameTemplate::identifier(element)};
}

std::optional<NameElement> TemplatePart::element() const
{
    if (kind != Kind::Graphic)
        return std::nullopt;
    // The number is what is left once the extension is gone.
    bool ok = false;
    const int number = textId.section(QLatin1Char('.'), 0, 0).toInt(&ok);
    if (!ok || number < firstElement || number > lastElement)
        return std::nullopt;
    return NameElement(number);
}

QString RenameTemplate::identifier(NameElement element)
{
    return QStringLiteral("%1.tif").arg(int(element));
}

QVariantMap RenameTemplate::toDictionary() const
{
    QVariantMap optionMap;
    for (auto it = options.cbegin(); it != options.cend(); ++it)
        optionMap.insert(it.key(), it.value());
    return {{stringPartsKey, partsToList(stringParts)}, {optionsKey, optionMap}};
}

RenameTemplate RenameTemplate::fromDictionary(const QVariantMap &dictionary)
{
    RenameTemplate result;
    result.stringParts = partsFromList(dictionary.value(stringPartsKey).toList());
    const QVariantMap optionMap = dictionary.value(optionsKey).toMap();
    for (auto it = optionMap.cbegin(); it != optionMap.cend(); ++it)
        result.options.insert(it.key(), it.value().toInt());
    return result;
}

QByteArray RenameTemplate::partsToPasteboard(const QList<TemplatePart> &parts)
{
    return QCborValue::fromVariant(partsToList(parts)).toCbor();
}

QList<TemplatePart> RenameTemplate::partsFromPasteboard(const QByteArray &data)
{
    return partsFromList(QCborValue::fromCbor(data).toVariant().toList());
}

QList<RenameTemplate> RenameTemplate::listFromArchive(const QCborValue &archive)
{
    QList<RenameTemplate> templates;
    for (const QVariant &dictionary : archive.toVariant().toList())
        templates.append(fromDictionary(dictionary.toMap()));
    return templates;
}

ParsedTemplate RenameTemplate::fromPlainText(const QString &text)
{
    RenameTemplate result;
    QString literal;
    const auto flushLiteral = [&] {
        if (!literal.isEmpty())
            result.stringParts.append(TemplatePart::text(literal));
        literal.clear();
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if ((c == QLatin1Char('{') || c == QLatin1Char('}')) && i + 1 < text.size() && text[i + 1] == c) {
            literal += c;
            ++i;
            continue;
        }
        if (c == QLatin1Char('}'))
            return {std::nullopt, QStringLiteral("a '}' without its '{' at character %1 (write '}}' for a brace)").arg(i + 1)};
        if (c != QLatin1Char('{')) {
            literal += c;
            continue;
        }
        const qsizetype end = text.indexOf(QLatin1Char('}'), i);
        if (end < 0)
            return {std::nullopt, QStringLiteral("a '{' without its '}' at character %1").arg(i + 1)};
        const QString token = text.mid(i + 1, end - i - 1);
        const QString name = token.section(QLatin1Char(':'), 0, 0);
        const QString argument = token.section(QLatin1Char(':'), 1);
        const auto word = std::find_if(words().begin(), words().end(),
                                       [&](const Word &w) { return name == QLatin1String(w.name); });
        if (word == words().end())
            return {std::nullopt, QStringLiteral("{%1} is no element; the elements are {year} {year2} {month} "
                                                 "{month1} {day} {hour} {minute} {second} {counter} {counter:N} "
                                                 "{folder} {text} {name} {camera}")
                                      .arg(token)};
        int value = word->value;
        if (word->element == NameElement::Counter && token.contains(QLatin1Char(':'))) {
            bool ok = false;
            const int digits = argument.toInt(&ok);
            if (!ok || digits < 1 || digits > 9)
                return {std::nullopt, QStringLiteral("{%1}: the counter takes 1 to 9 digits").arg(token)};
            value = digits - 1;
        } else if (!argument.isEmpty() || token.contains(QLatin1Char(':'))) {
            return {std::nullopt, QStringLiteral("{%1}: only the counter takes a number").arg(token)};
        }
        const int limit = word->element == NameElement::AdditionalText ? maxAdditionalTexts : 1;
        if (result.uses(word->element) >= limit)
            return {std::nullopt, limit == 1 ? QStringLiteral("{%1} may appear only once").arg(name)
                                             : QStringLiteral("{text} may appear at most three times")};
        flushLiteral();
        result.stringParts.append(TemplatePart::graphic(word->element));
        if (word->option)
            result.options[*word->option] = value;
        i = end;
    }
    flushLiteral();
    if (result.stringParts.isEmpty())
        return {std::nullopt, QStringLiteral("the template is empty")};
    return {result, {}};
}

QString RenameTemplate::plainText() const
{
    QString text;
    for (const TemplatePart &part : stringParts) {
        const std::optional<NameElement> element = part.element();
        if (!element) {
            if (part.kind == TemplatePart::Kind::Text)
                text += QString(part.textId).replace(QLatin1Char('{'), QStringLiteral("{{")).replace(QLatin1Char('}'), QStringLiteral("}}"));
            continue;
        }
        if (*element == NameElement::Counter) {
            const int digits = option(counterOption) + 1;
            text += digits == 1 ? QStringLiteral("{counter}") : QStringLiteral("{counter:%1}").arg(digits);
            continue;
        }
        const auto word = std::find_if(words().begin(), words().end(), [&](const Word &w) {
            return w.element == *element && (!w.option || (option(*w.option) == 0) == (w.value == 0));
        });
        text += QLatin1Char('{') + QLatin1String(word->name) + QLatin1Char('}');
    }
    return text;
}

int RenameTemplate::uses(NameElement element) const
{
    return int(std::count_if(stringParts.begin(), stringParts.end(),
                             [element](const TemplatePart &part) { return part.element() == element; }));
}

QList<NameElement> RenameTemplate::availableElements() const
{
    QList<NameElement> available;
    for (const int number : {1, 2, 3, 4, 5, 6, 7, 8, 10, 9, 11}) {
        const NameElement element = NameElement(number);
        if (uses(element) < (element == NameElement::AdditionalText ? maxAdditionalTexts : 1))
            available.append(element);
    }
    return available;
}

RenameTemplate::Status RenameTemplate::status() const
{
    const bool hasCounterOrName = uses(NameElement::Counter) > 0 || uses(NameElement::OldName) > 0;
    if (hasCounterOrName)
        return Status::Fine;
    for (int number = int(NameElement::Year); number <= int(NameElement::Second); ++number) {
        if (uses(NameElement(number)) > 0)
            return Status::MayCollide;
    }
    return Status::NeverVaries;
}

int RenameTemplate::currentlyUsedAddOns() const
{
    const int count = uses(NameElement::AdditionalText);
    return count == 0 ? 0 : count + 1;
}

QVariantMap RenameTemplate::availabilityFlags() const
{
    const int texts = uses(NameElement::AdditionalText);
    const bool folder = uses(NameElement::FolderName) > 0;
    const bool file = uses(NameElement::OldName) > 0;
    return {{QStringLiteral("isCounterAvailable"), uses(NameElement::Counter) > 0},
            {QStringLiteral("isAdditionalTextAvailable"), texts == 1},
            {QStringLiteral("is2AdditionalTextAvailable"), texts == 2},
            {QStringLiteral("is3AdditionalTextAvailable"), texts == 3},
            {QStringLiteral("isFolderNameAvailable"), folder},
            {QStringLiteral("isFileNameAvailable"), file},
            {QStringLiteral("isANameAvailable"), folder || file}};
}

} // namespace orv
