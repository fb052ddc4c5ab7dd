#pragma once

#include <QDialog>

namespace orv {

// The one alert at the end of a save that hit problems: every kind with the files it left
// unsaved, in the words the error log keeps. The rest was saved.
class SaveErrorsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit SaveErrorsDialog(const QString &report, QWidget *parent = nullptr);

    const QString &report() const { return m_report; }

Q_SIGNALS:
    // The user asked for the whole error log.
    void showLogRequested();

private:
    QString m_report;
};

} // namespace orv
