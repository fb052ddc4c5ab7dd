#pragma once

#include <QMutex>
#include <QString>

namespace orv {

class Preferences;

// What the error log window shows: the errors of the last action, or the whole log file.
struct ErrorLogView
{
    bool isLastActionSelectable = false;
    int errorLogType = 0; // 0 the last action, 1 the log file
    QString text;
};

// The errors of the last action, and the log file that keeps the errors of all runs for the user
// to read later. The file is plain UTF-8 text that only grows by what the runs append, until the
// user empties it; appends are safe from any thread.
class LogController
{
public:
    LogController(Preferences &prefs, QString logFilePath);

    // errorLog.txt in the application data folder.
    static QString defaultLogFilePath();

    // Appends text exactly as given, creating the file and its folder when missing. Write
    // failures are ignored: the log must never stop a run.
    void updateLogOnDiskWithErrorLog(const QString &text);

    void setCurentError(const QString &text);
    QString currentError() const;

    // Without errors of the last action only the log file can be shown, and errorLogType
    // turns to it.
    ErrorLogView updateTextView();
    ErrorLogView toggleViewType(int errorLogType);

    // Empties an existing log file; the file itself stays.
    void deleteLog();

private:
    QString logText() const;

    Preferences &m_prefs;
    const QString m_logFilePath;
    mutable QMutex m_mutex;
    QString m_currentError;
};

} // namespace orv
