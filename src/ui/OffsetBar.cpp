#include "ui/OffsetBar.h"

#include "app/DateChanges.h"
#include "folders/FolderOffsetControls.h"
#include "folders/MyCompoundFolder.h"
#include "time/TimeZone.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>

namespace orv {

namespace {

// A field below its range shows this: the folders differ and the field was left untouched.
constexpr int untouched = -1;

enum Direction { Later, Earlier };

} // namespace

OffsetBar::OffsetBar(DateChanges &changes, QWidget *parent)
    : QWidget(parent), m_changes(changes), m_direction(new QComboBox(this)), m_note(new QLabel(this))
{
    auto *title = new QLabel(tr("Shift dates:"), this);
    m_direction->setObjectName(QStringLiteral("offsetDirection"));
    m_direction->addItem(QStringLiteral("+"));
    m_direction->addItem(QStringLiteral("−"));
    m_direction->setToolTip(tr("Later (+) or earlier (−)"));
    m_direction->setPlaceholderText(QStringLiteral("±"));
    m_days = addField(tr(" d"), 999999, tr("Days"));
    m_hours = addField(tr(" h"), 23, tr("Hours"));
    m_minutes = addField(tr(" min"), 59, tr("Minutes"));
    m_seconds = addField(tr(" s"), 59, tr("Seconds"));
    m_days->setObjectName(QStringLiteral("offsetDays"));
    m_hours->setObjectName(QStringLiteral("offsetHours"));
    m_minutes->setObjectName(QStringLiteral("offsetMinutes"));
    m_seconds->setObjectName(QStringLiteral("offsetSeconds"));
    m_note->setObjectName(QStringLiteral("offsetNote"));
    m_note->setForegroundRole(QPalette::PlaceholderText);
    connect(m_direction, &QComboBox::currentIndexChanged, this, &OffsetBar::applyEntry);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(title);
    layout->addWidget(m_direction);
    for (QSpinBox *field : {m_days, m_hours, m_minutes, m_seconds})
        layout->addWidget(field);
    auto *reset = new QToolButton(this);
    reset->setText(tr("Reset"));
    reset->setObjectName(QStringLiteral("offsetReset"));
    reset->setToolTip(tr("Take the folder offset back to zero"));
    connect(reset, &QToolButton::clicked, this, [this] { m_changes.dateValuesReset(m_folders); });
    layout->addWidget(reset);
    layout->addSpacing(8);
    layout->addWidget(m_note, 1);
    showFolders({});
}

QSpinBox *OffsetBar::addField(const QString &suffix, int maximum, const QString &toolTip)
{
    auto *field = new QSpinBox(this);
    field->setRange(0, maximum);
    field->setSuffix(suffix);
    field->setToolTip(toolTip);
    field->setAlignment(Qt::AlignRight);
    // One change per finished entry, not one per digit typed.
    field->setKeyboardTracking(false);
    connect(field, &QSpinBox::valueChanged, this, &OffsetBar::applyEntry);
    return field;
}

void OffsetBar::showFolders(const QList<MySingleFolder *> &folders)
{
    m_folders = folders;
    refresh();
}

void OffsetBar::refresh()
{
    const FolderOffsetControls controls(m_folders);
    using Availability = FolderOffsetControls::Availability;
    const Availability availability = controls.availability();
    switch (availability) {
    case Availability::SeparateMode:
        m_note->setText(tr("Items here are changed one by one, so the folder offset is off."));
        break;
    case Availability::SlideshowOnly:
        m_note->setText(tr("Slideshow-only folder: its dates are neither read nor written."));
        break;
    case Availability::NoItems:
        m_note->clear();
        break;
    case Availability::Editable:
        m_note->setText(crossesDaylightSavingChange() ? tr("The shift crosses a daylight-saving change.")
                                                      : QString());
        break;
    }
    setEnabled(availability == Availability::Editable);

    const DateModifications shown = controls.shown();
    const QString direction = shown.value(dateModificationKey::direction, QStringLiteral("+"));
    {
        const QSignalBlocker blocker(m_direction);
        m_direction->setCurrentIndex(direction == MyCompoundFolder::differingValue ? -1
                                     : direction == QLatin1String("-")            ? Earlier
                                                                                  : Later);
    }
    showValue(m_days, shown.value(dateModificationKey::days, QStringLiteral("0")));
    showValue(m_hours, shown.value(dateModificationKey::hours, QStringLiteral("0")));
    showValue(m_minutes, shown.value(dateModificationKey::minutes, QStringLiteral("0")));
    showValue(m_seconds, shown.value(dateModificationKey::seconds, QStringLiteral("0")));
}

bool OffsetBar::crossesDaylightSavingChange() const
{
    const TimeZone zone = TimeZone::systemZone();
    bool crosses = false;
    for (MySingleFolder *folder : m_folders)
        crosses = DateChanges::validateDSTJumperType(*folder, zone) == 2 || crosses;
    return crosses;
}

void OffsetBar::showValue(QSpinBox *field, const QString &text)
{
    const QSignalBlocker blocker(field);
    const bool differs = text == MyCompoundFolder::differingValue;
    field->setMinimum(differs ? untouched : 0);
    field->setSpecialValueText(differs ? QStringLiteral("–") : QString());
    field->setValue(differs ? untouched : text.toInt());
}

OffsetEntry OffsetBar::entry() const
{
    const auto given = [](const QSpinBox *field) -> std::optional<int> {
        return field->value() == untouched ? std::nullopt : std::optional<int>(field->value());
    };
    OffsetEntry entry;
    if (m_direction->currentIndex() >= 0)
        entry.negative = m_direction->currentIndex() == Earlier;
    if (const std::optional<int> days = given(m_days))
        entry.days = *days;
    entry.hours = given(m_hours);
    entry.minutes = given(m_minutes);
    entry.seconds = given(m_seconds);
    return entry;
}

void OffsetBar::applyEntry()
{
    // Steps of one field are one gesture, and one undo step.
    const QString field = sender() ? sender()->objectName() : QString();
    // A refused or empty change leaves the folders as they were: show that again.
    if (m_changes.dateValuesModify(m_folders, entry(), field) != DateChangeResult::Changed)
        refresh();
}

} // namespace orv
