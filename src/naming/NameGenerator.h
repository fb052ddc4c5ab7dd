#pragma once

#include "naming/RenameTemplate.h"
#include "naming/TextModifications.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace orv {

class MySinglePic;
class Preferences;

// What a name is composed of for one item.
struct NameValues
{
    // "YYYY:MM:DD HH:MM:SS": the clock time of the item's new date, in the zone a save writes its
    // stamps in, so that a rename and a date change in one run agree.
    QString dateText;
    QString folderName;
    // The present name without its extension.
    QString sourceName;
    QString extension;
    QString camera;

    static NameValues forPic(const MySinglePic &pic);
};

// The choices of one run, read once at its start.
struct NameSettings
{
    RenameTemplate renameTemplate;
    QStringList additionalTexts = {QString(), QString(), QString()};
    // 1: leading dots go (while at least three characters are left); otherwise they stay and
    // the item is told.
    int frontDotHandlingMode = 0;
    // 0 the extension as it is, 1 upper case, 2 lower case.
    int suffixChangeCase = 0;
    // Applied to the folder name and the old name before they enter a name; empty: none.
    QList<TextModRow> folderModifications, fileModifications;

    // The texts and options as the preferences hold them; the template is the caller's.
    static NameSettings fromPreferences(const Preferences &prefs);
};

// Composes new file names from a template.
class NameGenerator
{
public:
    // The new base name (without extension) for these values and counter value; empty when the
    // values lack a date. An empty composition becomes "_".
    static QString baseName(const NameValues &values, int counter, const NameSettings &settings);
    // The extension in the run's case.
    static QString correctedExtension(const QString &extension, int suffixChangeCase);
    // The base with its counter on a collision: "name", then "name 2", "name 3".
    static QString numbered(const QString &base, int number);
    // The name keeps a leading dot (the file would be hidden).
    static bool hasFrontDot(const QString &name) { return name.startsWith(QLatin1Char('.')); }
};

} // namespace orv
