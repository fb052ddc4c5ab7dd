#include "ui/InfoView.h"

#include "core/DateDisplay.h"
#include "core/DateSourceText.h"
#include "core/MySinglePic.h"
#include "core/PreSaveSummary.h"
#include "core/SaveSettings.h"
#include "folders/MySingleFolder.h"
#include "ui/PicTableModel.h"

#include <QLabel>
#include <cmath>
#include <QScrollArea>
#include <QVBoxLayout>

namespace orv {

namespace {

// "+1 d 02:00:05", "−0:30:00"; an offset is whole seconds.
QString offsetText(double seconds)
{
    const qint64 total = qint64(std::llround(std::abs(seconds)));
    const QString sign = seconds < 0 ? QStringLiteral("−") : QStringLiteral("+");
    const qint64 days = total / 86400;
    const QString clock = QString::asprintf("%lld:%02lld:%02lld", (total % 86400) / 3600, (total % 3600) / 60, total % 60);
    return sign + (days > 0 ? QStringLiteral("%1 d ").arg(days) : QString()) + clock;
}

QString row(const QString &name, const QString &value)
{
    return QStringLiteral("<tr><td><b>%1</b></td><td colspan=2>%2</td></tr>").arg(name.toHtmlEscaped(), value.toHtmlEscaped());
}

} // namespace

InfoView::InfoView(const Preferences &prefs, const PicTableModel &cells, QWidget *parent)
    : QWidget(parent), m_prefs(prefs), m_cells(cells), m_label(new QLabel(this))
{
    setObjectName(QStringLiteral("infoView"));
    m_label->setTextFormat(Qt::RichText);
    m_label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_label->setWordWrap(true);
    m_label->setMargin(8);
    auto *scroll = new QScrollArea(this);
    scroll->setWidget(m_label);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);
    showPic(nullptr);
}

QString InfoView::text() const
{
    return m_label->text();
}

void InfoView::showPic(MySinglePic *pic)
{
    if (!pic) {
        m_label->setText(tr("<i>Select an item to see its dates, offsets and place.</i>"));
        return;
    }
    const TimeZone zone = TimeZone::systemZone();
    QString html = QStringLiteral("<table cellspacing=2 cellpadding=2>");
    html += row(tr("Name"), pic->spName);
    html += row(tr("Folder"), m_cells.text(*pic, PicTableModel::FolderColumn));
    const QString camera = m_cells.text(*pic, PicTableModel::CameraColumn);
    html += row(tr("Camera"), camera.isEmpty() ? tr("not named in the file") : camera);
    html += row(tr("Date"), DateDisplay::localDateTime(pic->spDateTimeModified(), zone));
    html += row(tr("Read from"), DateSourceText::forPic(*pic));

    const FolderFacts *folder = pic->spSingleFolder;
    const bool itemByItem = folder && folder->sfEditMode == FolderFacts::EditSeparately;
    if (folder)
        html += row(tr("Folder offset"), offsetText(folder->sfDateModificationsTimeInterval)
                                             + (itemByItem ? tr(" (not in force: items change one by one)") : QString()));
    html += row(tr("Own offset"), offsetText(pic->singlePicModification)
                                      + (itemByItem ? QString() : tr(" (not in force: the folder offset is)")));

    const QString place = m_cells.text(*pic, PicTableModel::LocationColumn);
    html += row(tr("Place"), place.isEmpty() ? tr("none") : place);
    if (pic->hasLocationChange())
        html += row(QString(), tr("changed; a save writes it into the file"));

    html += QStringLiteral("<tr><td colspan=3><br><b>%1</b></td></tr>").arg(tr("Dates in the file").toHtmlEscaped());
    html += QStringLiteral("<tr><td></td><td><i>%1</i></td><td><i>%2</i></td></tr>")
                .arg(tr("now").toHtmlEscaped(), tr("after a save").toHtmlEscaped());
    const SaveSettings settings = SaveSettings::fromPreferences(m_prefs, currentInstant());
    for (const SavedDate &date : PreSaveSummary::datesOf(*pic, settings)) {
        const TimeZone shownIn = date.slot == SavedDate::GpsTime ? TimeZone::utc() : zone;
        html += QStringLiteral("<tr><td><b>%1</b></td><td nowrap>%2</td><td nowrap>%3</td></tr>")
                    .arg(date.slotName().toHtmlEscaped(), DateDisplay::localDateTime(date.oldDate, shownIn).toHtmlEscaped(),
                         (date.changes() ? DateDisplay::localDateTime(date.newDate, shownIn) : tr("unchanged")).toHtmlEscaped());
        if (!date.ruleText().isEmpty())
            html += QStringLiteral("<tr><td></td><td colspan=2><i>%1</i></td></tr>").arg(date.ruleText().toHtmlEscaped());
    }
    html += QStringLiteral("</table>");
    m_label->setText(html);
}

} // namespace orv
