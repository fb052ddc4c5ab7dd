#include "ui/RenameSheet.h"

#include "app/AppController.h"
#include "core/MySinglePic.h"
#include "core/Preferences.h"
#include "formats/SaveJournal.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace orv {

namespace {

const QString problemColour = QStringLiteral("#c0392b");
const QString warningColour = QStringLiteral("#d35400");

QString coloured(const QString &text, const QString &colour)
{
    return QStringLiteral("<span style=\"color:%1\">%2</span>").arg(colour, text.toHtmlEscaped());
}

} // namespace

RenameSheet::RenameSheet(AppController &controller, QList<MySinglePic *> pics, NameChangeCommand::Changed changed,
                         QWidget *parent)
    : QDialog(parent), m_controller(controller), m_pics(RenameRun::inDateOrder(std::move(pics))),
      m_changed(std::move(changed)), m_templates(new QComboBox(this)), m_template(new QLineEdit(this)),
      m_samples(new QTableWidget(0, 2, this)), m_alert(new QLabel(this)),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Cancel, this))
{
    setObjectName(QStringLiteral("renameSheet"));
    setWindowTitle(tr("Rename %n File(s)", nullptr, int(m_pics.size())));
    m_template->setObjectName(QStringLiteral("renameTemplate"));
    m_samples->setObjectName(QStringLiteral("renameSheetTable"));
    m_alert->setObjectName(QStringLiteral("renameAlert"));
    m_alert->setWordWrap(true);

    const Preferences &prefs = controller.prefs();
    for (const RenameTemplate &saved :
         RenameTemplate::listFromArchive(prefs.archiveForKey(QStringLiteral("renameTemplates_7"))))
        m_templates->addItem(saved.plainText());
    connect(m_templates, &QComboBox::currentTextChanged, m_template, &QLineEdit::setText);
    m_templates->setCurrentIndex(int(prefs.integerForKey(QStringLiteral("templateSelectedIndex"))));
    m_template->setText(m_templates->currentText());
    m_template->setToolTip(tr("Text with elements in braces: {year} {year2} {month} {month1} {day} {hour} "
                              "{minute} {second} {counter} {counter:N} {folder} {text} {name} {camera}"));

    auto *form = new QFormLayout;
    form->addRow(tr("Template:"), m_templates);
    form->addRow(QString(), m_template);
    const NameSettings fromPreferences = NameSettings::fromPreferences(prefs);
    for (std::size_t i = 0; i < m_texts.size(); ++i) {
        m_texts[i] = new QLineEdit(fromPreferences.additionalTexts.value(qsizetype(i)), this);
        form->addRow(tr("Text %1:").arg(i + 1), m_texts[i]);
        connect(m_texts[i], &QLineEdit::textChanged, this, &RenameSheet::refreshSampleNames);
    }
    connect(m_template, &QLineEdit::textChanged, this, &RenameSheet::refreshSampleNames);

    m_samples->setHorizontalHeaderLabels({tr("Old name"), tr("New name")});
    m_samples->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_samples->verticalHeader()->hide();
    m_samples->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_samples->setSelectionMode(QAbstractItemView::NoSelection);

    m_renameButton = m_buttons->addButton(tr("Rename"), QDialogButtonBox::AcceptRole);
    m_renameButton->setObjectName(QStringLiteral("renameSheetButtonRename"));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &RenameSheet::rename);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_samples, 1);
    layout->addWidget(m_alert);
    layout->addWidget(m_buttons);
    resize(640, 480);
    refreshSampleNames();
}

void RenameSheet::refreshSampleNames()
{
    const ParsedTemplate parsed = RenameTemplate::fromPlainText(m_template->text());
    QStringList alerts;
    m_plan.clear();
    if (!parsed.result) {
        alerts << coloured(parsed.problem, problemColour);
    } else {
        NameSettings settings = NameSettings::fromPreferences(m_controller.prefs());
        settings.renameTemplate = *parsed.result;
        for (std::size_t i = 0; i < m_texts.size(); ++i) {
            settings.additionalTexts[qsizetype(i)] = m_texts[i]->text();
            m_texts[i]->setEnabled(int(i) < parsed.result->uses(NameElement::AdditionalText));
        }
        if (parsed.result->status() == RenameTemplate::Status::NeverVaries)
            alerts << coloured(tr("Every file would get the same name: add a date element, the counter or the old "
                                  "name."),
                               problemColour);
        else
            m_plan = RenameRun(settings, RenameRun::Counter::fromPreferences(m_controller.prefs())).plan(m_pics);
        if (parsed.result->status() == RenameTemplate::Status::MayCollide)
            alerts << coloured(tr("Names may meet: a taken name gets a number."), warningColour);
    }
    const QStringList clashes = RenameRun::checkPlan(m_plan);
    for (const QString &clash : clashes)
        alerts << coloured(clash, problemColour);
    m_samples->setRowCount(int(m_plan.size()));
    int moving = 0;
    for (int row = 0; row < int(m_plan.size()); ++row) {
        const RenameItem &item = m_plan[std::size_t(row)];
        auto *old = new QTableWidgetItem(QStringLiteral("   ") + item.from.join(QStringLiteral(", ")));
        auto *fresh = new QTableWidgetItem(item.problem.isEmpty() ? item.to.join(QStringLiteral(", ")) : item.problem);
        if (!item.problem.isEmpty())
            old->setForeground(QColor(problemColour));
        else if (item.numberAdded)
            fresh->setForeground(QColor(warningColour));
        moving += item.moves();
        m_samples->setItem(row, 0, old);
        m_samples->setItem(row, 1, fresh);
    }
    alerts.prepend(tr("%n file(s) will be renamed.", nullptr, moving));
    m_alert->setText(alerts.join(QStringLiteral("<br>")));
    m_renameButton->setEnabled(moving > 0 && clashes.isEmpty());
}

void RenameSheet::rename()
{
    QString problem;
    if (!NameChangeCommand::renameAndRecord(m_controller.uManager(), m_plan, SaveJournal::defaultPath(), m_changed,
                                            problem)) {
        QMessageBox::warning(this, windowTitle(), tr("Nothing was renamed: %1").arg(problem));
        return;
    }
    accept();
}

} // namespace orv
