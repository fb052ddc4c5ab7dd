#include "core/PreferenceMigrations.h"

#include "core/Preferences.h"

#include <QCborArray>
#include <QRect>
#include <QSize>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <utility>

namespace orv {
namespace {

const QString versionKey = QStringLiteral("prefVersion");
const QString mainWindowFrameKey = QStringLiteral("NSWindow Frame orvelle7");
const QString fixDateKey = QStringLiteral("prefFixDateDate");
const int tallScreenHeight = 1000;
// Stored in prefVersion when the user wants the bookmark check again at the next launch.
const int bookmarkCheckGeneration = 36;

bool isGenerationUpTo(qint64 storedVersion, qint64 lastAffected)
{
    return storedVersion >= 1 && storedVersion <= lastAffected;
}

QString frameDescriptor(const QRect &window, const QRect &screen)
{
    QStringList numbers;
    for (const int n : {window.x(), window.y(), window.width(), window.height(), screen.x(),
                        screen.y(), screen.width(), screen.height()})
        numbers << QString::number(n);
    return numbers.join(QLatin1Char(' '));
}

// The window size in a frame descriptor; empty when the text isn't one.
QSize sizeInFrameDescriptor(const QString &descriptor)
{
    const QStringList parts = descriptor.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.size() < 4)
        return {};
    bool widthOk = false;
    bool heightOk = false;
    const double width = parts[2].toDouble(&widthOk);
    const double height = parts[3].toDouble(&heightOk);
    if (!widthOk || !heightOk)
        return {};
    return QSize(int(std::lround(width)), int(std::lround(height)));
}

void takeTimelineSelectionModeForMirror(Preferences &prefs)
{
    prefs.setValue(QStringLiteral("timelinesSelectionsMode_mirrored"),
                   prefs.valueForKey(QStringLiteral("timelinesSelectionsMode")));
}

void moveMainWindowFrame(Preferences &prefs)
{
    if (prefs.hasValueForKey(mainWindowFrameKey))
        return;
    const QRect window =
        prefs.valueForKey(QStringLiteral("motherOfWorkaroundsNewMainWindowFrame")).toRect();
    const QRect screen =
        prefs.valueForKey(QStringLiteral("motherOfWorkaroundsNewMainWindowScreenFrame")).toRect();
    if (window.isEmpty() || screen.isEmpty())
        return;
    prefs.setValue(mainWindowFrameKey, frameDescriptor(window, screen));
}

void moveSheetSizes(Preferences &prefs)
{
    struct SheetSizeMove
    {
        const char *frameKey;
        const char *normalWindowKey;
        const char *fullScreenKey;
    };
    const SheetSizeMove moves[] = {
        {"NSWindow Frame ZonePicker", "tzcSheetSizeStd", "tzcSheetSizeFS"},
        {"NSWindow Frame PreSaveAlert", "psaSheetSizeStd", "psaSheetSizeFS"},
        {"NSWindow Frame StateErrorAlert", "seaSheetSizeStd", "seaSheetSizeFS"},
    };
    for (const SheetSizeMove &move : moves) {
        const QSize size =
            sizeInFrameDescriptor(prefs.stringForKey(QString::fromLatin1(move.frameKey)));
        if (size.isEmpty())
            continue;
        prefs.setValue(QString::fromLatin1(move.normalWindowKey), size);
        prefs.setValue(QString::fromLatin1(move.fullScreenKey), size);
    }
}

void applyFirstLaunch(Preferences &prefs, MigrationHost &host)
{
    host.applyFirstLaunchSettings();
    const bool isTallScreen = host.mainScreenHeight() >= tallScreenHeight;
    prefs.setBool(QStringLiteral("usePopoverAltSize"), isTallScreen);
    prefs.setBool(QStringLiteral("usePopoverAltSizeFullscreen"), isTallScreen);
}

bool hasBrokenBookmark(const QCborValue &bookmarks)
{
    const QCborArray entries = bookmarks.toArray();
    return std::any_of(entries.begin(), entries.end(),
                       [](const QCborValue &entry) { return entry.toArray().size() < 3; });
}

void takeOverOldGeometry(Preferences &prefs)
{
    const std::pair<const char *, const char *> takeovers[] = {
        {"timelineViewHeight", "timelineHeight_STD"},
        {"timelineViewHeightFullscreen", "timelineHeight_FUS"},
        {"mainSplitViewHeightTop", "mainWindowDividerPos_STD"},
        {"topFrameInFullscreenMode", "mainWindowDividerPos_FUS"},
    };
    for (const auto &[oldKey, newKey] : takeovers) {
        const double value = prefs.doubleForKey(QString::fromLatin1(oldKey));
        if (value > 0)
            prefs.setDouble(QString::fromLatin1(newKey), std::round(value));
    }
}

void roundFixDateToWholeSeconds(Preferences &prefs)
{
    if (const OptionalDate date = prefs.dateForKey(fixDateKey))
        prefs.setDate(fixDateKey, Instant(std::round(date->secondsSinceEpoch())));
}

} // namespace

void runFirstMigrations(Preferences &prefs)
{
    const qint64 storedVersion = prefs.integerForKey(versionKey);
    if (isGenerationUpTo(storedVersion, 809))
        takeTimelineSelectionModeForMirror(prefs);
    if (isGenerationUpTo(storedVersion, 699))
        moveMainWindowFrame(prefs);
    if (isGenerationUpTo(storedVersion, 799))
        moveSheetSizes(prefs);
}

void runRemainingMigrations(Preferences &prefs, MigrationHost &host)
{
    const qint64 storedVersion = prefs.integerForKey(versionKey);
    if (storedVersion == 0) {
        applyFirstLaunch(prefs, host);
        prefs.setInteger(versionKey, currentPrefVersion);
        return;
    }
    if (isGenerationUpTo(storedVersion, 24))
        host.reselectRenameTemplate();
    const bool checkBookmarksAgain =
        isGenerationUpTo(storedVersion, bookmarkCheckGeneration) &&
        hasBrokenBookmark(prefs.archiveForKey(QStringLiteral("advancedBookmarks"))) &&
        host.reportBrokenBookmarks();
    if (isGenerationUpTo(storedVersion, 49))
        takeOverOldGeometry(prefs);
    if (isGenerationUpTo(storedVersion, 500))
        roundFixDateToWholeSeconds(prefs);
    if (storedVersion < currentPrefVersion)
        prefs.setInteger(versionKey, currentPrefVersion);
    if (checkBookmarksAgain)
        prefs.setInteger(versionKey, bookmarkCheckGeneration);
}

} // namespace orv
