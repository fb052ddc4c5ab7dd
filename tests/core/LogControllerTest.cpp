#include "core/LogController.h"

#include "core/Preferences.h"
#include "support/PrivateHomes.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace orv {
namespace {

class ErrorLog : public ::testing::Test
{
protected:
    void SetUp() override
    {
        test::usePrivateHomes();
        ASSERT_TRUE(m_dir.isValid());
    }

    QString logPath() const { return m_dir.filePath(QStringLiteral("support/errorLog.txt")); }

    QByteArray logBytes() const
    {
        QFile file(logPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Preferences prefs{QString()};
    QTemporaryDir m_dir;
    LogController log{prefs, logPath()};
};

TEST_F(ErrorLog, AppendsTheTextExactlyAsGivenInUtf8WithoutLimit)
{
    log.updateLogOnDiskWithErrorLog(QStringLiteral("Fehler: Äpfel.jpg"));
    EXPECT_EQ(logBytes(), QByteArray("Fehler: \xc3\x84pfel.jpg"));
    log.updateLogOnDiskWithErrorLog(QStringLiteral("\nsecond"));
    EXPECT_EQ(logBytes(), QByteArray("Fehler: \xc3\x84pfel.jpg\nsecond"));

    const qint64 sizeBefore = logBytes().size();
    const QString megabyte(1024 * 1024, QLatin1Char('e'));
    for (int i = 0; i < 3; ++i)
        log.updateLogOnDiskWithErrorLog(megabyte);
    EXPECT_EQ(QFileInfo(logPath()).size(), sizeBefore + 3 * 1024 * 1024);
}

TEST_F(ErrorLog, DeletingEmptiesAnExistingFileAndCreatesNone)
{
    log.deleteLog();
    EXPECT_FALSE(QFile::exists(logPath()));

    log.updateLogOnDiskWithErrorLog(QStringLiteral("old errors"));
    log.deleteLog();
    ASSERT_TRUE(QFile::exists(logPath()));
    EXPECT_EQ(QFileInfo(logPath()).size(), 0);
}

TEST_F(ErrorLog, AppendsFromManyThreadsStayWhole)
{
    const int threads = 4;
    const int linesPerThread = 250;
    std::vector<std::thread> writers;
    for (int t = 0; t < threads; ++t) {
        writers.emplace_back([this, t] {
            for (int i = 0; i < linesPerThread; ++i)
                log.updateLogOnDiskWithErrorLog(
                    QStringLiteral("thread %1 line %2\n").arg(t).arg(i));
        });
    }
    for (std::thread &writer : writers)
        writer.join();

    const QStringList lines = QString::fromUtf8(logBytes()).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), threads * linesPerThread);
    for (int t = 0; t < threads; ++t) {
        for (int i = 0; i < linesPerThread; ++i)
            ASSERT_TRUE(lines.contains(QStringLiteral("thread %1 line %2").arg(t).arg(i)));
    }
}

// The window's switch between the last action and the whole file.

TEST_F(ErrorLog, WithoutErrorsOfTheLastActionTheFileIsShown)
{
    EXPECT_EQ(log.updateTextView().text, QString()) << "no file yet";

    log.updateLogOnDiskWithErrorLog(QStringLiteral("from an earlier run"));
    const ErrorLogView view = log.updateTextView();
    EXPECT_FALSE(view.isLastActionSelectable);
    EXPECT_EQ(view.errorLogType, 1);
    EXPECT_EQ(view.text, QStringLiteral("from an earlier run"));
    EXPECT_EQ(prefs.integerForKey(QStringLiteral("errorLogType")), 1);
}

TEST_F(ErrorLog, TheSwitchComesBackOnlyWithAnErrorOfTheLastAction)
{
    log.updateLogOnDiskWithErrorLog(QStringLiteral("file text"));
    EXPECT_EQ(log.toggleViewType(0).errorLogType, 1);

    log.setCurentError(QStringLiteral("3 files could not be saved"));
    const ErrorLogView lastAction = log.toggleViewType(0);
    EXPECT_TRUE(lastAction.isLastActionSelectable);
    EXPECT_EQ(lastAction.errorLogType, 0);
    EXPECT_EQ(lastAction.text, QStringLiteral("3 files could not be saved"));
    EXPECT_EQ(log.toggleViewType(1).text, QStringLiteral("file text"));
}

} // namespace
} // namespace orv
