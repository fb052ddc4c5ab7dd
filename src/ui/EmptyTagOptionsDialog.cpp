#include "ui/EmptyTagOptionsDialog.h"

#include "ui/DateSequenceFields.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace orv {

EmptyTagOptionsDialog::EmptyTagOptionsDialog(const QString &folderName, const ImportOptions &preset,
                                             TimeZone zone, QWidget *parent)
    : QDialog(parent),
      m_preset(preset),
      m_useFileDate(new QRadioButton(tr("Use each file’s own date"), this)),
      m_useFixedDates(new QRadioButton(tr("Give them fixed dates:"), this)),
      m_sequence(new DateSequenceFields(std::move(zone), this)),
      m_dontAskAgain(new QCheckBox(tr("Always use the file’s date and don’t ask again"), this))
{
    setWindowTitle(tr("Empty Date Tags"));
    auto *message = new QLabel(tr("<b>Some files in “%1” have date tags with no date in them.</b>"
                                  "<p>Which date should these files get? Nothing is written to them "
                                  "until you save.</p>")
                                   .arg(folderName.toHtmlEscaped()),
                               this);
    message->setWordWrap(true);

    m_sequence->setValues(preset.prefFixDateDate.value_or(Instant()), qint64(preset.prefFixDateStepValue),
                          preset.prefFixDateStepperKind);
    m_useFileDate->setChecked(!preset.usesFixedDate());
    m_useFixedDates->setChecked(preset.usesFixedDate());
    m_sequence->setEnabled(preset.usesFixedDate());
    connect(m_useFixedDates, &QRadioButton::toggled, m_sequence, &QWidget::setEnabled);
    // Never asking again can only mean the file date: a fixed start would be a guess next time.
    connect(m_useFileDate, &QRadioButton::toggled, m_dontAskAgain, &QWidget::setEnabled);
    m_dontAskAgain->setEnabled(m_useFileDate->isChecked());

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Continue Import"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(message);
    layout->addWidget(m_useFileDate);
    layout->addWidget(m_useFixedDates);
    auto *indented = new QVBoxLayout;
    indented->setContentsMargins(24, 0, 0, 0);
    indented->addWidget(m_sequence);
    layout->addLayout(indented);
    layout->addSpacing(8);
    layout->addWidget(m_dontAskAgain);
    layout->addWidget(buttons);
}

ImportOptions EmptyTagOptionsDialog::answer() const
{
    ImportOptions options = m_preset;
    if (m_useFixedDates->isChecked()) {
        options.withEmptyExifFixDate = ImportOptions::UseFixedDate;
        options.prefFixDateDate = m_sequence->start();
        options.prefFixDateStepValue = double(m_sequence->stepValue());
        options.prefFixDateStepperKind = int(m_sequence->stepKind());
        options.intervalStepper = 0.0;
    } else {
        options.withEmptyExifFixDate = ImportOptions::UseFileDate;
    }
    return options;
}

bool EmptyTagOptionsDialog::dontAskAgain() const
{
    return m_useFileDate->isChecked() && m_dontAskAgain->isChecked();
}

} // namespace orv
