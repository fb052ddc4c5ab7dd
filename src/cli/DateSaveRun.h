#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <QTextStream>

#include <functional>
#include <utility>

namespace orv {

class MySinglePic;
class PathImport;
class Preferences;

// What the commands that change dates share: the options each of them takes, and the save of
// the items they changed through the owner, reported per item with every date slot's OLD and NEW.
class DateSaveRun
{
public:
    struct Options
    {
        bool dryRun = false;
        bool json = false;
        // Files dated by the file system alone may take their new date as added date tags
        // (shift's --add-missing-dates). Otherwise no command adds a tag: such a file gets its
        // new date as its modification date, and the report says so.
        bool addMissingDates = false;
        QList<std::pair<QString, QString>> prefs;
        QStringList paths;
    };
    // Takes the value of one of a command's own options; answers the problem, empty when taken.
    using TakeValue = std::function<QString(const QString &option, const QString &value)>;

    // A date command's whole line: its own options, each with a value (handed to `take`), then
    // --dry-run, --json, --pref KEY=VALUE and the paths. The first own option (--by, --source, --at),
    // where a command has any, and one path at least are required; `requiredValue` names its value in the message when it
    // is missing. Answers the problem for the usage message, empty when the line is good.
    static QString parseArguments(const QStringList &arguments, const QStringList &ownOptions,
                                  const QString &requiredValue, const TakeValue &take, Options &options);
    // The user's preferences, with --pref shadowing them for this run; nothing is stored.
    static void applyPrefs(Preferences &prefs, const Options &options);
    // Saves every imported folder (with --dry-run only the pre-check) and prints each item with
    // what its zone made of its stamps (the scan's daylight-saving keys and
    // storedOffsetDifference, seconds), and whether only its modification date took the new
    // date (fileDateOnly). The exit code: 1 when a path or an item failed, else 0.
    // What a command found out about an item beyond its dates: keys for its JSON entry, and a
    // line for its text entry.
    struct ItemFacts
    {
        QJsonObject json;
        QString text;
    };
    using ItemFactsMap = QHash<const MySinglePic *, ItemFacts>;
    static int saveAndReport(PathImport &imported, Preferences &prefs, const Options &options, QTextStream &out,
                             const ItemFactsMap &facts = {});

    // What a command's own change answers: an exit code that the run answers at least, whether
    // to stop before the save, and what to report of each item beside its dates.
    struct ChangeOutcome
    {
        int exitCode = 0;
        bool stop = false;
        ItemFactsMap itemFacts = {};
    };
    using Change = std::function<ChangeOutcome(PathImport &imported, Preferences &prefs, QTextStream &err)>;
    // The frame every date command shares once its line is read: the preferences with --pref,
    // the import of the paths, the command's change through the owner, then the save and report.
    static int run(const Options &options, const Change &change);
};

} // namespace orv
