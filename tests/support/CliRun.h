#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QString>
#include <QStringList>

#include <memory>

class QProcess;

namespace orv::test {

struct CliResult
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    // stdout as the JSON array of --json; empty when it is none.
    QJsonArray json() const;
};

// The built orvelle-cli of this tree.
QString cliPath();

// Runs the built orvelle-cli with `home` as its home, so that its settings and its error log
// land there and never in the user's.
CliResult runCli(const QStringList &arguments, const QString &home);

// Starts orvelle-cli the same way and leaves it running, for a test that stops it.
std::unique_ptr<QProcess> startCli(const QStringList &arguments, const QString &home);

} // namespace orv::test
