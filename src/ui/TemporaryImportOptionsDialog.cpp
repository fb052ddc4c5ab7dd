#include "ui/TemporaryImportOptionsDialog.h"

#include "ui/DateSequenceFields.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace orv {

namespace {

QWidget *radioColumn(QButtonGroup *group, const QList<std::pair<int, QString>> &choices, int checked, QWidget *parent)
{
    auto *column = new QWidget(parent);
    auto *layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    for (const auto &[id, text] : choices) {
        auto *button = new QRadioButton(text, column);
        group->addButton(button, id);
        button->setChecked(id == checked);
        layout->addWidget(button);
    }
    return column;
}

QString subfoldersText(qint64 maxDepth)
{
    if (maxDepth < 2)
        return TemporaryImportOptionsDialog::tr("Include subfolders (one level down)");
    return TemporaryImportOptionsDialog::tr("Include subfolders (up to %1 levels down)").arg(maxDepth);
}

} // namespace

TemporaryImportOptionsDialog::TemporaryImportOptionsDialog(const TemporaryImportOptions &preset, bool alwaysShown,
                                                           TimeZone zone, QWidget *parent)
    : QDialog(parent),
      m_preset(preset),
      m_kind(new QButtonGroup(this)),
      m_editMode(new QButtonGroup(this)),
      m_subfolders(new QCheckBox(subfoldersText(preset.subFolderAutoImportMaxDepth), this)),
      m_groupFiles(new QCheckBox(tr("Group RAW+JPEG pairs and Live Photos"), this)),
      m_correctDates(new QCheckBox(tr("Correct the files’ own dates where they are off"), this)),
      m_sequenceEnabled(new QCheckBox(tr("Give all files dates in a row, in name order"), this)),
      m_sequence(new DateSequenceFields(std::move(zone), this)),
      m_filterEnabled(new QCheckBox(tr("Filter by file type"), this)),
      m_filterType(new QComboBox(this)),
      m_filterText(new QLineEdit(this)),
      m_warning(new QLabel(this)),
      m_alwaysShown(new QCheckBox(tr("Show these options at every import"), this))
{
    setWindowTitle(tr("Import Options"));
    // Names for the tests, which set the fields as a user would.
    m_subfolders->setObjectName(QStringLiteral("subfolders"));
    m_sequenceEnabled->setObjectName(QStringLiteral("sequenceEnabled"));
    m_filterEnabled->setObjectName(QStringLiteral("filterEnabled"));
    m_filterType->setObjectName(QStringLiteral("filterType"));
    m_filterText->setObjectName(QStringLiteral("filterText"));
    m_alwaysShown->setObjectName(QStringLiteral("alwaysShown"));
    m_warning->setObjectName(QStringLiteral("warning"));

    auto *form = new QFormLayout;
    form->addRow(tr("Import as:"), buildKindChoice());
    form->addRow(tr("Dates:"), buildEditModeChoice());

    m_subfolders->setChecked(preset.tioAddSubfolders);
    m_groupFiles->setChecked(preset.tioGroupFiles);
    m_correctDates->setChecked(preset.tioCorrectDates);
    auto *files = new QWidget(this);
    auto *filesLayout = new QVBoxLayout(files);
    filesLayout->setContentsMargins(0, 0, 0, 0);
    filesLayout->addWidget(m_subfolders);
    filesLayout->addWidget(m_groupFiles);
    filesLayout->addWidget(m_correctDates);
    form->addRow(tr("Files:"), files);

    auto *sequence = new QGroupBox(this);
    auto *sequenceLayout = new QVBoxLayout(sequence);
    m_sequenceEnabled->setChecked(preset.tioDateSequenceEnabled);
    m_sequence->setValues(preset.prefFixDateDate.value_or(Instant(double(QDateTime::currentSecsSinceEpoch()))),
                          preset.prefFixDateStepValue, preset.prefFixDateStepperKind);
    // Step 0 would give every file of the drop the same date.
    m_sequence->setZeroStepAllowed(false);
    m_sequence->setEnabled(preset.tioDateSequenceEnabled);
    connect(m_sequenceEnabled, &QCheckBox::toggled, m_sequence, &QWidget::setEnabled);
    connect(m_sequenceEnabled, &QCheckBox::toggled, this, &TemporaryImportOptionsDialog::updateWarning);
    sequenceLayout->addWidget(m_sequenceEnabled);
    sequenceLayout->addWidget(m_sequence);

    m_warning->setWordWrap(true);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("Import"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_alwaysShown->setChecked(alwaysShown);
    m_alwaysShown->setToolTip(tr("Otherwise hold the Alt key while dropping or opening to see them"));

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(sequence);
    layout->addWidget(buildFilter());
    if (preset.tioHasCurrentImportPartialsState == TemporaryImportOptions::SingleFilesRefused) {
        auto *partials = new QLabel(tr("Single files in this drop are left out: importing single files is off."),
                                    this);
        partials->setWordWrap(true);
        layout->addWidget(partials);
    }
    layout->addWidget(m_warning);
    layout->addWidget(m_alwaysShown);
    layout->addWidget(buttons);
    updateWarning();
}

QWidget *TemporaryImportOptionsDialog::buildKindChoice()
{
    connect(m_kind, &QButtonGroup::idToggled, this, &TemporaryImportOptionsDialog::updateWarning);
    return radioColumn(m_kind,
                       {{int(FolderKind::Normal), tr("Normal: dates, places and previews")},
                        {int(FolderKind::Express), tr("Express: dates and places now, previews later")},
                        {int(FolderKind::SlideshowOnly), tr("Slideshow only: show the files, read nothing from them")}},
                       int(m_preset.tioFolderType), this);
}

QWidget *TemporaryImportOptionsDialog::buildEditModeChoice()
{
    return radioColumn(m_editMode,
                       {{0, tr("Move a folder’s items together")}, {1, tr("Move each item on its own")}},
                       m_preset.tioEditMode, this);
}

QWidget *TemporaryImportOptionsDialog::buildFilter()
{
    auto *box = new QGroupBox(this);
    m_filterEnabled->setChecked(m_preset.tioFilterEnabled);
    m_filterType->addItem(tr("Keep only"), 0);
    m_filterType->addItem(tr("Leave out"), 1);
    m_filterType->setCurrentIndex(std::max(0, m_filterType->findData(m_preset.tioFilterType)));
    m_filterText->setText(m_preset.tioFilterValues);
    m_filterText->setPlaceholderText(tr(".mov, .mp4"));
    for (QWidget *field : {static_cast<QWidget *>(m_filterType), static_cast<QWidget *>(m_filterText)}) {
        field->setEnabled(m_preset.tioFilterEnabled);
        connect(m_filterEnabled, &QCheckBox::toggled, field, &QWidget::setEnabled);
    }
    auto *note = new QLabel(tr("XMP and AAE sidecars always come along with their files."), box);
    note->setEnabled(false);

    auto *row = new QHBoxLayout;
    row->addWidget(m_filterType);
    row->addWidget(m_filterText, 1);
    auto *layout = new QVBoxLayout(box);
    layout->addWidget(m_filterEnabled);
    layout->addLayout(row);
    layout->addWidget(note);
    return box;
}

void TemporaryImportOptionsDialog::updateWarning()
{
    const bool slideshow = m_kind->checkedId() == int(FolderKind::SlideshowOnly);
    m_warning->setVisible(slideshow && m_sequenceEnabled->isChecked());
    m_warning->setText(tr("⚠ Slideshow-only folders keep no dates: the date sequence leaves their files alone."));
}

TemporaryImportOptions TemporaryImportOptionsDialog::options() const
{
    TemporaryImportOptions options = m_preset;
    options.tioFolderType = FolderKind(m_kind->checkedId());
    options.tioEditMode = m_editMode->checkedId();
    options.tioAddSubfolders = m_subfolders->isChecked();
    options.tioGroupFiles = m_groupFiles->isChecked();
    options.tioCorrectDates = m_correctDates->isChecked();
    options.tioDateSequenceEnabled = m_sequenceEnabled->isChecked();
    options.prefFixDateDate = m_sequence->start();
    options.prefFixDateStepValue = m_sequence->stepValue();
    options.prefFixDateStepperKind = m_sequence->stepKind();
    options.tioFilterEnabled = m_filterEnabled->isChecked();
    options.tioFilterType = m_filterType->currentData().toInt();
    options.tioFilterValues = m_filterText->text();
    return options;
}

bool TemporaryImportOptionsDialog::alwaysShown() const
{
    return m_alwaysShown->isChecked();
}

} // namespace orv
