#pragma once

#include <QList>
#include <QStringList>
#include <QTextStream>

#include <utility>

namespace orv {

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
        QList<std::pair<QString, QString>> prefs;
        QStringList paths;
    };
    enum class Parsed { Taken, NotCommon, Failed };

    // --dry-run, --json, --pref KEY=VALUE and the paths; i moves past a value taken. On Failed
    // the reason is in error.
    static Parsed parseCommonArgument(const QStringList &arguments, qsizetype &i, Options &options, QString &error);
    // The user's preferences, with --pref shadowing them for this run; nothing is stored.
    static void applyPrefs(Preferences &prefs, const Options &options);
    // Saves every imported folder (with --dry-run only the pre-check) and prints each item. The
    // exit code: 1 when a path or an item failed, else 0.
    static int saveAndReport(PathImport &imported, Preferences &prefs, const Options &options, QTextStream &out);
};

} // namespace orv
