#include "core/LogController.h"

#include "core/Preferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <utility>

namespace orv {
namespace {

const QString logTypeKey = QStringLiteral("errorLogType");
const int showsLastAction = 0;
const int showsLogFile = 1;

} // namespace

LogController::LogController(Preferences &prefs, QString logFilePath)
    : m_prefs(prefs), m_logFilePath(std::move(logFilePath))
{
}

QString LogController::defaultLogFilePath()
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (folder.isEmpty())
        folder = QDir::tempPath() + QLatin1String("/orvelle");
    return folder + QLatin1String("/errorLog.txt");
}

void LogController::updateLogOnDiskWithErrorLog(const QString &text)
{
    const QMutexLocker lock(&m_mutex);
    QDir().mkpath(QFileInfo(m_logFilePath).absolutePath());
    QFile file(m_logFilePath);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(text.toUtf8());
}

void LogController::setCurentError(const QString &text)
{
    const QMutexLocker lock(&m_mutex);
    m_currentError = text;
}

QString LogController::currentError() const
{
    const QMutexLocker lock(&m_mutex);
    return m_currentError;
}

QString LogController::logText() const
{
    const QMutexLocker lock(&m_mutex);
    QFile file(m_logFilePath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

ErrorLogView LogController::updateTextView()
{
    const QString lastAction = currentError();
    ErrorLogView view;
    view.isLastActionSelectable = !lastAction.isEmpty();
    if (!view.isLastActionSelectable)
        m_prefs.setInteger(logTypeKey, showsLogFile);
    view.errorLogType =
        m_prefs.integerForKey(logTypeKey) == showsLogFile ? showsLogFile : showsLastAction;
    view.text = view.errorLogType == showsLogFile ? logText() : lastAction;
    return view;
}

ErrorLogView LogController::toggleViewType(int errorLogType)
{
    m_prefs.setInteger(logTypeKey, errorLogType);
    return updateTextView();
}

void LogController::deleteLog()
{
    const QMutexLocker lock(&m_mutex);
    QFile file(m_logFilePath);
    if (file.exists() && file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.close();
}

} // namespace orv
