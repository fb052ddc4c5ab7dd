#include "folders/FolderTimeZones.h"

#include "core/MySinglePic.h"

namespace orv {

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

} // namespace orv
