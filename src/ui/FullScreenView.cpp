#include "ui/FullScreenView.h"

#include "app/RatingCommand.h"
#include "core/DateDisplay.h"
#include "core/MySinglePic.h"
#include "thumbs/MyThumbsQueue.h"
#include "thumbs/ThumbDecoder.h"
#include "time/TimeZone.h"
#include "ui/MyTimelineView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

namespace orv {

FullScreenView::FullScreenView(MyTimelineView &timeline, MyThumbsQueue &thumbs, QWidget *parent)
    : QWidget(parent, Qt::Window), m_timeline(timeline), m_thumbs(thumbs)
{
    setWindowTitle(tr("Full Screen"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    connect(&m_previews, &ScreenPreviews::previewReady, this, [this](const QString &path) {
        if (m_sequence.current() && m_sequence.current()->spPath() == path)
            update();
    });
    connect(&m_slideTimer, &QTimer::timeout, this, [this] {
        if (!m_sequence.peek(1, true))
            stopSlideshow();
        else
            show(m_sequence.step(1, true));
    });
}

FullScreenView::~FullScreenView() = default;

void FullScreenView::open(MySinglePic *pic)
{
    m_sequence.setSource(m_timeline.strip().geometrySource());
    MySinglePic *start = pic ? pic : m_timeline.strip().picSelection();
    if (!start || !m_sequence.sources().admits(*start))
        start = m_sequence.walk().value(0);
    // The window's screen; the geometry first, for desktops whose window manager leaves full
    // screen to the window.
    QScreen *shownOn = parentWidget() ? parentWidget()->screen() : screen();
    m_previews.setTargetSize(shownOn->size() * shownOn->devicePixelRatio());
    setGeometry(shownOn->geometry());
    showFullScreen();
    activateWindow();
    setFocus();
    show(start);
}

void FullScreenView::show(MySinglePic *pic)
{
    m_sequence.setCurrent(pic);
    if (pic && m_timeline.strip().picSelection() != pic) {
        m_timeline.strip().setPicSelection(pic);
        m_timeline.selectionChanged(pic);
    }
    prefetch();
    update();
}

void FullScreenView::prefetch()
{
    // The image shown first, then the one the user most likely wants next, then the one before.
    if (MySinglePic *current = m_sequence.current())
        m_previews.request(current->spPath());
    for (int direction : {1, -1})
        if (MySinglePic *beside = m_sequence.peek(direction, isSlideShowActive()))
            m_previews.request(beside->spPath());
}

void FullScreenView::step(int direction)
{
    show(m_sequence.step(direction, isSlideShowActive()));
    if (isSlideShowActive())
        m_slideTimer.start(); // a still keeps its full time after a manual step
}

void FullScreenView::refresh()
{
    m_sequence.setSource(m_timeline.strip().geometrySource());
    prefetch();
    update();
}

void FullScreenView::toggleSlideshow()
{
    if (isSlideShowActive()) {
        stopSlideshow();
        return;
    }
    // A slideshow of one still does not start.
    if (m_sequence.walk().size() < 2)
        return;
    m_slideTimer.start(m_slideDuration * 1000);
    m_sleep.disableDisplaySleep(tr("Slideshow playback"));
    update();
}

void FullScreenView::stopSlideshow()
{
    m_slideTimer.stop();
    m_sleep.reenableDisplaySleep();
    update();
}

void FullScreenView::setSlideDuration(int seconds)
{
    m_slideDuration = seconds;
    if (isSlideShowActive())
        m_slideTimer.setInterval(seconds * 1000);
    update();
}

void FullScreenView::toggleSource(bool FspSources::*source)
{
    FspSources sources = m_sequence.sources();
    sources.*source = !(sources.*source);
    // Showing nothing at all is no choice: the last source stays.
    if (!sources.keepers && !sources.neutrals && !sources.rejects)
        return;
    m_sequence.setSources(sources);
    if (m_sequence.current() && !sources.admits(*m_sequence.current()))
        show(m_sequence.step(1, true));
    refresh();
}

void FullScreenView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    const MySinglePic *pic = m_sequence.current();
    if (!pic)
        return;
    const QString path = pic->spPath();
    QImage image = m_previews.request(path);
    bool isIcon = false;
    if (image.isNull()) {
        // Until the screen-sized image is there, the thumbnail stands in; a file that cannot be
        // decoded, and has no thumbnail, shows the unsupported icon.
        if (const ThumbEntry *entry = m_thumbs.cache().entry(pic->sessionUniqueId))
            image = entry->decodedForSide(512);
        if (image.isNull() && m_previews.isUndecodable(path)) {
            image = ThumbDecoder::unsupportedIcon(256);
            isIcon = true;
        }
    }
    if (!image.isNull()) {
        QSizeF shown = QSizeF(image.size()) / devicePixelRatioF();
        if (!isIcon)
            shown.scale(QSizeF(size()), Qt::KeepAspectRatio);
        const QRectF target(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(target, image);
    }
    if (m_overlayShown)
        drawOverlay(painter);
}

void FullScreenView::drawOverlay(QPainter &painter)
{
    const MySinglePic &pic = *m_sequence.current();
    QString rating = tr("Neutral");
    if (ratingOf(pic) == PicRating::Keeper)
        rating = tr("Keeper");
    else if (ratingOf(pic) == PicRating::Rejected)
        rating = tr("Reject");
    QStringList lines{pic.spName, DateDisplay::localDateTime(pic.spDateTimeModified(), TimeZone::systemZone()),
                      QStringLiteral("%1    %2").arg(rating, m_sequence.slideCountText())};
    if (isSlideShowActive())
        lines.append(tr("Slideshow, %n second(s) each", nullptr, m_slideDuration));
    const QString text = lines.join(u'\n');
    QFont font = painter.font();
    font.setPointSizeF(font.pointSizeF() * 1.3);
    painter.setFont(font);
    const QRectF bounds = painter.boundingRect(QRectF(0, 0, width(), height()), Qt::AlignLeft | Qt::AlignTop, text);
    const QRectF box = bounds.adjusted(-12, -10, 12, 10).translated(28, height() - bounds.height() - 40);
    painter.fillRect(box, QColor(0, 0, 0, 160));
    painter.setPen(Qt::white);
    painter.drawText(box.adjusted(12, 10, -12, -10), Qt::AlignLeft | Qt::AlignTop, text);
}

void FullScreenView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
    case Qt::Key_Space: step(1); return;
    case Qt::Key_Left:
    case Qt::Key_Up:
    case Qt::Key_Backspace: step(-1); return;
    case Qt::Key_Escape: close(); return;
    case Qt::Key_S: toggleSlideshow(); return;
    case Qt::Key_Plus:
    case Qt::Key_Equal: setSlideDuration(FullScreenSequence::durationUp(m_slideDuration)); return;
    case Qt::Key_Minus: setSlideDuration(FullScreenSequence::durationDown(m_slideDuration)); return;
    case Qt::Key_I:
        m_overlayShown = !m_overlayShown;
        update();
        return;
    case Qt::Key_1: toggleSource(&FspSources::keepers); return;
    case Qt::Key_2: toggleSource(&FspSources::neutrals); return;
    case Qt::Key_3: toggleSource(&FspSources::rejects); return;
    default: QWidget::keyPressEvent(event);
    }
}

void FullScreenView::closeEvent(QCloseEvent *event)
{
    stopSlideshow();
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

} // namespace orv
