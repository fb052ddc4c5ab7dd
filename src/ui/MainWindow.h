#pragma once

#include <QMainWindow>

namespace orv {

class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget *parent = nullptr);

private:
    void buildMenus();
    void showAbout();
};

} // namespace orv
