#pragma once

namespace orv {

class Preferences;

// The generation of settings this build writes; 0 in prefVersion means a first launch.
inline constexpr int currentPrefVersion = 810;

// What the launch migrations need from the running application. The window layer answers with
// its screens and sheets; tests and the command-line tool answer with fixed values.
class MigrationHost
{
public:
    virtual ~MigrationHost() = default;

    // First launch: apply the shipped window settings and, where shipped, the list settings.
    virtual void applyFirstLaunchSettings() = 0;
    // Height of the main screen in device-independent pixels.
    virtual int mainScreenHeight() const = 0;
    // The rename template popup picks its entry again from templateSelectedIndex.
    virtual void reselectRenameTemplate() = 0;
    // Stored folder bookmarks are damaged. Tells the user while the interface is blocked; true
    // when the user wants the check repeated at the next launch.
    virtual bool reportBrokenBookmarks() = 0;
};

// Brings settings of an older generation up to date, decided by the prefVersion stored before
// the launch. The first part runs before the window is built: it only moves values between
// keys. The remaining part runs when the launch ends and leaves prefVersion at
// currentPrefVersion, unless a later generation wrote the store (then nothing runs at all) or
// the user asked to see the bookmark warning again.
//
// Window frames use the descriptor "x y w h sx sy sw sh" (window, then screen rectangle, in
// integers); the older frame keys hold QRects and the sheet sizes are written as QSizes.
void runFirstMigrations(Preferences &prefs);
void runRemainingMigrations(Preferences &prefs, MigrationHost &host);

} // namespace orv
