#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QVariantMap>

class QCborValue;

#include <optional>

namespace orv {

// The elements a name is made of, by their numbers in a template's parts ("%i.tif").
enum class NameElement : int {
    Year = 1,
    Month = 2,
    Day = 3,
    Hour = 4,
    Minute = 5,
    Second = 6,
    Counter = 7,
    FolderName = 8,
    AdditionalText = 9,
    OldName = 10,
    // The camera's maker and model, as the item shows them.
    Camera = 11,
};

// One piece of a template: literal text, or an element named by its identifier.
struct TemplatePart
{
    enum class Kind { Text, Graphic };
    Kind kind = Kind::Text;
    QString textId;

    static TemplatePart text(const QString &literal) { return {Kind::Text, literal}; }
    static TemplatePart graphic(NameElement element);
    // The element of a graphic part; nothing for text or an identifier out of range.
    std::optional<NameElement> element() const;
    bool operator==(const TemplatePart &) const = default;
};

// How a new file name is composed: literal text and elements in order, and the options of the
// year ("1.tif": 0 two digits, else four), the month ("2.tif": 0 one character, else two digits)
// and the counter ("7.tif": minimum digits minus one). Kept as the dictionaries the preferences
// and the pasteboard carry.
class RenameTemplate
{
public:
    QList<TemplatePart> stringParts;
    QMap<QString, int> options = {{yearOption, 1}, {monthOption, 1}, {counterOption, 0}};

    static inline const QString yearOption = QStringLiteral("1.tif");
    static inline const QString monthOption = QStringLiteral("2.tif");
    static inline const QString counterOption = QStringLiteral("7.tif");
    // The private type of template parts dragged between the views of the editor.
    static inline const QString pasteboardType = QStringLiteral("OvOrvelleRenameType");
    static constexpr int maxAdditionalTexts = 3;

    static QString identifier(NameElement element);
    int option(const QString &key) const { return options.value(key, 0); }

    // {"stringParts": [{"kind", "textId"}...], "options": {...}}
    QVariantMap toDictionary() const;
    static RenameTemplate fromDictionary(const QVariantMap &dictionary);
    // The parts alone, as the editor's drags carry them under pasteboardType.
    static QByteArray partsToPasteboard(const QList<TemplatePart> &parts);
    static QList<TemplatePart> partsFromPasteboard(const QByteArray &data);

    // The list of templates as the preference "renameTemplates_7" keeps it.
    static QList<RenameTemplate> listFromArchive(const QCborValue &archive);

    // The plain-text form: literal text with elements in braces, {year} {year2} {month}
    // {month1} {day} {hour} {minute} {second} {counter} {counter:N} {folder} {text} {name}
    // {camera}; "{{" and "}}" stand for braces. The problem in words when the text is no template.
    static struct ParsedTemplate fromPlainText(const QString &text);
    QString plainText() const;

    // The editor's logic.
    int uses(NameElement element) const;
    // Elements still to offer, in the order 1 to 8, 10, 9, 11: each once, the additional text
    // up to three times.
    QList<NameElement> availableElements() const;
    enum class Status {
        Fine,
        // Neither a counter nor the old name: names may collide ("templateStatusText2").
        MayCollide,
        // No date element, counter or old name: every file would get one name
        // ("templateStatusText1"); such a template cannot be saved.
        NeverVaries,
    };
    Status status() const;
    // Zero without an additional text, else its count plus one, so the next one is labelled.
    int currentlyUsedAddOns() const;
    // The sheet's availability flags: isCounterAvailable, isAdditionalTextAvailable (one),
    // is2AdditionalTextAvailable, is3AdditionalTextAvailable, isFolderNameAvailable,
    // isFileNameAvailable, isANameAvailable.
    QVariantMap availabilityFlags() const;

    bool operator==(const RenameTemplate &) const = default;
};

struct ParsedTemplate
{
    std::optional<RenameTemplate> result;
    QString problem;
};

} // namespace orv
