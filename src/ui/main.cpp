#include "core/Preferences.h"
#include "formats/SaveJournal.h"
#include "ui/MainWindow.h"
#include "ui/PicTableModel.h"
#include "ui/StateSession.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QIcon>
#include <QMessageBox>
#include <QTextStream>
#include <QTimer>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("orvelle"));
    QApplication::setApplicationDisplayName(QStringLiteral("Orvelle"));
    QApplication::setApplicationVersion(QStringLiteral(ORV_VERSION));
    // The installed menu entry and icon carry this name; Wayland matches the window to them by it.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.orvelle.Orvelle"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.orvelle.Orvelle")));

    QCommandLineParser parser;
    parser.setApplicationDescription(QApplication::translate("main", "Puts the dates, time zones, places and "
                                                                     "names of photos and movies in order."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("paths"),
                                 QApplication::translate("main", "Folders or files to import at start."),
                                 QStringLiteral("[PATH...]"));
    // For the benchmark: the window's import timed from the outside, start to quit.
    QCommandLineOption importAndQuit(QStringLiteral("import-and-quit"));
    importAndQuit.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(importAndQuit);
    parser.process(app);

    // A save that a kill or a crash interrupted is finished before anything reads the files,
    // unless another process's run holds the journal still.
    const orv::SaveJournal::Outcome recovered = [] {
        const QString journal = orv::SaveJournal::defaultPath();
        const auto lock = orv::JournalLock::take(journal, false);
        return lock ? orv::SaveJournal::recover(journal) : orv::SaveJournal::Outcome{};
    }();

    orv::Preferences prefs(orv::Preferences::defaultSettingsPath());
    prefs.applyStartClamps();
    orv::MainWindow window(prefs);
    const bool quitAfterImport = parser.isSet(importAndQuit);
    // The count lets the benchmark see that the list really holds every item.
    const auto reportAndQuit = [&window] {
        QTextStream(stdout) << window.picModel().rowCount() << " items listed\n";
        QCoreApplication::quit();
    };
    if (quitAfterImport)
        QObject::connect(&window, &orv::MainWindow::importsFinished, &app, reportAndQuit, Qt::QueuedConnection);
    window.show();
    if (recovered.hadRun) {
        QString text = QApplication::translate("main", "An interrupted save was finished: %n file(s) completed.", nullptr,
                                               int(recovered.completed.size()));
        for (const auto &[path, reason] : recovered.left)
            text += QLatin1Char('\n') + QApplication::translate("main", "%1 was left as it is: %2").arg(path, reason);
        QTextStream(stderr) << "orvelle: " << text << "\n";
        QMessageBox::information(&window, QApplication::translate("main", "Interrupted save"), text);
    }

    QStringList paths;
    for (const QString &path : parser.positionalArguments()) {
        if (QFileInfo::exists(path))
            paths.append(path);
        else
            QTextStream(stderr) << "orvelle: no such file or folder: " << path << "\n";
    }
    QTimer::singleShot(0, &window, [&window, paths, quitAfterImport, reportAndQuit] {
        window.states().offerKeptState();
        window.importPaths(paths);
        // Nothing to import (no path, or none that could be read): nothing will finish either.
        if (quitAfterImport && !window.isImporting())
            reportAndQuit();
    });
    return app.exec();
}
