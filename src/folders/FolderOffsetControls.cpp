#include "folders/FolderOffsetControls.h"

#include "folders/MyCompoundFolder.h"

namespace orv {

namespace {

// The entry completed by the folder's own values where the user left a control untouched.
FolderOffset offsetFor(const MySingleFolder &folder, const OffsetEntry &entry)
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

QList<FolderOffset> FolderOffsetControls::offsetsFor(const OffsetEntry &entry) const
{
    QList<FolderOffset> offsets;
    for (const MySingleFolder *folder : m_folders)
        offsets.append(offsetFor(*folder, entry));
    return offsets;
}

} // namespace orv
