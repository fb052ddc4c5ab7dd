#pragma once

#include <QDialog>

class QMenu;
class QPlainTextEdit;
class QPushButton;

namespace orv {

class LogController;
struct ErrorLogView;

// The error log: a switch between the errors of the last action and the whole log file, the
// text read-only and scrolled to its end, and a button that empties the file. Without errors of
// the last action only the file can be shown.
class ErrorLogWindow : public QDialog
{
    Q_OBJECT
public:
    ErrorLogWindow(LogController &log, QWidget *parent);

    // The window's one log window, made on first use, brought up to date and to the front.
    static ErrorLogWindow &showFor(LogController &log, QWidget *window);
    // "Error Log" in the menu.
    static void addTo(QMenu &menu, LogController &log, QWidget *window);

    void refresh();

private:
    void showView(const ErrorLogView &view);
    void deleteLog();

    LogController &m_log;
    QPushButton *m_lastAction = nullptr;
    QPushButton *m_logFile = nullptr;
    QPlainTextEdit *m_text = nullptr;
};

} // namespace orv
