#include "ui/PreSaveSummaryDialog.h"

#include "core/DateDisplay.h"
#include "core/MySinglePic.h"
#include "ui/PreviewsBar.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QTreeWidget>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orv {

namespace {

enum Column : int { ItemColumn, NowColumn, AfterColumn, WhyColumn, ColumnCount };

constexpr int thumbSide = 50;

QString dateText(const SavedDate &date, const OptionalDate &value)
{
    // The GPS time is kept in UTC; everything else reads in the local clock, as the list shows it.
    return DateDisplay::localDateTime(value, date.slot == SavedDate::GpsTime ? TimeZone::utc() : TimeZone::systemZone());
}

MySinglePic *picOf(const QTreeWidgetItem &row)
{
    return static_cast<MySinglePic *>(row.data(ItemColumn, Qt::UserRole).value<void *>());
}

} // namespace

PreSaveSummaryDialog::PreSaveSummaryDialog(const PreSaveSummary &summary, const Thumbnail &thumbnail, bool everySave,
                                           QWidget *parent)
    : QDialog(parent),
      m_table(new QTreeWidget(this)),
      m_everySave(new QCheckBox(tr("Show this summary before every save"), this))
{
    setWindowTitle(tr("Before Saving"));
    const qsizetype problems = summary.problemCount();
    const qsizetype files = summary.items().size();
    auto *heading = new QLabel(problems == 0 && files == 1 ? tr("<b>The save will change one file as listed</b>")
                               : problems == 0 ? tr("<b>The save will change %1 files as listed</b>").arg(files)
                               : problems == 1 ? tr("<b>One problem found before saving</b>")
                                               : tr("<b>%1 problems found before saving</b>").arg(problems),
                               this);
    heading->setObjectName(QStringLiteral("preSaveHeading"));
    auto *subline = new QLabel(problems == 0 ? tr("Each row shows the dates the save writes into the file, "
                                                  "including those that follow from the new capture date.")
                                             : tr("The files with a problem come first and may not be saved as you "
                                                  "expect. Everything else is saved as listed."),
                               this);
    subline->setWordWrap(true);

    m_table->setObjectName(QStringLiteral("preSaveItems"));
    m_table->setColumnCount(ColumnCount);
    m_table->setHeaderLabels({tr("Item"), tr("Now in the file"), tr("After the save"), tr("Why")});
    m_table->setIconSize(QSize(thumbSide, thumbSide));
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setAlternatingRowColors(true);
    m_table->header()->setStretchLastSection(true);
    fillTable(summary, thumbnail);
    m_table->header()->resizeSections(QHeaderView::ResizeToContents);
    if (QTreeWidgetItem *first = m_table->topLevelItem(0))
        m_table->setCurrentItem(first);

    auto *buttons = new QDialogButtonBox(this);
    QPushButton *save = buttons->addButton(problems == 0 ? tr("Save") : tr("Save Anyway"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel)->setToolTip(
        tr("Write nothing; the items selected here are selected in the window"));
    save->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(subline);
    layout->addWidget(m_table, 1);
    m_everySave->setChecked(everySave);
    m_everySave->setToolTip(tr("Off: the summary comes only when something stands in the way of a save"));
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_everySave, 1);
    bottom->addWidget(buttons);
    layout->addLayout(bottom);
    resize(900, 520);
}

void PreSaveSummaryDialog::fillTable(const PreSaveSummary &summary, const Thumbnail &thumbnail)
{
    for (const PreSaveItem &item : summary.items()) {
        auto *row = new QTreeWidgetItem(m_table);
        row->setText(ItemColumn, item.pic->spName);
        row->setToolTip(ItemColumn, item.pic->spPath());
        row->setData(ItemColumn, Qt::UserRole, QVariant::fromValue(static_cast<void *>(item.pic)));
        row->setIcon(ItemColumn, PreviewsBar::squarePixmap(thumbnail ? thumbnail(*item.pic) : QImage(), thumbSide));
        if (!item.problems.isEmpty()) {
            row->setText(WhyColumn, item.problems.join(QLatin1Char('\n')));
            row->setToolTip(WhyColumn, row->text(WhyColumn));
            row->setForeground(WhyColumn, palette().brush(QPalette::Active, QPalette::Link));
        } else if (item.changes.isEmpty()) {
            row->setText(WhyColumn, tr("no date changes"));
        }
        if (item.xmpRating) {
            auto *rating = new QTreeWidgetItem(row);
            rating->setText(ItemColumn, tr("Rating (xmp:Rating)"));
            const std::optional<qint8> held = item.pic->fileRating;
            rating->setText(NowColumn, held ? QString::number(*held) : tr("none"));
            rating->setText(AfterColumn, QString::number(*item.xmpRating));
        }
        for (const SavedDate &date : item.changes) {
            auto *slot = new QTreeWidgetItem(row);
            slot->setText(ItemColumn, date.slotName());
            slot->setText(NowColumn, dateText(date, date.oldDate));
            slot->setText(AfterColumn, dateText(date, date.newDate));
            slot->setText(WhyColumn, date.ruleText());
            slot->setToolTip(WhyColumn, date.ruleText());
        }
    }
    m_table->expandAll();
}

bool PreSaveSummaryDialog::showsEverySave() const
{
    return m_everySave->isChecked();
}

QList<MySinglePic *> PreSaveSummaryDialog::chosenPics() const
{
    // A date row picks its item.
    QSet<const QTreeWidgetItem *> rows;
    for (const QTreeWidgetItem *selected : m_table->selectedItems())
        rows.insert(selected->parent() ? selected->parent() : selected);
    QList<MySinglePic *> chosen;
    for (int i = 0; i < m_table->topLevelItemCount(); ++i)
        if (rows.contains(m_table->topLevelItem(i)))
            chosen.append(picOf(*m_table->topLevelItem(i)));
    return chosen;
}

QList<MySinglePic *> PreSaveSummaryDialog::listedPics() const
{
    QList<MySinglePic *> listed;
    for (int i = 0; i < m_table->topLevelItemCount(); ++i)
        listed.append(picOf(*m_table->topLevelItem(i)));
    return listed;
}

} // namespace orv
