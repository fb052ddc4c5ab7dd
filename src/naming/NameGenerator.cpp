#include "naming/NameGenerator.h"

#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "core/SaveSettings.h"
#include "core/StampEdits.h"
#include "time/DateStampCodec.h"

#include <QFileInfo>

#include <array>

namespace orv {

namespace {

constexpr qsizetype dateTextLength = 19;

// A value's characters that a file name cannot hold.
QString fileNameSafe(QString text)
{
    return text.replace(QLatin1Char('/'), QLatin1Char('_')).remove(QChar(0));
}

QString monthCharacter(int month)
{
    return month >= 10 ? QString(QChar(u'A' + (month - 10))) : QString::number(month);
}

} // namespace

NameValues NameValues::forPic(const MySinglePic &pic)
{
    NameValues values;
    const OptionalDate date = pic.spDateTimeModified_sort();
    if (!date) {
        values.dateText = QStringLiteral("2001:03:25 10:55:58");
    } else if (date->isDistantPast()) {
        values.dateText = QStringLiteral("0000:00:00 00:00:00");
    } else {
        // The stamp a save would write: the folder's target zone, else the file's camera clock,
        // else the computer's zone.
        const TimeZone zone = StampEdits::targetZoneFor(pic, SaveSettings{})
                                  .value_or(StampEdits::cameraClockOf(pic).value_or(TimeZone::systemZone()));
        values.dateText = QString::fromLatin1(DateStampCodec::exifDataFromDate(*date, zone).left(dateTextLength));
    }
    if (pic.spSingleFolder)
        values.folderName = QFileInfo(pic.spSingleFolder->sfFolderPath).fileName();
    values.sourceName = pic.spBaseName().toString();
    values.extension = pic.spName.mid(values.sourceName.size() + 1);
    if (pic.pivMakeModel != QLatin1String("-"))
        values.camera = fileNameSafe(pic.pivMakeModel);
    return values;
}

NameSettings NameSettings::fromPreferences(const Preferences &prefs)
{
    NameSettings settings;
    settings.additionalTexts = {prefs.stringForKey(QStringLiteral("additionalText")),
                                prefs.stringForKey(QStringLiteral("additionalText2")),
                                prefs.stringForKey(QStringLiteral("additionalText3"))};
    settings.frontDotHandlingMode = int(prefs.integerForKey(QStringLiteral("frontDotHandlingMode")));
    settings.suffixChangeCase = int(prefs.integerForKey(QStringLiteral("suffixChangeCase")));
    return settings;
}

QString NameGenerator::baseName(const NameValues &values, int counter, const NameSettings &settings)
{
    if (values.dateText.size() < dateTextLength)
        return {};
    const RenameTemplate &tmpl = settings.renameTemplate;
    const QString &date = values.dateText;
    // The values by element, the additional texts taken in the order they appear.
    const std::array<QString, 11> byElement = {
        tmpl.option(RenameTemplate::yearOption) == 0 ? date.mid(2, 2) : date.left(4),
        tmpl.option(RenameTemplate::monthOption) == 0 ? monthCharacter(date.mid(5, 2).toInt()) : date.mid(5, 2),
        date.mid(8, 2),
        date.mid(11, 2),
        date.mid(14, 2),
        date.mid(17, 2),
        QStringLiteral("%1").arg(counter, tmpl.option(RenameTemplate::counterOption) + 1, 10, QLatin1Char('0')),
        fileNameSafe(TextModifications::modifiedStringFromString(values.folderName, settings.folderModifications)),
        QString(), // additional texts, below
        TextModifications::modifiedStringFromString(values.sourceName, settings.fileModifications),
        values.camera,
    };
    QString name;
    int additionalTextsUsed = 0;
    for (const TemplatePart &part : tmpl.stringParts) {
        const std::optional<NameElement> element = part.element();
        if (part.kind == TemplatePart::Kind::Text)
            name += part.textId;
        else if (element == NameElement::AdditionalText)
            name += fileNameSafe(settings.additionalTexts.value(additionalTextsUsed++));
        else if (element)
            name += byElement[std::size_t(int(*element) - 1)];
    }
    if (settings.frontDotHandlingMode == 1) {
        while (name.size() >= 3 && hasFrontDot(name))
            name.remove(0, 1);
    }
    return name.isEmpty() ? QStringLiteral("_") : name;
}

QString NameGenerator::correctedExtension(const QString &extension, int suffixChangeCase)
{
    switch (suffixChangeCase) {
    case 1:
        return extension.toUpper();
    case 2:
        return extension.toLower();
    default:
        return extension;
    }
}

QString NameGenerator::numbered(const QString &base, int number)
{
    return number < 2 ? base : QStringLiteral("%1 %2").arg(base).arg(number);
}

} // namespace orv
