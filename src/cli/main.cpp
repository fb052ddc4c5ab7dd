#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

const char *const usage =
    "Usage: orvelle-cli [--version] [--help]\n"
    "\n"
    "Reads and corrects the dates, time zones and places of photos and movies.\n";

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvelle-cli"));
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
    QTextStream(stderr) << "orvelle-cli: unknown command '" << args.first() << "'\n" << usage;
    return 2;
}
