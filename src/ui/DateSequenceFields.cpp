#include "ui/DateSequenceFields.h"

#include "ui/OrvelleDatePicker.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QSpinBox>

#include <algorithm>

namespace orv {

DateSequenceFields::DateSequenceFields(TimeZone zone, QWidget *parent)
    : QWidget(parent),
      m_start(new OrvelleDatePicker(std::move(zone), this)),
      m_step(new QSpinBox(this)),
      m_unit(new QComboBox(this))
{
    m_step->setRange(0, 9999);
    m_unit->addItem(tr("seconds"), Seconds);
    m_unit->addItem(tr("minutes"), Minutes);
    m_unit->addItem(tr("hours"), Hours);

    auto *step = new QHBoxLayout;
    step->addWidget(m_step);
    step->addWidget(m_unit);
    step->addStretch();
    auto *form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(tr("First date:"), m_start);
    form->addRow(tr("Each next file:"), step);
    m_step->setPrefix(tr("+ "));
}

void DateSequenceFields::setValues(Instant start, qint64 stepValue, qint64 stepKind)
{
    m_start->setDateValue(start);
    m_step->setValue(int(std::clamp<qint64>(stepValue, m_step->minimum(), m_step->maximum())));
    m_unit->setCurrentIndex(std::max(0, m_unit->findData(int(std::clamp<qint64>(stepKind, Seconds, Hours)))));
}

Instant DateSequenceFields::start() const { return m_start->dateValue(); }

qint64 DateSequenceFields::stepValue() const { return m_step->value(); }

qint64 DateSequenceFields::stepKind() const { return m_unit->currentData().toLongLong(); }

void DateSequenceFields::setZeroStepAllowed(bool allowed) { m_step->setMinimum(allowed ? 0 : 1); }

} // namespace orv
