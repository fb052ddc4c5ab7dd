#include "selection/QuickSelections.h"

#include "core/DateSourceText.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "selection/CameraKinds.h"
#include "selection/NaturalNameOrder.h"
#include "selection/PicKinds.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMap>

#include <algorithm>

namespace orv {

namespace {

QString translated(const char *text) { return QCoreApplication::translate("QuickSelections", text); }

QuickSelectionEntry entry(const QString &key, const QString &name, QList<MySinglePic *> pics)
{
    return {key, name, std::move(pics), {}};
}

// The items of the source for which test holds, as one entry.
QuickSelectionEntry entryOf(const QList<MySinglePic *> &source, const QString &key, const QString &name,
                            const std::function<bool(const MySinglePic &)> &test)
{
    QList<MySinglePic *> pics;
    for (MySinglePic *pic : source)
        if (test(*pic))
            pics.append(pic);
    return entry(key, name, std::move(pics));
}

// A sub-menu of one entry per value the items have (none: the item is left out), the values
// ordered as a file manager orders names; name gives a value's shown name.
QuickSelectionEntry subMenuOf(const QList<MySinglePic *> &source, const QString &key, const QString &name,
                              const std::function<QStringList(const MySinglePic &)> &valuesOf,
                              const std::function<QString(const QString &)> &nameOfValue)
{
    QHash<QString, QList<MySinglePic *>> byValue;
    QList<MySinglePic *> all;
    for (MySinglePic *pic : source) {
        const QStringList values = valuesOf(*pic);
        for (const QString &value : values)
            byValue[value].append(pic);
        if (!values.isEmpty())
            all.append(pic);
    }
    QStringList values = byValue.keys();
    const QCollator collator = naturalNameCollator();
    std::sort(values.begin(), values.end(), collator);
    QuickSelectionEntry menu = entry(key, name, std::move(all));
    for (const QString &value : std::as_const(values))
        menu.children.append(entry(key + QLatin1Char('/') + value, nameOfValue(value), byValue.value(value)));
    return menu;
}

// Items by a device and its serial number (a camera and its body's, a lens and its own), keyed
// by the device alone where the items name no serial. A device's serial is named where its items
// name one, and "no serial number" only beside others.
QuickSelectionEntry deviceMenu(const QList<MySinglePic *> &source, const QString &key, const QString &name,
                               QString (*deviceOf)(const MySinglePic &), QString (*serialOf)(const MySinglePic &),
                               QString (*deviceName)(const QString &))
{
    const QChar separator(0x1F);
    QSet<QString> withSerials;
    for (const MySinglePic *pic : source)
        if (serialOf(*pic) != CameraKinds::unknown)
            withSerials.insert(deviceOf(*pic));
    return subMenuOf(
        source, key, name,
        [&](const MySinglePic &pic) {
            const QString serial = serialOf(pic);
            return QStringList{serial == CameraKinds::unknown ? deviceOf(pic) : deviceOf(pic) + separator + serial};
        },
        [&](const QString &value) {
            const QString device = value.section(separator, 0, 0);
            if (value.contains(separator))
                return QCoreApplication::translate("QuickSelections", "%1, Serial Number %2")
                    .arg(deviceName(device), value.section(separator, 1));
            if (!withSerials.contains(device))
                return deviceName(device);
            return QCoreApplication::translate("QuickSelections", "%1, %2")
                .arg(deviceName(device), CameraKinds::serialName(CameraKinds::unknown));
        });
}

QuickSelectionEntry cameraMenu(const QList<MySinglePic *> &source)
{
    return deviceMenu(source, QStringLiteral("quickSelections_camera"),
                      translated(QT_TRANSLATE_NOOP("QuickSelections", "Camera")), CameraKinds::cameraOf,
                      CameraKinds::bodySnOf, CameraKinds::cameraName);
}

// Only where a file names a lens: a lone "No Lens" entry would say nothing.
QuickSelectionEntry lensMenu(const QList<MySinglePic *> &source)
{
    const bool namesALens = std::any_of(source.cbegin(), source.cend(), [](const MySinglePic *pic) {
        return CameraKinds::lensOf(*pic) != CameraKinds::unknown;
    });
    if (!namesALens)
        return entry(QStringLiteral("quickSelections_lens"), {}, {});
    return deviceMenu(source, QStringLiteral("quickSelections_lens"),
                      translated(QT_TRANSLATE_NOOP("QuickSelections", "Lens")), CameraKinds::lensOf,
                      CameraKinds::lensSnOf, CameraKinds::lensName);
}

// By kind (photos, movies, groups, sidecars), each kind a sub-menu: all of the kind first, then
// each file type of it.
QuickSelectionEntry fileTypeMenu(const QList<MySinglePic *> &source)
{
    QuickSelectionEntry menu = entry(QStringLiteral("quickSelections_fileType"),
                                     translated(QT_TRANSLATE_NOOP("QuickSelections", "File Type")), {});
    for (const PicKind kind : {PicKind::Photo, PicKind::Movie, PicKind::Group, PicKind::Sidecar}) {
        const QString kindKey = PicKinds::key(kind);
        QuickSelectionEntry byType = subMenuOf(
            source, kindKey, PicKinds::name(kind),
            [kind](const MySinglePic &pic) { return PicKinds::typesOf(pic, kind); },
            [](const QString &type) { return type; });
        if (byType.pics.isEmpty())
            continue;
        byType.children.prepend(entry(QStringLiteral("quickSelections_all_type_%1").arg(int(kind)),
                                      translated(QT_TRANSLATE_NOOP("QuickSelections", "All")), byType.pics));
        menu.pics.append(byType.pics);
        menu.children.append(std::move(byType));
    }
    // An item with a sidecar is counted once.
    QList<MySinglePic *> unique;
    for (MySinglePic *pic : source)
        if (menu.pics.contains(pic))
            unique.append(pic);
    menu.pics = std::move(unique);
    return menu;
}

QuickSelectionEntry dateSourceMenu(const QList<MySinglePic *> &source)
{
    // One entry per date source, in the order of the sources' numbers.
    QMap<int, QList<MySinglePic *>> bySource;
    for (MySinglePic *pic : source)
        bySource[pic->spType].append(pic);
    QuickSelectionEntry menu = entry(QStringLiteral("quickSelections_datesource"),
                                     translated(QT_TRANSLATE_NOOP("QuickSelections", "Date Source")), source);
    for (auto it = bySource.cbegin(); it != bySource.cend(); ++it) {
        const QString name = it.key() == 0 ? translated(QT_TRANSLATE_NOOP("QuickSelections", "No Date Source"))
                                           : DateSourceText::forPic(*it.value().first());
        menu.children.append(entry(QStringLiteral("quickSelections_datesource/%1").arg(it.key()), name, it.value()));
    }
    return menu;
}

QuickSelectionEntry orientationMenu(const QList<MySinglePic *> &source, const QuickSelections::ThumbSize &thumbSize)
{
    static const char *const names[] = {QT_TRANSLATE_NOOP("QuickSelections", "Unknown"),
                                        QT_TRANSLATE_NOOP("QuickSelections", "Landscape"),
                                        QT_TRANSLATE_NOOP("QuickSelections", "Portrait"),
                                        QT_TRANSLATE_NOOP("QuickSelections", "Almost Square")};
    static const char *const keys[] = {"quickSelections_orientationUnknown", "quickSelections_orientationLandscape",
                                       "quickSelections_orientationPortrait", "quickSelections_orientationAlmostSquare"};
    QList<MySinglePic *> byOrientation[4];
    for (MySinglePic *pic : source)
        byOrientation[int(thumbOrientationType(thumbSize(*pic)))].append(pic);
    QuickSelectionEntry menu = entry(QStringLiteral("quickSelections_orientation"),
                                     translated(QT_TRANSLATE_NOOP("QuickSelections", "Orientation")), source);
    for (int type = 0; type < 4; ++type)
        if (!byOrientation[type].isEmpty())
            menu.children.append(entry(QLatin1String(keys[type]), translated(names[type]), byOrientation[type]));
    return menu;
}

MySingleFolder *folderOf(const MySinglePic *pic) { return pic->spSingleFolder ? MySingleFolder::of(*pic) : nullptr; }

} // namespace

ThumbOrientation thumbOrientationType(QSizeF thumbnail)
{
    const double width = thumbnail.width(), height = thumbnail.height();
    if (thumbnail.isEmpty())
        return ThumbOrientation::Unknown;
    const double longer = std::max(width, height), shorter = std::min(width, height);
    if (width == height || (shorter >= 1.0 && longer / shorter < 1.1))
        return ThumbOrientation::AlmostSquare;
    return width > height ? ThumbOrientation::Landscape : ThumbOrientation::Portrait;
}

QString QuickSelectionEntry::title() const
{
    return QCoreApplication::translate("QuickSelections", "%1 (%2)").arg(name, QLocale().toString(pics.size()));
}

QList<QuickSelectionEntry> QuickSelections::quickSelectionsUpdateMainMenu(const QList<MySinglePic *> &source,
                                                                          const ThumbSize &thumbSize)
{
    const auto rated = [](const MySinglePic &pic) -> const MySinglePic & {
        return pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    };
    QList<QuickSelectionEntry> menu{
        entryOf(source, QStringLiteral("quickSelections_keepers"), translated(QT_TRANSLATE_NOOP("QuickSelections", "Keepers")),
                [&rated](const MySinglePic &pic) { return rated(pic).isKeeper && !rated(pic).isRejected; }),
        entryOf(source, QStringLiteral("quickSelections_neutrals"), translated(QT_TRANSLATE_NOOP("QuickSelections", "Neutrals")),
                [&rated](const MySinglePic &pic) { return !rated(pic).isKeeper && !rated(pic).isRejected; }),
        entryOf(source, QStringLiteral("quickSelections_rejects"), translated(QT_TRANSLATE_NOOP("QuickSelections", "Rejects")),
                [&rated](const MySinglePic &pic) { return rated(pic).isRejected; }),
        cameraMenu(source),
        lensMenu(source),
        fileTypeMenu(source),
        orientationMenu(source, thumbSize),
        dateSourceMenu(source),
        entryOf(source, QStringLiteral("quickSelections_gps"), translated(QT_TRANSLATE_NOOP("QuickSelections", "With Location")),
                [](const MySinglePic &pic) { return pic.gpsLat.has_value() && pic.gpsLong.has_value(); }),
        entryOf(source, QStringLiteral("quickSelections_changes"),
                translated(QT_TRANSLATE_NOOP("QuickSelections", "Unsaved Changes")),
                [](const MySinglePic &pic) { return pic.isUnsaved(); }),
        entryOf(source, QStringLiteral("quickSelections_locationChanges"),
                translated(QT_TRANSLATE_NOOP("QuickSelections", "Location Changes")),
                [](const MySinglePic &pic) { return pic.hasLocationChange(); }),
        entryOf(source, QStringLiteral("quickSelections_normalization"),
                translated(QT_TRANSLATE_NOOP("QuickSelections", "Needing Normalization")),
                [](const MySinglePic &pic) { return pic.needsNormalization(); }),
        entryOf(source, QStringLiteral("quickSelections_externalChanged"),
                translated(QT_TRANSLATE_NOOP("QuickSelections", "Changed by Other Programs")),
                [](const MySinglePic &pic) { return pic.fileUnchangedState == 3; }),
        entryOf(source, QStringLiteral("quickSelections_externalDeleted"),
                translated(QT_TRANSLATE_NOOP("QuickSelections", "Missing Files")),
                [](const MySinglePic &pic) { return pic.fileUnchangedState == 1; }),
        entryOf(source, QStringLiteral("quickSelections_errorsSave"),
                translated(QT_TRANSLATE_NOOP("QuickSelections", "Save Errors")),
                [](const MySinglePic &pic) { return pic.hasSaveError(); }),
        entryOf(source, QStringLiteral("quickSelections_majorDateDifference"),
                translated(QT_TRANSLATE_NOOP("QuickSelections", "Major Date Differences")),
                [](const MySinglePic &pic) { return pic.hasMajorDateDifference(); }),
    };
    menu.removeIf([](const QuickSelectionEntry &each) { return each.pics.isEmpty(); });
    return menu;
}

QuickSelections::Possibility QuickSelections::isQuickSelectionPossible(const QList<MySinglePic *> &pics, bool isBlocked)
{
    if (isBlocked)
        return Possibility::Impossible;
    if (pics.size() < 2)
        return Possibility::Possible;
    // Several selected items mean something only where the folder changes items one by one.
    bool needsModeChange = false;
    for (const MySinglePic *pic : pics) {
        const MySingleFolder *folder = folderOf(pic);
        if (!folder || folder->sfEditMode == MySingleFolder::EditSeparately)
            continue;
        if (folder->isUnsavedFolderIgnoringErrorsAndFixedDates())
            return Possibility::Impossible;
        needsModeChange = true;
    }
    return needsModeChange ? Possibility::WithModeChange : Possibility::Possible;
}

void QuickSelections::quickSelectionSaveCustomSelection(const QList<MySinglePic *> &selected,
                                                        const QList<MySingleFolder *> &folders)
{
    for (MySingleFolder *folder : folders)
        folder->quickSelection.clear();
    for (const MySinglePic *pic : selected)
        if (MySingleFolder *folder = folderOf(pic); folder && folders.contains(folder))
            folder->quickSelection.insert(pic);
}

QList<MySinglePic *> QuickSelections::quickSelectionLoadCustomSelection(const QList<MySinglePic *> &source)
{
    QList<MySinglePic *> kept;
    for (MySinglePic *pic : source)
        if (const MySingleFolder *folder = folderOf(pic); folder && folder->quickSelection.contains(pic))
            kept.append(pic);
    return kept;
}

} // namespace orv
