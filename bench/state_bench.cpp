// Keeping and restoring a working set against importing it afresh; see state_bench.sh.
//   orvelle-state-bench import FOLDER          the window's import of the folder
//   orvelle-state-bench write FOLDER STATE     import, one pending change per item, keep it
//   orvelle-state-bench restore STATE          read the kept state and check its files
// Each prints "<what> <seconds> s, <resident KB> KB" (and the state's size for write).

#include "app/AppController.h"
#include "core/Preferences.h"
#include "folders/DropEntry.h"
#include "folders/ImportQuestions.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "states/SavedFolders.h"
#include "states/StateFiles.h"
#include "states/StateRestore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTextStream>

using namespace orv;

namespace {

qint64 residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    return -1;
}

void report(const char *what, const QElapsedTimer &timer, const QString &extra = {})
{
    QTextStream(stdout) << what << " " << QString::number(double(timer.nsecsElapsed()) / 1e9, 'f', 3) << " s, "
                        << residentKilobytes() << " KB" << extra << "\n";
}

void importFolder(AppController &controller, const QString &folder)
{
    MyDroppedFolders &driver = controller.theDataSource();
    QEventLoop loop;
    QObject::connect(&driver, &MyDroppedFolders::importEnded, &loop, &QEventLoop::quit);
    driver.processDroppedFolders({*DropEntry::pathAndBookmarkFromAccessable(folder)}, nullptr, 0, KeyStatesAtImport{});
    if (driver.isImportInProgress())
        loop.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.size() < 2)
        return 2;
    Preferences prefs{QString()};
    ImportOptions options;
    options.withEmptyExifFixDate = ImportOptions::UseFileDate;
    FixedImportAnswers answers(options);
    AppController controller(prefs, answers, QString());
    QElapsedTimer timer;
    timer.start();
    if (args.first() == QLatin1String("import")) {
        importFolder(controller, args.at(1));
        report("import", timer);
    } else if (args.first() == QLatin1String("write") && args.size() == 3) {
        importFolder(controller, args.at(1));
        const QList<MySingleFolder *> folders = controller.theDataSource().droppedFolders();
        controller.dateChanges().changeEditMode(folders, MySingleFolder::EditSeparately);
        controller.dateChanges().dragChangedSinglePicModeDate(folders.first()->sfPicDetails_fullArray, 3600);
        timer.restart();
        const QByteArray state = SavedFolders::write(folders);
        if (const QString problem = StateFiles::writeDurably(args.at(2), state); !problem.isEmpty()) {
            QTextStream(stderr) << problem << "\n";
            return 1;
        }
        report("write", timer,
               QStringLiteral(", %1 bytes, %2 bytes per item")
                   .arg(state.size())
                   .arg(state.size() / std::max<qsizetype>(1, folders.first()->count())));
    } else if (args.first() == QLatin1String("restore")) {
        StateRestore::Restored restored = StateRestore::fromFile(args.at(1));
        if (!restored.read.problem.isEmpty()) {
            QTextStream(stderr) << restored.read.problem << "\n";
            return 1;
        }
        controller.theDataSource().adoptRestoredFolders(std::move(restored.read.folders));
        report("restore", timer, QStringLiteral(", %1 findings").arg(restored.report.lines().size()));
    } else {
        return 2;
    }
    return 0;
}
