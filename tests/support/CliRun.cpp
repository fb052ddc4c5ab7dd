#include "support/CliRun.h"

#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>
#include <stdexcept>

namespace orv::test {

QJsonArray CliResult::json() const
{
    return QJsonDocument::fromJson(out).array();
}

QString cliPath()
{
    return QStringLiteral(ORV_CLI_PATH);
}

std::unique_ptr<QProcess> startCli(const QStringList &arguments, const QString &home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/.config"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/.local/share"));
    auto cli = std::make_unique<QProcess>();
    cli->setProcessEnvironment(environment);
    cli->start(cliPath(), arguments);
    return cli;
}

CliResult runCli(const QStringList &arguments, const QString &home)
{
    const std::unique_ptr<QProcess> cli = startCli(arguments, home);
    if (!cli->waitForFinished(300000) || cli->exitStatus() != QProcess::NormalExit)
        throw std::runtime_error("orvelle-cli did not finish: " +
                                 arguments.join(u' ').toStdString());
    return {cli->exitCode(), cli->readAllStandardOutput(), cli->readAllStandardError()};
}

} // namespace orv::test
