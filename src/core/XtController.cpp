#include "core/XtController.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QUuid>
#include <QWaitCondition>

#include <csignal>
#include <functional>
#include <sys/prctl.h>
#include <unistd.h>

namespace orv {

// The child process and its argument file. Used only on the controller's own thread, which
// created the process: a process and its pipe belong to one thread.
class XtChild
{
public:
    XtChild(QString argsFolder, QString program, int timeoutMs)
        : m_argsFolder(std::move(argsFolder)), m_program(std::move(program)), m_timeoutMs(timeoutMs)
    {
    }

    XtController::Outcome perform(const XtController::Action &action);
    void endTool();
    void cleanup();

private:
    bool startTool(QString &error);
    QString writableArgsPath();
    bool addArgs(const QByteArray &text);

    QString m_argsFolder;
    QString m_program;
    int m_timeoutMs;
    QString m_argsPath;
    std::unique_ptr<QLockFile> m_argsLock;
    QProcess *m_process = nullptr;
};

namespace {

const QByteArray readyPrompt = QByteArrayLiteral("{ready}");

QString firstErrorLine(const QByteArray &output)
{
    for (const QByteArray &line : output.split('\n')) {
        if (line.startsWith("Error"))
            return QString::fromUtf8(line.trimmed());
    }
    return {};
}

bool reportsChange(const QByteArray &output)
{
    return output.contains("1 image files updated") || output.contains("1 image files created");
}

QString translated(const char *text)
{
    return QCoreApplication::translate("XtController", text);
}

} // namespace

QString XtChild::writableArgsPath()
{
    // The application's data folder, unless another instance of the system holds the file there.
    const QString folder = m_argsFolder.isEmpty()
                               ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
                               : m_argsFolder;
    if (QDir().mkpath(folder)) {
        const QString path = QDir(folder).filePath(QStringLiteral(".args.txt"));
        // A child started again after the last one ended keeps the file this object holds.
        auto lock = m_argsLock ? std::move(m_argsLock)
                               : std::make_unique<QLockFile>(path + QLatin1String(".lock"));
        QFile file(path);
        if ((lock->isLocked() || lock->tryLock(0)) &&
            file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            m_argsLock = std::move(lock);
            return path;
        }
    }
    const QString path = QDir::temp().filePath(QUuid::createUuid().toString(QUuid::WithoutBraces));
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) ? path : QString();
}

bool XtChild::startTool(QString &error)
{
    m_argsPath = writableArgsPath();
    if (m_argsPath.isEmpty()) {
        error = translated(
            QT_TRANSLATE_NOOP("XtController", "no argument file for exiftool could be written"));
        return false;
    }
    m_process = new QProcess;
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    // The tool dies with us: one left behind would still carry out actions queued in the argument
    // file after the run was killed. The signal follows the thread that started the child, which
    // outlives it; a parent gone before the request took hold is caught by asking for it after.
    m_process->setChildProcessModifier([parent = ::getpid()] {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent)
            ::_exit(127);
    });
    m_process->start(m_program, {QStringLiteral("-stay_open"), QStringLiteral("true"),
                                 QStringLiteral("-@"), m_argsPath});
    if (m_process->waitForStarted(m_timeoutMs))
        return true;
    error = m_process->error() == QProcess::FailedToStart
                ? translated(QT_TRANSLATE_NOOP(
                      "XtController", "exiftool was not found on the PATH; install it (Debian: "
                                      "libimage-exiftool-perl)"))
                : translated(QT_TRANSLATE_NOOP("XtController", "exiftool could not be started: %1"))
                      .arg(m_process->errorString());
    delete m_process;
    m_process = nullptr;
    return false;
}

bool XtChild::addArgs(const QByteArray &text)
{
    QFile file(m_argsPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(text) != text.size())
        return false;
    file.close();
    // The tool looks at a grown file every hundredth of a second; a SIGCONT makes it look now.
    if (m_process && m_process->processId() > 0)
        ::kill(pid_t(m_process->processId()), SIGCONT);
    return true;
}

void XtChild::endTool()
{
    if (!m_process)
        return;
    if (m_process->state() == QProcess::Running) {
        addArgs(QByteArrayLiteral("\n-stay_open\nfalse\n"));
        if (!m_process->waitForFinished(1000)) {
            m_process->kill();
            m_process->waitForFinished(1000);
        }
    }
    delete m_process;
    m_process = nullptr;
}

void XtChild::cleanup()
{
    endTool();
    if (!m_argsPath.isEmpty())
        QFile::remove(m_argsPath);
    m_argsPath.clear();
    m_argsLock.reset();
}

XtController::Outcome XtChild::perform(const XtController::Action &action)
{
    XtController::Outcome outcome;
    if (!XtController::isPassablePath(action.path)) {
        outcome.error = translated(QT_TRANSLATE_NOOP(
                                       "XtController",
                                       "a path with a line break cannot be passed to exiftool: %1"))
                            .arg(action.path.simplified());
        return outcome;
    }
    // A child that died since the last action is replaced.
    if (m_process && m_process->state() != QProcess::Running)
        endTool();
    if (!m_process && !startTool(outcome.error))
        return outcome;

    QByteArray text;
    for (const QString &argument : action.arguments)
        text += argument.toUtf8() + '\n';
    text += "-overwrite_original\n-F\n-m\n";
    if (action.fast)
        text += "-fast\n";
    text += action.path.toUtf8() + "\n-execute\n";
    if (!addArgs(text)) {
        outcome.error = translated(QT_TRANSLATE_NOOP(
            "XtController", "the argument file for exiftool could not be written"));
        endTool();
        return outcome;
    }

    const QDeadlineTimer deadline(m_timeoutMs);
    QByteArray output;
    // The answer may come in several reads; the whole output is searched each time.
    while (!output.contains(readyPrompt)) {
        if (deadline.hasExpired()) {
            endTool();
            outcome.timedOut = true;
            return outcome;
        }
        if (m_process->waitForReadyRead(int(std::max<qint64>(1, deadline.remainingTime()))))
            output += m_process->readAll();
        else if (m_process->state() != QProcess::Running) {
            output += m_process->readAll();
            endTool();
            const QString error = firstErrorLine(output);
            outcome.error =
                error.isEmpty()
                    ? translated(QT_TRANSLATE_NOOP("XtController",
                                                   "exiftool stopped before it finished the file"))
                    : error;
            return outcome;
        }
    }
    outcome.didChangeOnLastAction = reportsChange(output);
    outcome.error = firstErrorLine(output);
    return outcome;
}

// The thread that owns the child: it runs one piece of work at a time for whichever thread
// hands it over, while that thread waits. It needs no event loop: the pipe is read by blocking
// waits.
class XtThread : public QThread
{
public:
    // Runs `work` here and returns when it is done; callers take turns.
    void perform(const std::function<void()> &work)
    {
        const QMutexLocker turn(&m_turnMutex);
        QMutexLocker lock(&m_mutex);
        m_work = &work;
        m_done = false;
        m_wake.wakeOne();
        while (!m_done)
            m_finished.wait(&m_mutex);
    }

    void stop()
    {
        {
            const QMutexLocker lock(&m_mutex);
            m_quit = true;
            m_wake.wakeOne();
        }
        wait();
    }

protected:
    void run() override
    {
        QMutexLocker lock(&m_mutex);
        while (!m_quit) {
            if (!m_work) {
                m_wake.wait(&m_mutex);
                continue;
            }
            const std::function<void()> *work = m_work;
            lock.unlock();
            (*work)();
            lock.relock();
            m_work = nullptr;
            m_done = true;
            m_finished.wakeAll();
        }
    }

private:
    QMutex m_turnMutex;
    QMutex m_mutex;
    QWaitCondition m_wake;
    QWaitCondition m_finished;
    const std::function<void()> *m_work = nullptr;
    bool m_done = false;
    bool m_quit = false;
};

XtController::XtController(const QString &argsFolder, const QString &program, int timeoutMs)
    : m_thread(std::make_unique<XtThread>()),
      m_child(std::make_unique<XtChild>(argsFolder, program, timeoutMs))
{
    m_thread->setObjectName(QStringLiteral("exiftool"));
    m_thread->start();
}

XtController::~XtController()
{
    cleanup();
    m_thread->stop();
}

XtController::Outcome XtController::runOnChildThread(const Action &action)
{
    Outcome outcome;
    m_thread->perform([&] { outcome = m_child->perform(action); });
    return outcome;
}

XtController::Outcome XtController::run(const Action &action)
{
    const Outcome outcome = runOnChildThread(action);
    // With a change, an error line is only a remark of the tool's; a time-out files nothing.
    if (!outcome.didChangeOnLastAction && !outcome.error.isEmpty())
        addError(outcome.error, action.errorType);
    return outcome;
}

void XtController::cleanup()
{
    m_thread->perform([this] { m_child->cleanup(); });
}

QString XtController::temporaryFileOf(const QString &path)
{
    return path + QStringLiteral("_exiftool_tmp");
}

bool XtController::isPassablePath(const QString &path)
{
    return !path.isEmpty() && !path.contains(QLatin1Char('\n')) && !path.contains(QLatin1Char('\r'));
}

void XtController::addError(const QString &text, ToolStep type)
{
    const QMutexLocker lock(&m_errorsMutex);
    std::vector<QString> &entries = m_errorCollector[type];
    if (std::find(entries.begin(), entries.end(), text) == entries.end())
        entries.push_back(text);
}

qsizetype XtController::errorCollectorCount() const
{
    const QMutexLocker lock(&m_errorsMutex);
    qsizetype count = 0;
    for (const auto &[type, entries] : m_errorCollector)
        count += qsizetype(entries.size());
    return count;
}

void XtController::clearErrors()
{
    const QMutexLocker lock(&m_errorsMutex);
    m_errorCollector.clear();
}

QString XtController::errorsSummaryString() const
{
    const QMutexLocker lock(&m_errorsMutex);
    QString summary;
    for (const auto &[type, entries] : m_errorCollector) {
        summary += SaveErrors::descriptionForStep(type) + QLatin1String("\n\n");
        for (const QString &entry : entries)
            summary += QLatin1Char('\t') + entry + QLatin1Char('\n');
    }
    return summary;
}

} // namespace orv
