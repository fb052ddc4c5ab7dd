#include "folders/FolderTimeZones.h"

#include "core/MySinglePic.h"

namespace orv {

namespace {

const MySinglePic &masterOf(const MySinglePic &pic)
{
    return pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
}

// The zone a name stands for: nothing or "_SYSTEM" is the system zone.
std::optional<TimeZone> zoneNamed(const std::optional<QString> &name)
{
    if (!name || *name == zoneName::system)
        return TimeZone::systemZone();
    return TimeZone::fromName(*name);
}

} // namespace

std::optional<QString> FolderTimeZones::zoneOfItem(const MySinglePic &pic) const
{
    for (auto it = itemsByZone.cbegin(); it != itemsByZone.cend(); ++it) {
        if (it.value().contains(&pic) || (pic.bundleDependentImage && it.value().contains(pic.bundleDependentImage)))
            return it.key();
    }
    return std::nullopt;
}

std::optional<QString> FolderTimeZones::zoneNameFor(const MySinglePic &pic) const
{
    const std::optional<QString> own = zoneOfItem(pic);
    return own ? own : defaultZone;
}

void FolderTimeZones::assign(const MySinglePic &pic, const QString &zone)
{
    remove(pic);
    itemsByZone[zone].insert(&pic);
}

void FolderTimeZones::remove(const MySinglePic &pic)
{
    for (auto it = itemsByZone.begin(); it != itemsByZone.end();) {
        it.value().remove(&pic);
        it = it.value().isEmpty() ? itemsByZone.erase(it) : std::next(it);
    }
}

void FolderTimeZones::unite(const FolderTimeZones &other)
{
    for (auto it = other.itemsByZone.cbegin(); it != other.itemsByZone.cend(); ++it)
        itemsByZone[it.key()].unite(it.value());
}

std::optional<QString> ZoneProvider::sourceTimeZoneNameForPic(const MySinglePic &pic) const
{
    return source.zoneNameFor(masterOf(pic));
}

std::optional<QString> ZoneProvider::targetTimeZoneNameForPic(const MySinglePic &pic) const
{
    const MySinglePic &master = masterOf(pic);
    const std::optional<QString> own = target.zoneOfItem(master);
    if (own && (*own == zoneName::unchangedLeft || *own == zoneName::unchanged))
        return zoneName::unchangedLeft;
    const std::optional<QString> name = own ? own : target.defaultZone;
    if (name == zoneName::unchangedLeftFolder)
        return source.defaultZone;
    if (name == zoneName::unchanged)
        return zoneName::unchangedLeft;
    return name;
}

std::optional<TimeZone> ZoneProvider::sourceTimeZoneForPic(const MySinglePic &pic) const
{
    if (source.isEmpty())
        return TimeZone::systemZone();
    return zoneNamed(sourceTimeZoneNameForPic(pic));
}

std::optional<TimeZone> ZoneProvider::targetTimeZoneForPic(const MySinglePic &pic,
                                                           const std::optional<TimeZone> &knownSource) const
{
    if (source.isEmpty() && target.isEmpty())
        return TimeZone::systemZone();
    const std::optional<QString> name = targetTimeZoneNameForPic(pic);
    if (name == zoneName::unchangedLeft)
        return knownSource ? knownSource : sourceTimeZoneForPic(pic);
    return zoneNamed(name);
}

} // namespace orv
