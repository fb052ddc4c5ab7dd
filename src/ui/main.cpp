#include "ui/MainWindow.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("orvelle"));
    QApplication::setApplicationDisplayName(QStringLiteral("Orvelle"));
    QApplication::setApplicationVersion(QStringLiteral(ORV_VERSION));
    orv::MainWindow window;
    window.show();
    return app.exec();
}
