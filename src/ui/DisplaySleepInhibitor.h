#pragma once

#include <QString>

#include <optional>

namespace orv {

// Keeps the display awake while a slideshow runs, through the desktop's idle inhibition on the
// session bus (org.freedesktop.ScreenSaver Inhibit and UnInhibit). Without a session bus or a
// service that answers, it does nothing and says nothing: a slideshow never fails for it.
class DisplaySleepInhibitor
{
public:
    DisplaySleepInhibitor() = default;
    ~DisplaySleepInhibitor() { reenableDisplaySleep(); }
    DisplaySleepInhibitor(const DisplaySleepInhibitor &) = delete;
    DisplaySleepInhibitor &operator=(const DisplaySleepInhibitor &) = delete;

    // Twice is once: the cookie of the first inhibition is kept.
    void disableDisplaySleep(const QString &reason);
    void reenableDisplaySleep();
    bool isDisplaySleepDisabled() const { return m_cookie.has_value(); }

private:
    std::optional<uint> m_cookie;
};

} // namespace orv
