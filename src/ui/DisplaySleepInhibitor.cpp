#include "ui/DisplaySleepInhibitor.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>

namespace orv {

namespace {

const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
const QString path = QStringLiteral("/org/freedesktop/ScreenSaver");

// A short wait: a bus that does not answer must not hold up the slideshow's start.
constexpr int callTimeoutMs = 500;

} // namespace

void DisplaySleepInhibitor::disableDisplaySleep(const QString &reason)
{
    if (m_cookie)
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusInterface screenSaver(service, path, service, bus);
    if (!screenSaver.isValid())
        return;
    screenSaver.setTimeout(callTimeoutMs);
    const QDBusReply<uint> reply = screenSaver.call(QStringLiteral("Inhibit"), QCoreApplication::applicationName(), reason);
    if (reply.isValid())
        m_cookie = reply.value();
}

void DisplaySleepInhibitor::reenableDisplaySleep()
{
    if (!m_cookie)
        return;
    QDBusInterface screenSaver(service, path, service, QDBusConnection::sessionBus());
    screenSaver.setTimeout(callTimeoutMs);
    screenSaver.call(QStringLiteral("UnInhibit"), *m_cookie);
    m_cookie.reset();
}

} // namespace orv
