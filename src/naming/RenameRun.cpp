#include "naming/RenameRun.h"

#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "formats/SaveJournal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMap>

namespace orv {

namespace {

QString folded(const QString &name)
{
    return name.toCaseFolded();
}

QString nameProblem(const QString &name)
{
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return QStringLiteral("the new name is empty");
    if (name.contains(QLatin1Char('/')) || name.contains(QChar(0)))
        return QStringLiteral("the new name %1 holds a '/' or a NUL").arg(name);
    if (QFile::encodeName(name).size() > 255)
        return QStringLiteral("the new name %1 is longer than 255 bytes").arg(name);
    return {};
}

// The names in a folder now, folded, each to the name as it stands.
QHash<QString, QString> namesIn(const QString &folder)
{
    QHash<QString, QString> names;
    const QStringList entries =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : entries)
        names.insert(folded(name), name);
    return names;
}

// What stays in a folder: every name but those of the items that take part in the run.
QHash<QString, QString> stayingIn(const QString &folder, const std::vector<RenameItem> &items,
                                  const QList<std::size_t> &ofFolder)
{
    QHash<QString, QString> staying = namesIn(folder);
    for (const std::size_t i : ofFolder) {
        if (items[i].problem.isEmpty()) {
            for (const QString &name : items[i].from)
                staying.remove(folded(name));
        }
    }
    return staying;
}

QMap<QString, QList<std::size_t>> byFolder(const std::vector<RenameItem> &items)
{
    QMap<QString, QList<std::size_t>> folders;
    for (std::size_t i = 0; i < items.size(); ++i)
        folders[items[i].folder].append(i);
    return folders;
}

void refuse(RenameItem &item, const QString &problem, int errorId)
{
    item.problem = problem;
    item.errorIds.append(errorId);
}

// Gives the items of one folder their names: the base, or the first number that frees it for
// all of the item's files. An item whose name turns out unusable stays, and its files then stay
// too, so the names are given again until no item drops out.
void nameFolder(std::vector<RenameItem> &items, const QList<std::size_t> &ofFolder, const QStringList &bases,
                int suffixChangeCase)
{
    for (bool again = true; again;) {
        again = false;
        const QHash<QString, QString> staying = stayingIn(items[ofFolder.first()].folder, items, ofFolder);
        QSet<QString> taken;
        for (const std::size_t i : ofFolder) {
            RenameItem &item = items[i];
            item.errorIds.removeAll(RenameErrorId::NumberAdded);
            if (!item.problem.isEmpty())
                continue;
            const qsizetype oldBase = item.pic->spBaseName().size();
            const auto namesFor = [&](int number) {
                QStringList names;
                for (const QString &from : item.from) {
                    const QString extension = NameGenerator::correctedExtension(from.mid(oldBase + 1), suffixChangeCase);
                    names.append(NameGenerator::numbered(bases[qsizetype(i)], number) +
                                 (extension.isEmpty() ? QString() : QLatin1Char('.') + extension));
                }
                return names;
            };
            const auto isFree = [&](const QStringList &names) {
                return std::none_of(names.begin(), names.end(), [&](const QString &name) {
                    return staying.contains(folded(name)) || taken.contains(folded(name));
                });
            };
            int number = 0;
            while (!isFree(item.to = namesFor(number)))
                number = number == 0 ? 2 : number + 1;
            item.numberAdded = number;
            if (number)
                item.errorIds.append(RenameErrorId::NumberAdded);
            for (const QString &name : std::as_const(item.to)) {
                if (const QString problem = nameProblem(name); !problem.isEmpty()) {
                    refuse(item, problem, RenameErrorId::MoveFailed);
                    again = true;
                    break;
                }
                taken.insert(folded(name));
            }
        }
    }
}

} // namespace

QStringList RenameRun::filesOf(const MySinglePic &pic)
{
    QStringList names{pic.spName};
    for (const QString &extension : pic.spSidecarExtensions) {
        if (extension != MySinglePic::isXmpMaster)
            names.append(pic.spBaseName().toString() + QLatin1Char('.') + extension);
    }
    return names;
}

RenameRun::Counter RenameRun::Counter::fromPreferences(const Preferences &prefs)
{
    const qint64 startOption = prefs.integerForKey(QStringLiteral("renameCounterStartOption"));
    return {int(prefs.integerForKey(QStringLiteral("counterType"))),
            startOption == 2 || startOption == 3 ? int(prefs.integerForKey(QStringLiteral("renameCounterStartValue"))) : 1};
}

RenameRun::RenameRun(NameSettings settings, Counter counter) : m_settings(std::move(settings)), m_counter(counter)
{
}

QList<MySinglePic *> RenameRun::inDateOrder(QList<MySinglePic *> pics)
{
    const auto seconds = [](const MySinglePic *pic) {
        const OptionalDate date = pic->spDateTimeModified_sort();
        return date ? date->secondsSinceEpoch() : 0.0;
    };
    std::stable_sort(pics.begin(), pics.end(), [&](const MySinglePic *a, const MySinglePic *b) {
        return seconds(a) != seconds(b) ? seconds(a) < seconds(b) : a->spPath() < b->spPath();
    });
    return pics;
}

std::vector<RenameItem> RenameRun::plan(const QList<MySinglePic *> &pics) const
{
    std::vector<RenameItem> items;
    QStringList bases;
    QHash<QString, int> countInFolder;
    int countInRun = 0;
    for (MySinglePic *pic : pics) {
        RenameItem item;
        item.pic = pic;
        item.folder = QFileInfo(pic->spSingleFolder ? pic->spSingleFolder->sfFolderPath : QString()).absoluteFilePath();
        item.from = filesOf(*pic);
        // Items that cannot be renamed still advance the counter: the others keep their numbers.
        const int counted = m_counter.counterType == 1 ? countInRun++ : countInFolder[item.folder]++;
        bases.append(NameGenerator::baseName(NameValues::forPic(*pic), m_counter.startValue + counted, m_settings));
        const auto missing = std::find_if(item.from.begin(), item.from.end(), [&](const QString &name) {
            return !QFileInfo(QDir(item.folder).filePath(name)).isFile();
        });
        if (bases.last().isEmpty())
            refuse(item, QStringLiteral("has no date to name it by"), RenameErrorId::MoveFailed);
        else if (missing != item.from.end())
            refuse(item, QStringLiteral("%1 of the item does not exist").arg(*missing), RenameErrorId::ExtensionMissing);
        else if (!QFileInfo(item.folder).isWritable())
            refuse(item, QStringLiteral("its folder %1 cannot be written").arg(item.folder), RenameErrorId::MoveFailed);
        items.push_back(std::move(item));
    }
    const QMap<QString, QList<std::size_t>> folders = byFolder(items);
    for (const QList<std::size_t> &ofFolder : folders)
        nameFolder(items, ofFolder, bases, m_settings.suffixChangeCase);
    for (RenameItem &item : items) {
        if (item.problem.isEmpty() && NameGenerator::hasFrontDot(item.to.value(0)))
            item.errorIds.append(RenameErrorId::FrontDotKept);
    }
    return items;
}

QStringList RenameRun::checkPlan(const std::vector<RenameItem> &items)
{
    QStringList clashes;
    const QMap<QString, QList<std::size_t>> folders = byFolder(items);
    for (const QList<std::size_t> &ofFolder : folders) {
        const QDir folder(items[ofFolder.first()].folder);
        const QHash<QString, QString> staying = stayingIn(folder.path(), items, ofFolder);
        QHash<QString, QString> targets; // folded new name to the file that takes it
        for (const std::size_t i : ofFolder) {
            const RenameItem &item = items[i];
            if (!item.problem.isEmpty())
                continue;
            for (qsizetype j = 0; j < item.from.size() && j < item.to.size(); ++j) {
                const QString file = folder.filePath(item.from[j]);
                const QString &name = item.to[j];
                if (const QString problem = nameProblem(name); !problem.isEmpty())
                    clashes << QStringLiteral("%1: %2").arg(file, problem);
                else if (targets.contains(folded(name)))
                    clashes << QStringLiteral("%1 and %2 would both be named %3").arg(targets[folded(name)], file, name);
                else if (staying.contains(folded(name)))
                    clashes << QStringLiteral("%1 would take the name of %2, which stays")
                                   .arg(file, folder.filePath(staying[folded(name)]));
                targets.insert(folded(name), file);
            }
            if (item.from.size() != item.to.size())
                clashes << QStringLiteral("%1: the plan names %2 files for its %3").arg(folder.filePath(item.from.value(0))).arg(item.to.size()).arg(item.from.size());
        }
    }
    return clashes;
}

bool RenameRun::execute(std::vector<RenameItem> &items, const QString &journalPath, QString &problem)
{
    std::vector<PlannedRename> renames;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (!items[i].moves())
            continue;
        for (qsizetype j = 0; j < items[i].from.size(); ++j)
            renames.push_back({items[i].folder, items[i].from[j], items[i].to[j], int(i), {}, items[i].toFolder});
    }
    if (renames.empty())
        return true;
    // One run at a time across processes; the command-line tool holds it already.
    const std::shared_ptr<JournalLock> lock = JournalLock::take(journalPath, true);
    const bool intoOtherFolders = std::any_of(items.begin(), items.end(),
                                              [](const RenameItem &item) { return !item.toFolder.isEmpty(); });
    SaveJournal journal(journalPath, intoOtherFolders ? SaveJournal::RunKind::Move : SaveJournal::RunKind::Rename);
    problem = journal.open();
    if (!problem.isEmpty() || !journal.renameAll(renames)) {
        problem = journal.problem();
        return false;
    }
    journal.endRun();
    for (const PlannedRename &rename : renames) {
        RenameItem &item = items[std::size_t(rename.group)];
        if (!rename.problem.isEmpty() && item.problem.isEmpty())
            refuse(item, QStringLiteral("%1: %2").arg(rename.from, rename.problem), RenameErrorId::MoveFailed);
    }
    for (RenameItem &item : items) {
        if (!item.moves())
            continue;
        item.renamed = true;
        MySinglePic &pic = *item.pic;
        const QString oldBase = pic.spBaseName().toString();
        if (MySinglePic *dependent = pic.bundleDependentImage) {
            if (const qsizetype at = item.from.indexOf(dependent->spName); at > 0)
                dependent->spName = item.to[at];
        }
        pic.spName = item.to.first();
        const QString newBase = pic.spBaseName().toString();
        for (QString &extension : pic.spSidecarExtensions) {
            const qsizetype at = item.from.indexOf(oldBase + QLatin1Char('.') + extension);
            if (at > 0)
                extension = item.to[at].mid(newBase.size() + 1);
        }
    }
    return true;
}

} // namespace orv
