#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <optional>

namespace orv {

class Preferences;

// The window as a state in the tray keeps it (savedWindowsData): its frame and bars, and the
// layout settings of the moment (the heights of the strips, the grid's sizes, the map's
// filter, the views' options, and the rest that shape how a working set is looked at), so that
// opening the state brings back the window it was kept in. Only values set are kept; the
// others are left alone at opening. The frame and bars are Qt's own saved geometry and state.
struct WindowsData
{
    static constexpr qint64 fileVersion = 5;

    QByteArray mainWindowFrame;
    QByteArray mainWindowBars;
    QVariantMap settings; // by their names

    // The settings of the moment, from the user's preferences.
    static QVariantMap settingsOf(const Preferences &prefs);
    // The kept settings become the user's again; the window follows through the preferences'
    // notifications.
    void applySettings(Preferences &prefs) const;

    QByteArray toCbor() const;
    // Nothing from data that is no such record: the state opens without its window.
    static std::optional<WindowsData> fromCbor(const QByteArray &data);
    // The record in a state package; nothing when it has none or it cannot be read.
    static std::optional<WindowsData> ofPackage(const QString &statePath);

    bool operator==(const WindowsData &) const = default;
};

} // namespace orv
