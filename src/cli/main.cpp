#include "cli/ScanCommand.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

const char *const usage =
    "Usage: orvelle-cli COMMAND [OPTIONS] PATH...\n"
    "\n"
    "Reads and corrects the dates, time zones and places of photos and movies.\n"
    "\n"
    "Commands:\n"
    "  scan [--json] PATH...   Show each file's date, its source, camera and location.\n"
    "                          PATH is a file or a folder (its files, not recursing).\n"
    "\n"
    "  --version               Print the version.\n"
    "  --help                  Print this help.\n"
    "\n"
    "Exit codes: 0 success, 1 some path could not be read, 2 wrong usage.\n";

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvelle"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORV_VERSION));

    const QStringList args = QCoreApplication::arguments().mid(1);
    QTextStream out(stdout);
    if (args.isEmpty() || args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h")) {
        out << usage;
        return args.isEmpty() ? 2 : 0;
    }
    if (args.first() == QLatin1String("--version")) {
        out << "orvelle-cli " << ORV_VERSION << "\n";
        return 0;
    }
    if (args.first() == QLatin1String("scan"))
        return orv::ScanCommand::run(args.mid(1));
    QTextStream(stderr) << "orvelle-cli: unknown command '" << args.first() << "'\n" << usage;
    return 2;
}
