#include "core/FolderFacts.h"
#include "core/MySinglePic.h"
#include "formats/InPlaceWriter.h"
#include "formats/SaveJournal.h"
#include "naming/RenameRun.h"

#include <QDir>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

using namespace orv;

namespace {

using Names = QMap<QString, QString>; // name in the folder to the name the file had at first

class RenameRunTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_journal = m_dir.filePath(QStringLiteral("data/saveJournal.jsonl"));
        startFolder();
    }
    void TearDown() override { InPlaceWriter::stopDeadAfterWrites(-1); }

    // A fresh folder: each file holds the name it was born with, so that a file is known
    // wherever it went.
    void startFolder()
    {
        m_folder.sfFolderPath = m_dir.filePath(QStringLiteral("folder%1").arg(++m_folders));
        ASSERT_TRUE(QDir().mkpath(m_folder.sfFolderPath));
        m_pics.clear();
    }
    void writeFile(const QString &name)
    {
        QFile file(QDir(m_folder.sfFolderPath).filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(name.toUtf8());
    }
    MySinglePic *item(const QString &name, const QStringList &sidecars = {})
    {
        writeFile(name);
        auto pic = std::make_unique<MySinglePic>(name, &m_folder, SpTypeExifOriginal, Instant::fromUtc(2024, 5, 1, 10));
        for (const QString &extension : sidecars)
            writeFile(pic->spBaseName().toString() + QLatin1Char('.') + extension);
        pic->spSidecarExtensions = sidecars;
        m_pics.push_back(std::move(pic));
        return m_pics.back().get();
    }
    Names names() const
    {
        Names found;
        const QDir folder(m_folder.sfFolderPath);
        for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
            QFile file(folder.filePath(name));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            found.insert(name, QString::fromUtf8(file.readAll()));
        }
        return found;
    }
    static RenameRun runOf(const QString &plainText, NameSettings settings = {})
    {
        settings.renameTemplate = *RenameTemplate::fromPlainText(plainText).result;
        return RenameRun(settings, {});
    }
    std::vector<RenameItem> renamed(const RenameRun &run, const QList<MySinglePic *> &order)
    {
        std::vector<RenameItem> items = run.plan(order);
        EXPECT_EQ(RenameRun::checkPlan(items), QStringList());
        QString problem;
        EXPECT_TRUE(RenameRun::execute(items, m_journal, problem)) << problem.toStdString();
        return items;
    }

    QTemporaryDir m_dir;
    QString m_journal;
    FolderFacts m_folder;
    int m_folders = 0;
    std::vector<std::unique_ptr<MySinglePic>> m_pics;
};

} // namespace

TEST_F(RenameRunTest, SwapsChainsAndCyclesGoThroughTemporaryNames)
{
    struct Case
    {
        QStringList files;
        QStringList order;
        Names expected;
    };
    const auto jpg = [](const char *stem) { return QString::fromLatin1(stem) + QLatin1String(".jpg"); };
    const std::vector<Case> cases = {
        {{jpg("1"), jpg("2")}, {jpg("2"), jpg("1")}, {{jpg("1"), jpg("2")}, {jpg("2"), jpg("1")}}},
        {{jpg("1"), jpg("2"), jpg("x")}, {jpg("x"), jpg("1"), jpg("2")}, {{jpg("1"), jpg("x")}, {jpg("2"), jpg("1")}, {jpg("3"), jpg("2")}}},
        {{jpg("1"), jpg("2"), jpg("3")}, {jpg("3"), jpg("1"), jpg("2")}, {{jpg("1"), jpg("3")}, {jpg("2"), jpg("1")}, {jpg("3"), jpg("2")}}},
    };
    for (const Case &c : cases) {
        startFolder();
        QMap<QString, MySinglePic *> byName;
        for (const QString &file : c.files)
            byName.insert(file, item(file));
        QList<MySinglePic *> order;
        for (const QString &file : c.order)
            order.append(byName[file]);
        const std::vector<RenameItem> items = renamed(runOf(QStringLiteral("{counter}")), order);
        EXPECT_EQ(names(), c.expected) << c.order.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(items.front().pic->spName, items.front().to.first());
        EXPECT_TRUE(items.front().errorIds.isEmpty()) << "a name freed by the run is no clash";
    }
}

TEST_F(RenameRunTest, CaseOnlyRenamesAndNamesTakenByFilesThatStay)
{
    NameSettings lower;
    lower.fileModifications = {{QStringLiteral("ChangeCase"), {{QStringLiteral("isEnabled"), true}, {QStringLiteral("value"), 2}}}};
    lower.suffixChangeCase = 2;
    renamed(runOf(QStringLiteral("{name}"), lower), {item(QStringLiteral("IMG_1.JPG"))});
    EXPECT_EQ(names(), (Names{{QStringLiteral("img_1.jpg"), QStringLiteral("IMG_1.JPG")}}));

    // A file outside the run keeps its name; the item takes the next free number, and so does
    // a second item meeting the first one's name, whatever the case.
    startFolder();
    writeFile(QStringLiteral("2024.JPG"));
    const std::vector<RenameItem> items =
        renamed(runOf(QStringLiteral("{year}")), {item(QStringLiteral("a.jpg")), item(QStringLiteral("b.jpg"))});
    EXPECT_EQ(names(), (Names{{QStringLiteral("2024.JPG"), QStringLiteral("2024.JPG")},
                              {QStringLiteral("2024 2.jpg"), QStringLiteral("a.jpg")},
                              {QStringLiteral("2024 3.jpg"), QStringLiteral("b.jpg")}}));
    EXPECT_EQ(items[0].numberAdded, 2);
    EXPECT_TRUE(items[1].errorIds.contains(RenameErrorId::NumberAdded));
}

TEST_F(RenameRunTest, GroupsAndSidecarsKeepOneBaseName)
{
    MySinglePic *raw = item(QStringLiteral("IMG_1.CR2"), {QStringLiteral("JPG"), QStringLiteral("xmp")});
    MySinglePic jpeg(QStringLiteral("IMG_1.JPG"), &m_folder, SpTypeExifOriginal, Instant::fromUtc(2024, 5, 1, 10));
    raw->bundleDependentImage = &jpeg;
    jpeg.bundleMasterImage = raw;
    MySinglePic *second = item(QStringLiteral("IMG_2.CR2"), {QStringLiteral("xmp")});
    // Only the sidecar's name is taken, yet the whole item takes the number.
    writeFile(QStringLiteral("002.xmp"));
    MySinglePic *lost = item(QStringLiteral("IMG_3.CR2"), {QStringLiteral("xmp")});
    QFile::remove(QDir(m_folder.sfFolderPath).filePath(QStringLiteral("IMG_3.xmp")));

    const std::vector<RenameItem> items = renamed(runOf(QStringLiteral("{counter:3}")), {raw, second, lost});
    EXPECT_EQ(names(), (Names{{QStringLiteral("001.CR2"), QStringLiteral("IMG_1.CR2")},
                              {QStringLiteral("001.JPG"), QStringLiteral("IMG_1.JPG")},
                              {QStringLiteral("001.xmp"), QStringLiteral("IMG_1.xmp")},
                              {QStringLiteral("002 2.CR2"), QStringLiteral("IMG_2.CR2")},
                              {QStringLiteral("002 2.xmp"), QStringLiteral("IMG_2.xmp")},
                              {QStringLiteral("002.xmp"), QStringLiteral("002.xmp")},
                              {QStringLiteral("IMG_3.CR2"), QStringLiteral("IMG_3.CR2")}}));
    EXPECT_EQ(jpeg.spName, QStringLiteral("001.JPG"));
    EXPECT_EQ(second->spSidecarPaths(), QStringList{QDir(m_folder.sfFolderPath).filePath(QStringLiteral("002 2.xmp"))});
    EXPECT_TRUE(items[2].errorIds.contains(RenameErrorId::ExtensionMissing));
    EXPECT_FALSE(items[2].renamed);
}

TEST_F(RenameRunTest, CheckPlanNamesBothFilesOfEveryClash)
{
    writeFile(QStringLiteral("stays.jpg"));
    const auto planned = [&](const char *from, const QString &to) {
        writeFile(QString::fromLatin1(from));
        return RenameItem{nullptr, m_folder.sfFolderPath, {QString::fromLatin1(from)}, {to}, 0, {}, {}, false, {}};
    };
    const std::vector<RenameItem> items = {
        planned("a.jpg", QStringLiteral("same.jpg")),  planned("b.jpg", QStringLiteral("SAME.jpg")),
        planned("c.jpg", QStringLiteral("Stays.jpg")), planned("d.jpg", QString(256, QLatin1Char('n'))),
        planned("e.jpg", QStringLiteral("x/y.jpg")),   planned("f.jpg", QString()),
        planned("g.jpg", QStringLiteral("g.jpg")),
    };
    const QStringList clashes = RenameRun::checkPlan(items);
    ASSERT_EQ(clashes.size(), 5) << clashes.join(QLatin1Char('\n')).toStdString();
    const QDir folder(m_folder.sfFolderPath);
    EXPECT_EQ(clashes[0], folder.filePath(QStringLiteral("a.jpg")) + QLatin1String(" and ") +
                              folder.filePath(QStringLiteral("b.jpg")) + QLatin1String(" would both be named SAME.jpg"));
    EXPECT_EQ(clashes[1], folder.filePath(QStringLiteral("c.jpg")) + QLatin1String(" would take the name of ") +
                              folder.filePath(QStringLiteral("stays.jpg")) + QLatin1String(", which stays"));
    EXPECT_TRUE(clashes[2].contains(QLatin1String("longer than 255 bytes")));
    EXPECT_TRUE(clashes[3].contains(QLatin1String("'/'")));
    EXPECT_TRUE(clashes[4].contains(QLatin1String("empty")));
}

TEST_F(RenameRunTest, KillAfterEveryRenameLeavesEachFileOnceAndRecoveryFinishes)
{
    // Two swaps of a group with its sidecar and a single file, and one chain: eight files, two
    // passes of renames after the journal's two writes.
    const auto setUpRun = [&] {
        startFolder();
        MySinglePic *a = item(QStringLiteral("2.CR2"), {QStringLiteral("xmp")});
        MySinglePic *b = item(QStringLiteral("1.CR2"), {QStringLiteral("xmp")});
        MySinglePic *c = item(QStringLiteral("x.jpg"));
        MySinglePic *d = item(QStringLiteral("3.jpg"));
        MySinglePic *e = item(QStringLiteral("4.jpg"));
        return QList<MySinglePic *>{a, b, c, d, e};
    };
    const Names expected = {{QStringLiteral("1.CR2"), QStringLiteral("2.CR2")}, {QStringLiteral("1.xmp"), QStringLiteral("2.xmp")},
                            {QStringLiteral("2.CR2"), QStringLiteral("1.CR2")}, {QStringLiteral("2.xmp"), QStringLiteral("1.xmp")},
                            {QStringLiteral("3.jpg"), QStringLiteral("x.jpg")}, {QStringLiteral("4.jpg"), QStringLiteral("3.jpg")},
                            {QStringLiteral("5.jpg"), QStringLiteral("4.jpg")}};
    for (int writes = 0; writes <= 2 + 2 * 7 + 2; ++writes) {
        const QList<MySinglePic *> order = setUpRun();
        const Names before = names();
        std::vector<RenameItem> items = runOf(QStringLiteral("{counter}")).plan(order);
        InPlaceWriter::stopDeadAfterWrites(writes);
        QString problem;
        RenameRun::execute(items, m_journal, problem);
        InPlaceWriter::stopDeadAfterWrites(-1);
        SaveJournal::recover(m_journal);
        // Before the journal holds the plan nothing moves; after it, the run is finished.
        EXPECT_EQ(names(), writes < 2 ? before : expected) << "stopped after " << writes << " writes";
    }

    // A kill in the middle of the plan's write leaves its first records and a torn one. Nothing
    // has moved; finishing the part that was read would stop the chain at a name still taken.
    for (int kept = 1; kept <= 6; ++kept) {
        const QList<MySinglePic *> order = setUpRun();
        const Names before = names();
        std::vector<RenameItem> items = runOf(QStringLiteral("{counter}")).plan(order);
        InPlaceWriter::stopDeadAfterWrites(2);
        QString problem;
        RenameRun::execute(items, m_journal, problem);
        InPlaceWriter::stopDeadAfterWrites(-1);
        QFile journal(m_journal);
        ASSERT_TRUE(journal.open(QIODevice::ReadWrite));
        const QList<QByteArray> lines = journal.readAll().split('\n');
        ASSERT_GT(lines.size(), 1 + kept + 1);
        const QByteArray torn = lines.mid(0, 1 + kept).join('\n') + '\n' + lines[1 + kept].left(lines[1 + kept].size() / 2);
        journal.resize(0);
        journal.write(torn);
        journal.close();
        const SaveJournal::Outcome outcome = SaveJournal::recover(m_journal);
        EXPECT_TRUE(outcome.left.empty()) << kept << " records: " << outcome.left.front().second.toStdString();
        EXPECT_EQ(names(), before) << kept << " records of the plan were read";
    }
}

TEST_F(RenameRunTest, RevertPutsTheNamesBackAndASecondRevertRenamesAgain)
{
    const QList<MySinglePic *> order = {item(QStringLiteral("b.jpg")), item(QStringLiteral("1.jpg"), {QStringLiteral("xmp")})};
    const Names before = names();
    renamed(runOf(QStringLiteral("{counter}")), order);
    const Names after = names();
    ASSERT_NE(after, before);
    SaveJournal::Outcome outcome = SaveJournal::revert(m_journal);
    EXPECT_TRUE(outcome.left.empty());
    EXPECT_EQ(outcome.reverted.size(), 3);
    EXPECT_EQ(names(), before);
    SaveJournal::revert(m_journal);
    EXPECT_EQ(names(), after);

    // A file renamed by another program since is named, and stays where it is.
    SaveJournal::revert(m_journal);
    QFile::rename(QDir(m_folder.sfFolderPath).filePath(QStringLiteral("b.jpg")),
                  QDir(m_folder.sfFolderPath).filePath(QStringLiteral("other.jpg")));
    outcome = SaveJournal::revert(m_journal);
    ASSERT_EQ(outcome.left.size(), 1u);
    EXPECT_TRUE(outcome.left.front().first.endsWith(QLatin1String("/b.jpg")));
    EXPECT_EQ(names().value(QStringLiteral("other.jpg")), QStringLiteral("b.jpg"));
}

TEST_F(RenameRunTest, AJournalThatCannotBeWrittenRenamesNothing)
{
    QFile blocker(m_dir.filePath(QStringLiteral("file")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    const QList<MySinglePic *> order = {item(QStringLiteral("b.jpg")), item(QStringLiteral("a.jpg"))};
    const Names before = names();
    std::vector<RenameItem> items = runOf(QStringLiteral("{counter}")).plan(order);
    QString problem;
    EXPECT_FALSE(RenameRun::execute(items, m_dir.filePath(QStringLiteral("file/saveJournal.jsonl")), problem));
    EXPECT_TRUE(problem.contains(m_dir.filePath(QStringLiteral("file")))) << problem.toStdString();
    EXPECT_EQ(names(), before);
}
