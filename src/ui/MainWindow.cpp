#include "ui/MainWindow.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>

namespace orv {

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent)
{
    setWindowTitle(tr("Orvelle"));
    resize(1100, 700);
    auto *placeholder = new QLabel(tr("Open a folder of photos and movies to begin."), this);
    placeholder->setAlignment(Qt::AlignCenter);
    setCentralWidget(placeholder);
    buildMenus();
}

void MainWindow::buildMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&File"));
    QAction *open = file->addAction(tr("Open Folder…"));
    open->setShortcut(QKeySequence::Open);
    connect(open, &QAction::triggered, this, [this] {
        QFileDialog::getExistingDirectory(this, tr("Open Folder"));
    });
    file->addSeparator();
    QAction *quit = file->addAction(tr("Quit"));
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, qApp, &QApplication::quit);

    QMenu *help = menuBar()->addMenu(tr("&Help"));
    connect(help->addAction(tr("About Orvelle")), &QAction::triggered, this, &MainWindow::showAbout);
}

void MainWindow::showAbout()
{
    QMessageBox::about(this, tr("About Orvelle"),
                       tr("<b>Orvelle %1</b><p>Puts the dates, time zones, places and names of "
                          "your photos and movies in order.</p>")
                           .arg(QStringLiteral(ORV_VERSION)));
}

} // namespace orv
