#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

namespace orv {

// The modal sheet over the window while a save runs: which pass is going and how far it is.
// A widget rather than a dialog: it closes when the run ends, never by a key or a click.
class SaveProgressSheet : public QWidget
{
    Q_OBJECT
public:
    explicit SaveProgressSheet(QWidget *window);

    // "workPanelPreSave", "workPanelSave", "workPanelSyncXMP", "workPanelWaitingForOtherSave".
    void showStatus(const QString &statusKey);
    void setMaximum(int maximum);
    void setValue(int value);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QLabel *m_status;
    QProgressBar *m_bar;
};

} // namespace orv
