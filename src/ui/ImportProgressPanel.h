#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace orv {

// The status bar's import display: what is being imported, how far it is, and a way to stop it.
class ImportProgressPanel : public QWidget
{
    Q_OBJECT
public:
    explicit ImportProgressPanel(QWidget *parent = nullptr);

    // A total of 0 shows a busy bar for work of unknown length.
    void showProgress(const QString &text, int done, int total);
    // Express imports cannot be stopped halfway.
    void setCancellable(bool cancellable);

Q_SIGNALS:
    void cancelRequested();

private:
    QLabel *m_text;
    QProgressBar *m_bar;
    QPushButton *m_cancel;
};

} // namespace orv
