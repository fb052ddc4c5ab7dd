#pragma once

#include "folders/MySingleFolder.h"

#include <QList>
#include <QWidget>

class QComboBox;
class QLabel;
class QSpinBox;

namespace orv {

class DateChanges;
struct OffsetEntry;

// The five controls that move every date of the selected folders by one offset: direction,
// days, hours, minutes, seconds. Where the folders differ a control shows no value, and leaving
// it untouched keeps each folder's own. What the user sets goes to the owner of date changes,
// one undo step per entry (steps of the same field merge); the bar shows what the folders hold.
class OffsetBar : public QWidget
{
    Q_OBJECT
public:
    explicit OffsetBar(DateChanges &changes, QWidget *parent = nullptr);

    // Shows the offset of these folders, or why it cannot be changed.
    void showFolders(const QList<MySingleFolder *> &folders);
    // Shows again what the folders hold, after something else changed them.
    void refresh();

private:
    QSpinBox *addField(const QString &suffix, int maximum, const QString &toolTip);
    void showValue(QSpinBox *field, const QString &text);
    OffsetEntry entry() const;
    bool crossesDaylightSavingChange() const;
    void applyEntry();

    DateChanges &m_changes;
    QList<MySingleFolder *> m_folders;
    QComboBox *m_direction;
    QSpinBox *m_days;
    QSpinBox *m_hours;
    QSpinBox *m_minutes;
    QSpinBox *m_seconds;
    QLabel *m_note;
};

} // namespace orv
