#include "app/ZoneChangeCommand.h"

#include "core/DaylightSaving.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "folders/ZoneCorrection.h"

namespace orv {

ZoneChangeCommand::ZoneChangeCommand(QList<FolderChange> folders, QList<ChoiceChange> choices, const QString &text,
                                     DateChangeListener listener)
    : DateChangeCommand(text, std::move(listener)), m_folders(std::move(folders)), m_choices(std::move(choices))
{
}

void ZoneChangeCommand::applyChoices(bool forward) const
{
    for (const ChoiceChange &change : m_choices) {
        DaylightSaving::changeAmbiguityCorrectionStateTo(*change.pic, forward ? change.after : change.before);
        ZoneCorrection::validateDateDifferences(*change.pic);
    }
}

// The choices belong to the readings of the zones in force: they are undone before the zones go
// back and made after the zones came.
void ZoneChangeCommand::apply(bool forward)
{
    if (!forward)
        applyChoices(false);
    for (const FolderChange &change : std::as_const(m_folders)) {
        const Zones &zones = forward ? change.after : change.before;
        ZoneCorrection::setTimeZones(*change.folder, zones.source, zones.target);
    }
    if (forward)
        applyChoices(true);
    QList<MySingleFolder *> changed = folders();
    for (MySingleFolder *folder : changed)
        folder->sfUpdatePicsFromAndTill();
    if (m_listener.datesChanged)
        m_listener.datesChanged(changed);
}

std::unique_ptr<DateChangeCommand> ZoneChangeCommand::withoutFolder(const MySingleFolder *folder) const
{
    QList<FolderChange> folders = m_folders;
    folders.removeIf([folder](const FolderChange &c) { return c.folder == folder; });
    QList<ChoiceChange> choices = m_choices;
    choices.removeIf([folder](const ChoiceChange &c) { return MySingleFolder::of(*c.pic) == folder; });
    if (folders.isEmpty() && choices.isEmpty())
        return nullptr;
    return std::make_unique<ZoneChangeCommand>(folders, choices, text(), m_listener);
}

QList<MySingleFolder *> ZoneChangeCommand::folders() const
{
    QList<MySingleFolder *> result;
    for (const FolderChange &change : m_folders)
        result.append(change.folder);
    for (const ChoiceChange &change : m_choices) {
        MySingleFolder *folder = MySingleFolder::of(*change.pic);
        if (!result.contains(folder))
            result.append(folder);
    }
    return result;
}

} // namespace orv
