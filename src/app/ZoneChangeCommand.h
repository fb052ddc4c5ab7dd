#pragma once

#include "app/DateChangeCommands.h"
#include "folders/FolderTimeZones.h"

namespace orv {

// Time zone correction confirmed: the folders' source and target zones and the items' choices of
// the other hour of a repeated one, as one undo step. A new source zone reads the items' stamps
// anew, so undo puts the zones back and reads them again rather than storing dates.
class ZoneChangeCommand : public DateChangeCommand
{
public:
    struct Zones
    {
        FolderTimeZones source, target;
    };
    struct FolderChange
    {
        MySingleFolder *folder = nullptr;
        Zones before, after;
    };
    struct ChoiceChange
    {
        MySinglePic *pic = nullptr;
        qint64 before = 0, after = 0;
    };
    ZoneChangeCommand(QList<FolderChange> folders, QList<ChoiceChange> choices, const QString &text,
                      DateChangeListener listener);

    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;

private:
    void apply(bool forward) override;
    void applyChoices(bool forward) const;

    QList<FolderChange> m_folders;
    QList<ChoiceChange> m_choices;
};

} // namespace orv
