#include "app/ZoneChangeCommand.h"

#include "app/CommandFolders.h"
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
    QList<ChoiceChange> choices = m_choices;
    if (!removeChangesOfFolder(folders, choices, folder))
        return nullptr;
    return std::make_unique<ZoneChangeCommand>(folders, choices, text(), m_listener);
}

QList<MySingleFolder *> ZoneChangeCommand::folders() const
{
    return foldersOfChanges(m_folders, m_choices);
}

} // namespace orv
