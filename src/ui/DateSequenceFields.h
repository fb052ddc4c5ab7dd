#pragma once

#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QWidget>

class QComboBox;
class QSpinBox;

namespace orv {

class OrvelleDatePicker;

// A start date and a step, as both import sheets ask them: dates handed out one after the
// other, the first at the start, each next one a step later.
class DateSequenceFields : public QWidget
{
    Q_OBJECT
public:
    enum StepKind : int { Seconds = 0, Minutes = 1, Hours = 2 };

    explicit DateSequenceFields(TimeZone zone, QWidget *parent = nullptr);

    void setValues(Instant start, qint64 stepValue, qint64 stepKind);
    Instant start() const;
    qint64 stepValue() const;
    qint64 stepKind() const;
    // A sheet may forbid a step of zero, which would give every file the same date.
    void setZeroStepAllowed(bool allowed);

private:
    OrvelleDatePicker *m_start;
    QSpinBox *m_step;
    QComboBox *m_unit;
};

} // namespace orv
