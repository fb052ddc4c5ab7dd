#include "ui/PreviewsBar.h"

#include "core/DateDisplay.h"
#include "core/MySinglePic.h"

#include <QPainter>
#include <QPixmap>
#include <QScrollBar>

namespace orv {

namespace {

constexpr int previewSide = 126;

QString caption(const MySinglePic &pic)
{
    return pic.spName + QLatin1Char('\n') + DateDisplay::localDateTime(pic.spDateTimeModified(), TimeZone::systemZone());
}

} // namespace

PreviewsBar::PreviewsBar(Thumbnail thumbnail, QWidget *parent) : QListWidget(parent), m_thumbnail(std::move(thumbnail))
{
    setObjectName(QStringLiteral("previewsBar"));
    setViewMode(QListView::IconMode);
    setFlow(QListView::LeftToRight);
    setWrapping(false);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setIconSize(QSize(previewSide, previewSide));
    setGridSize(QSize(previewSide + 40, previewSide + 2 * fontMetrics().height() + 16));
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::NoSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFixedHeight(gridSize().height() + horizontalScrollBar()->sizeHint().height() + 8);
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) {
        Q_EMIT picClicked(m_pics.value(row(item)));
    });
}

QPixmap PreviewsBar::squarePixmap(const QImage &image, int side)
{
    QPixmap square(side, side);
    square.fill(Qt::transparent);
    if (image.isNull())
        return square;
    const QImage scaled = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&square);
    painter.drawImage((side - scaled.width()) / 2, (side - scaled.height()) / 2, scaled);
    return square;
}

QIcon PreviewsBar::iconOf(const MySinglePic &pic) const
{
    return squarePixmap(m_thumbnail ? m_thumbnail(pic) : QImage(), previewSide);
}

void PreviewsBar::showPics(const QList<MySinglePic *> &pics)
{
    const QList<MySinglePic *> shown = pics.mid(0, maxShown);
    if (shown == m_pics) {
        // The same items; their dates may have moved.
        for (int i = 0; i < count(); ++i)
            item(i)->setText(caption(*m_pics[i]));
        return;
    }
    clear();
    m_pics = shown;
    for (const MySinglePic *pic : std::as_const(m_pics)) {
        auto *entry = new QListWidgetItem(iconOf(*pic), caption(*pic), this);
        entry->setToolTip(pic->spPath());
        entry->setTextAlignment(Qt::AlignHCenter | Qt::AlignTop);
    }
    setToolTip(pics.size() > maxShown ? tr("The first %1 of %2 selected items").arg(maxShown).arg(pics.size()) : QString());
}

void PreviewsBar::thumbReady(quint32 sessionUniqueId)
{
    for (int i = 0; i < m_pics.size(); ++i)
        if (m_pics[i]->sessionUniqueId == sessionUniqueId)
            item(i)->setIcon(iconOf(*m_pics[i]));
}

} // namespace orv
