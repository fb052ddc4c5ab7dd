#pragma once

#include "core/SaveErrors.h"

#include <QMutex>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <vector>

namespace orv {

class XtChild;
class XtThread;

// The one exiftool child a save works with, for what cannot be written in place: date tags to
// add, XMP stamps to widen, locations to add, sidecars. The child is Debian's `exiftool -stay_open
// true -@ ARGFILE`; an action appends its argument lines to the file and waits for "{ready}".
//
// `run` may be called from any thread and blocks only that thread until the tool answers, for at
// most the time-out. The child and its pipe belong to a thread of their own, so the save's worker
// threads can take turns with one child; actions are strictly one after the other. A child that
// died between actions is started again; one that does not answer in time is ended, and the
// action counts as no change.
class XtController
{
public:
    struct Action
    {
        // An error the tool reports without a change is filed under it.
        ToolStep errorType = ToolStep::UpdateLocation;
        // Argument lines before the common tail, each a whole argument.
        QStringList arguments;
        QString path;
        // PNG files are written with "-fast"; sidecars never are.
        bool fast = false;
    };

    struct Outcome
    {
        bool didChangeOnLastAction = false;
        // The tool's first "Error" line, or why the tool could not be asked.
        QString error;
        bool timedOut = false;
    };

    static constexpr int defaultTimeoutMs = 30000;

    // `argsFolder` holds ".args.txt"; empty: the application data folder. `program` is looked up
    // on the PATH.
    explicit XtController(const QString &argsFolder = {},
                          const QString &program = QStringLiteral("exiftool"),
                          int timeoutMs = defaultTimeoutMs);
    ~XtController();

    XtController(const XtController &) = delete;
    XtController &operator=(const XtController &) = delete;

    Outcome run(const Action &action);
    // Ends the child and removes the argument file; the next action starts a new one. Runs at the
    // end of each save pass.
    void cleanup();

    // Per error type the texts filed, in order and without repeats.
    void addError(const QString &text, ToolStep type);
    qsizetype errorCollectorCount() const;
    // The types in their order: each present type's description, a blank line, and its entries
    // on tab-indented lines.
    QString errorsSummaryString() const;
    void clearErrors();

    // Argument lines are line-based: a path holding a line break cannot be passed.
    static bool isPassablePath(const QString &path);
    // Where the tool writes a file's new version before it renames it over the file.
    static QString temporaryFileOf(const QString &path);

private:
    Outcome runOnChildThread(const Action &action);

    std::unique_ptr<XtThread> m_thread;
    std::unique_ptr<XtChild> m_child;
    mutable QMutex m_errorsMutex;
    std::map<ToolStep, std::vector<QString>> m_errorCollector;
};

} // namespace orv
