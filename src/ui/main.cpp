#include "app/Preferences.h"
#include "ui/MainWindow.h"
#include "ui/PicTableModel.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTextStream>
#include <QTimer>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("orvelle"));
    QApplication::setApplicationDisplayName(QStringLiteral("Orvelle"));
    QApplication::setApplicationVersion(QStringLiteral(ORV_VERSION));

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

    orv::Preferences prefs(orv::Preferences::defaultSettingsPath());
    prefs.applyStartClamps();
    orv::MainWindow window(prefs);
    if (parser.isSet(importAndQuit)) {
        // The count lets the benchmark see that the list really holds every item.
        QObject::connect(&window, &orv::MainWindow::importsFinished, &app, [&window] {
            QTextStream(stdout) << window.picModel().rowCount() << " items listed\n";
            QCoreApplication::quit();
        }, Qt::QueuedConnection);
    }
    window.show();

    const QStringList paths = parser.positionalArguments();
    if (!paths.isEmpty())
        QTimer::singleShot(0, &window, [&window, paths] { window.importPaths(paths); });
    return app.exec();
}
