#pragma once

#include "core/MySinglePic.h"

#include <QImage>
#include <QListWidget>

#include <functional>

namespace orv {

// The previews bar under the timeline: the selected items side by side, larger than on the strip,
// each with its name and date in force, so a selection of several can be looked over before it
// is moved or aligned. A click selects that item alone.
class PreviewsBar : public QListWidget
{
    Q_OBJECT
public:
    // The thumbnail an item has now; a null image where it has none yet.
    using Thumbnail = std::function<QImage(const MySinglePic &)>;
    // More would make the bar a second timeline.
    static constexpr int maxShown = 60;

    PreviewsBar(Thumbnail thumbnail, QWidget *parent = nullptr);

    // Shows these items in this order, up to maxShown.
    void showPics(const QList<MySinglePic *> &pics);
    // An item's thumbnail came: its preview shows it.
    void thumbReady(quint32 sessionUniqueId);
    const QList<MySinglePic *> &shownPics() const { return m_pics; }

    // A thumbnail centred in a square of side, so rows and captions line up; empty (transparent)
    // without one.
    static QPixmap squarePixmap(const QImage &image, int side);

Q_SIGNALS:
    void picClicked(orv::MySinglePic *pic);

private:
    QIcon iconOf(const MySinglePic &pic) const;

    Thumbnail m_thumbnail;
    QList<MySinglePic *> m_pics;
};

} // namespace orv
