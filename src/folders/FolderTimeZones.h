#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include "time/TimeZone.h"

#include <optional>

namespace orv {

class MySinglePic;

// Names with a meaning of their own in a folder's zone dictionaries.
namespace zoneName {
inline const QString system = QStringLiteral("_SYSTEM");
inline const QString unchanged = QStringLiteral("_UNCHANGED");
inline const QString unchangedLeft = QStringLiteral("_UNCHANGED_LEFT");
inline const QString unchangedLeftFolder = QStringLiteral("_UNCHANGED_LEFT_FOLDER");
inline const QString multiple = QStringLiteral("_MULTIPLE");
} // namespace zoneName

// One of a folder's two zone dictionaries: a zone for the whole folder ("_DEFAULT"), and items
// that have a zone by themselves. The item sets only point at items the folder owns; an item
// leaves its set when the folder lets it go.
class FolderTimeZones
{
public:
    std::optional<QString> defaultZone;
    QHash<QString, QSet<const MySinglePic *>> itemsByZone;

    bool isEmpty() const { return !defaultZone && itemsByZone.isEmpty(); }
    bool operator==(const FolderTimeZones &) const = default;
    // The zone the item (or, for a group's master, its dependent) has by itself.
    std::optional<QString> zoneOfItem(const MySinglePic &pic) const;
    // The item's own zone, else the folder's.
    std::optional<QString> zoneNameFor(const MySinglePic &pic) const;
    void assign(const MySinglePic &pic, const QString &zone);
    // A set that becomes empty leaves the dictionary.
    void remove(const MySinglePic &pic);
    // For merged views: the item sets united; the defaults are the caller's to merge.
    void unite(const FolderTimeZones &other);
};

// The zones a pair of dictionaries gives an item: a folder's own, or a sheet's working copies
// of them while it edits. A group's dependent is answered for by its master. Nothing stands for
// a name the tz database does not know.
struct ZoneProvider
{
    const FolderTimeZones &source;
    const FolderTimeZones &target;

    // The names with the folder forms resolved; nothing stands for the system zone.
    std::optional<QString> sourceTimeZoneNameForPic(const MySinglePic &pic) const;
    std::optional<QString> targetTimeZoneNameForPic(const MySinglePic &pic) const;
    std::optional<TimeZone> sourceTimeZoneForPic(const MySinglePic &pic) const;
    std::optional<TimeZone> targetTimeZoneForPic(const MySinglePic &pic,
                                                 const std::optional<TimeZone> &knownSource = std::nullopt) const;
};

} // namespace orv
