#include "folders/FolderOffsetControls.h"

#include "core/MySinglePic.h"
#include "folders/MyCompoundFolder.h"

namespace orv {

namespace {

struct Offset
{
    double interval = 0.0;
    bool negative = false;
};

// The entry completed by the folder's own values where the user left a control untouched.
Offset offsetFor(const MySingleFolder &folder, const OffsetEntry &entry)
{
    const DateModifications &own = folder.sfDateModifications;
    const double days = entry.days ? double(*entry.days) : own.value(dateModificationKey::days).toDouble();
    const int hours = entry.hours.value_or(own.value(dateModificationKey::hours).toInt());
    const int minutes = entry.minutes.value_or(own.value(dateModificationKey::minutes).toInt());
    const int seconds = entry.seconds.value_or(own.value(dateModificationKey::seconds).toInt());
    const bool negative = entry.negative.value_or(own.value(dateModificationKey::direction) == QLatin1String("-"));
    const double magnitude = days * 86400.0 + hours * 3600.0 + minutes * 60.0 + seconds;
    return {negative ? -magnitude : magnitude, negative};
}

// The earliest and latest item moved by the interval stay within the dates a file can hold.
bool staysInRange(const MySingleFolder &folder, double interval)
{
    for (const MySinglePic *pic : folder.sfPicDetails_fullArray) {
        const OptionalDate date = pic->spDateTimeOriginal;
        if (!date || date->isSentinel())
            continue;
        const Instant moved = date->addingSeconds(interval);
        if (moved < Instant::minDate() || moved > Instant::maxDate())
            return false;
    }
    return true;
}

} // namespace

FolderOffsetControls::Availability FolderOffsetControls::availability() const
{
    const auto any = [this](auto test) { return std::any_of(m_folders.cbegin(), m_folders.cend(), test); };
    if (m_folders.isEmpty() || any([](const MySingleFolder *f) { return f->sfPics < 0; })
        || !any([](const MySingleFolder *f) { return f->count() > 0; }))
        return Availability::NoItems;
    if (any([](const MySingleFolder *f) { return f->isEXIFIgnored(); }))
        return Availability::SlideshowOnly;
    if (any([](const MySingleFolder *f) { return f->sfEditMode != MySingleFolder::EditTogether; }))
        return Availability::SeparateMode;
    return Availability::Editable;
}

DateModifications FolderOffsetControls::shown() const
{
    if (m_folders.isEmpty())
        return {};
    const DateModifications merged = MyCompoundFolder(m_folders).sfDateModifications();
    return merged.isEmpty() ? m_folders.first()->sfDateModifications : merged;
}

FolderOffsetControls::Result FolderOffsetControls::apply(const OffsetEntry &entry)
{
    QList<Offset> offsets;
    bool changes = false;
    for (const MySingleFolder *folder : std::as_const(m_folders)) {
        const Offset offset = offsetFor(*folder, entry);
        if (!staysInRange(*folder, offset.interval))
            return Result::OutOfRange;
        changes = changes || offset.interval != folder->sfDateModificationsTimeInterval
                  || offset.negative != folder->hasChangedDirection;
        offsets.append(offset);
    }
    if (!changes)
        return Result::Unchanged;
    for (qsizetype i = 0; i < m_folders.size(); ++i)
        m_folders[i]->setSfDateModificationsFromTimeInterval(offsets[i].interval, offsets[i].negative);
    return Result::Changed;
}

} // namespace orv
