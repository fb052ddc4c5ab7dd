#include "ui/MyTimeZonePickerController.h"

#include "app/DateChanges.h"
#include "core/DateDisplay.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "folders/ZoneCorrection.h"
#include "places/ZoneNames.h"
#include "ui/ZonePlaceSearchField.h"

#include <QComboBox>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTimeZone>
#include <QVBoxLayout>

#include <functional>

namespace orv {

namespace {

enum Column { NameColumn, BeforeColumn, AfterColumn, FindingsColumn, OtherHourColumn, ColumnCount };

// A searchable list of the tz database's zones behind the special names of the selector, each
// in the user's language with its id after it ("Europa / Lissabon (Europe/Lisbon)"), so either
// finds it.
QComboBox *zoneSelector(const QList<std::pair<QString, QString>> &specials, const ZoneNames &names, QWidget *parent)
{
    auto *box = new QComboBox(parent);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    for (const auto &[text, name] : specials)
        box->addItem(text, name);
    for (const QByteArray &latin1 : QTimeZone::availableTimeZoneIds()) {
        const QString id = QString::fromLatin1(latin1);
        const QString local = names.zone(id);
        box->addItem(local == id ? id : QStringLiteral("%1 (%2)").arg(local, id), id);
    }
    box->completer()->setFilterMode(Qt::MatchContains);
    box->completer()->setCompletionMode(QCompleter::PopupCompletion);
    return box;
}

void showName(QComboBox &box, const std::optional<QString> &name, const QString &none)
{
    int index = box.findData(name.value_or(none));
    // A zone chosen by a place, or kept by a folder, that the list lacks joins it.
    if (index < 0 && name) {
        box.addItem(*name, *name);
        index = box.count() - 1;
    }
    box.setCurrentIndex(index);
}

QString findingsText(const ZonePreview &p)
{
    QStringList parts;
    if (p.findings.divergence)
        parts << MyTimeZonePickerController::tr("hour skipped by the zone");
    if (p.findings.ambiguity)
        parts << MyTimeZonePickerController::tr("hour repeated by the zone");
    if (p.offsetSpecialCase == DstSpecialCase::Ambiguous)
        parts << MyTimeZonePickerController::tr("offset in a repeated hour");
    if (p.offsetSpecialCase == DstSpecialCase::Invalid)
        parts << MyTimeZonePickerController::tr("offset in a skipped hour");
    if (p.offsetDifference != 0.0)
        parts << MyTimeZonePickerController::tr("stored offset off by %1 h").arg(p.offsetDifference / 3600.0);
    if (p.gpsDifference != 0.0)
        parts << MyTimeZonePickerController::tr("GPS time off by %1 h").arg(p.gpsDifference / 3600.0, 0, 'f', 1);
    if (p.isAmbiguousAtExport)
        parts << MyTimeZonePickerController::tr("new time repeated in the target zone");
    return parts.join(QStringLiteral("; "));
}

// One change of the sheet's working state; undo puts back the state before it.
template <typename State>
class SheetCommand : public QUndoCommand
{
public:
    SheetCommand(const QString &text, State before, State after, std::function<void(const State &)> apply)
        : QUndoCommand(text), m_before(std::move(before)), m_after(std::move(after)), m_apply(std::move(apply))
    {
    }
    void undo() override { m_apply(m_before); }
    void redo() override { m_apply(m_after); }

private:
    State m_before, m_after;
    std::function<void(const State &)> m_apply;
};

} // namespace

MyTimeZonePickerController::MyTimeZonePickerController(DateChanges &changes, MySingleFolder &folder, QWidget *parent)
    : QDialog(parent), m_changes(changes), m_folder(folder), m_pics(folder.sortedSfPicDetails_Full()),
      m_source(folder.sourceTimeZones), m_target(folder.targetTimeZones)
{
    setWindowTitle(tr("Time Zone Correction"));
    setObjectName(QStringLiteral("timeZonePicker"));
    for (MySinglePic *pic : std::as_const(m_pics))
        m_choices.insert(pic, pic->usesAltTimeAtAmbiguityReason);

    const ZoneNames names(locale());
    m_sourceBox = zoneSelector({{tr("System zone"), zoneName::system}}, names, this);
    m_targetBox = zoneSelector({{tr("System zone"), zoneName::system},
                                {tr("Same as the source"), zoneName::unchangedLeftFolder}},
                               names, this);
    m_sourceBox->setObjectName(QStringLiteral("sourceZone"));
    m_targetBox->setObjectName(QStringLiteral("targetZone"));
    // Each selector can also be set by a place: "Lisb" offers Lisbon with Europe/Lisbon.
    const auto placeSearch = [this](const QString &name, bool forTarget) {
        auto *field = new ZonePlaceSearchField(this);
        field->setObjectName(name);
        connect(field, &ZonePlaceSearchField::zoneChosen, this,
                [this, forTarget](const QString &zone) { selectZoneName(zone, forTarget); });
        return field;
    };
    auto *form = new QFormLayout;
    form->addRow(tr("Stamps were written in:"), m_sourceBox);
    form->addRow(QString(), placeSearch(QStringLiteral("sourcePlaceSearch"), false));
    form->addRow(tr("Save them in:"), m_targetBox);
    form->addRow(QString(), placeSearch(QStringLiteral("targetPlaceSearch"), true));

    m_table = new QTableWidget(0, ColumnCount, this);
    m_table->setHorizontalHeaderLabels({tr("File"), tr("Before (source zone)"), tr("After (target zone)"),
                                        tr("Findings"), tr("Other hour")});
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_details = new QLabel(this);
    m_details->setWordWrap(true);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton *undo = buttons->addButton(tr("Undo"), QDialogButtonBox::ActionRole);
    QPushButton *redo = buttons->addButton(tr("Redo"), QDialogButtonBox::ActionRole);
    connect(undo, &QPushButton::clicked, &m_undo, &QUndoStack::undo);
    connect(redo, &QPushButton::clicked, &m_undo, &QUndoStack::redo);
    connect(&m_undo, &QUndoStack::canUndoChanged, undo, &QWidget::setEnabled);
    connect(&m_undo, &QUndoStack::canRedoChanged, redo, &QWidget::setEnabled);
    undo->setEnabled(false);
    redo->setEnabled(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_details);
    layout->addWidget(buttons);

    const auto picked = [this](QComboBox *box, bool forTarget) {
        connect(box, &QComboBox::activated, this, [this, box, forTarget](int index) {
            if (!m_reloading)
                selectZoneName(box->itemData(index).toString(), forTarget);
        });
    };
    picked(m_sourceBox, false);
    picked(m_targetBox, true);
    connect(m_table, &QTableWidget::itemChanged, this, [this](QTableWidgetItem *item) {
        if (!m_reloading && item->column() == OtherHourColumn)
            useAmbiguityAlternative(item->row(), item->checkState() == Qt::Checked);
    });
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &MyTimeZonePickerController::updateSelectionDetails);
    reload();
    resize(900, 520);
}

void MyTimeZonePickerController::selectZoneName(const QString &name, bool forTarget)
{
    Zones after{m_source, m_target};
    std::optional<QString> &slot = forTarget ? after.target.defaultZone : after.source.defaultZone;
    // The system zone is never stored as a source: the folder simply has none.
    slot = !forTarget && name == zoneName::system ? std::nullopt : std::optional<QString>(name);
    if (after.source == m_source && after.target == m_target)
        return;
    m_undo.push(new SheetCommand<Zones>(forTarget ? tr("Target Zone") : tr("Source Zone"), {m_source, m_target},
                                        after, [this](const Zones &zones) { setZones(zones); }));
}

void MyTimeZonePickerController::useAmbiguityAlternative(int row, bool on)
{
    QHash<MySinglePic *, qint64> after = m_choices;
    after[m_pics.at(row)] = on ? 1 : 0;
    if (after == m_choices)
        return;
    m_undo.push(new SheetCommand<QHash<MySinglePic *, qint64>>(
        tr("Other Hour"), m_choices, after, [this](const QHash<MySinglePic *, qint64> &c) { setChoices(c); }));
}

void MyTimeZonePickerController::setZones(const Zones &zones)
{
    m_source = zones.source;
    m_target = zones.target;
    reload();
}

void MyTimeZonePickerController::setChoices(const QHash<MySinglePic *, qint64> &choices)
{
    m_choices = choices;
    reload();
}

void MyTimeZonePickerController::reload()
{
    m_reloading = true;
    showName(*m_sourceBox, m_source.defaultZone, zoneName::system);
    showName(*m_targetBox, m_target.defaultZone, zoneName::system);
    const ZoneProvider zones{m_source, m_target};
    m_table->setRowCount(int(m_pics.size()));
    for (int row = 0; row < m_pics.size(); ++row) {
        MySinglePic *pic = m_pics[row];
        const ZonePreview p = ZoneCorrection::preview(*pic, zones, m_choices.value(pic));
        const auto cell = [&](int column, const QString &text) {
            m_table->setItem(row, column, new QTableWidgetItem(text));
        };
        cell(NameColumn, pic->spName);
        cell(BeforeColumn, DateDisplay::localDateTime(p.dateInSource, p.source));
        cell(AfterColumn, DateDisplay::localDateTime(p.newDate, p.target));
        cell(FindingsColumn, findingsText(p));
        auto *choice = new QTableWidgetItem;
        choice->setFlags(p.isAmbiguousAtImport ? Qt::ItemIsUserCheckable | Qt::ItemIsEnabled : Qt::ItemFlags());
        choice->setCheckState(m_choices.value(pic) != 0 ? Qt::Checked : Qt::Unchecked);
        m_table->setItem(row, OtherHourColumn, choice);
    }
    m_reloading = false;
    updateSelectionDetails();
}

void MyTimeZonePickerController::updateSelectionDetails()
{
    const QModelIndexList rows = m_table->selectionModel()->selectedRows();
    if (rows.size() != 1) {
        m_details->setText(rows.isEmpty() ? tr("Select an item to see its dates in both zones.")
                                          : tr("%n items selected.", nullptr, int(rows.size())));
        return;
    }
    MySinglePic *pic = m_pics.at(rows.first().row());
    const ZonePreview p = ZoneCorrection::preview(*pic, ZoneProvider{m_source, m_target}, m_choices.value(pic));
    QString text = tr("%1: read in %2 as %3, written in %4 as %5.")
                       .arg(pic->spName, p.source.name(), DateDisplay::localDateTime(p.dateInSource, p.source),
                            p.target.name(), DateDisplay::localDateTime(p.newDate, p.target));
    if (const QString findings = findingsText(p); !findings.isEmpty())
        text += QLatin1Char(' ') + findings + QLatin1Char('.');
    m_details->setText(text);
}

void MyTimeZonePickerController::accept()
{
    QList<ZoneChangeCommand::ChoiceChange> choices;
    for (MySinglePic *pic : std::as_const(m_pics))
        choices.append({pic, pic->usesAltTimeAtAmbiguityReason, m_choices.value(pic)});
    m_changes.changeTimeZones({{&m_folder, {m_folder.sourceTimeZones, m_folder.targetTimeZones}, {m_source, m_target}}},
                              choices);
    m_undo.clear();
    QDialog::accept();
}

} // namespace orv
