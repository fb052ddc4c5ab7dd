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
    "  scan [OPTIONS] PATH...  Import files and folders as the window does, and show each\n"
    "                          file's date, its source, camera and location.\n"
    "    --json                One JSON object per file, in an array.\n"
    "    --subfolders DEPTH    Also import subfolders, DEPTH levels deep (default 0).\n"
    "    --filter TEXT         Import only these extensions, e.g. \".jpg,.png\".\n"
    "    --exclude TEXT        Leave these extensions out, e.g. \".mov .mp4\".\n"
    "                          Sidecars (.xmp, .aae) always pass either filter.\n"
    "    --empty-tags CHOICE   Date of files whose date tags are empty: file-date\n"
    "                          (default), or fixed:DATE:STEP with DATE as\n"
    "                          2024-05-01T10:00:00 (local) or ...Z (UTC) and STEP in\n"
    "                          seconds added from one such file to the next.\n"
    "\n"
    "  --version               Print the version.\n"
    "  --help                  Print this help.\n"
    "\n"
    "Exit codes: 0 success, 1 some path or file could not be read (the rest is\n"
    "still imported; the problems are listed on stderr), 2 wrong usage.\n";

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
