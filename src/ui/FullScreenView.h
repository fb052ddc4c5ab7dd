#pragma once

#include "ui/DisplaySleepInhibitor.h"
#include "viewing/FullScreenSequence.h"
#include "viewing/ScreenPreviews.h"

#include <QTimer>
#include <QWidget>

namespace orv {

class MySinglePic;
class MyThumbsQueue;
class MyTimelineView;

// The items of a strip one at a time over the whole screen: the arrows step (the strip's
// selection follows), S starts and stops the slideshow, + and - change its time, 1, 2 and 3 show
// or hide keepers, neutrals and rejects, I the overlay with the item's name, date, rating and
// place in the walk; Escape closes. The images on either side of the one shown are decoded at
// screen size in the background; one that cannot be decoded shows the unsupported icon and the
// walk goes on. The rating keys are the window's actions, added here too.
class FullScreenView : public QWidget
{
    Q_OBJECT
public:
    FullScreenView(MyTimelineView &timeline, MyThumbsQueue &thumbs, QWidget *parent = nullptr);
    ~FullScreenView() override;

    // Shows the strip's items from pic (null: the strip's main item, else the first).
    void open(MySinglePic *pic);
    FullScreenSequence &sequence() { return m_sequence; }
    ScreenPreviews &previews() { return m_previews; }

    // --- Slideshow ---
    // Starts when the walk holds more than one item; stops when running.
    void toggleSlideshow();
    bool isSlideShowActive() const { return m_slideTimer.isActive(); }
    int slideDuration() const { return m_slideDuration; }
    void setSlideDuration(int seconds);
    bool isDisplaySleepDisabled() const { return m_sleep.isDisplaySleepDisabled(); }

    // One step forwards (1) or backwards (-1); the slideshow's timer starts over.
    void step(int direction);
    // A rating or the items changed: the walk and the overlay follow.
    void refresh();

Q_SIGNALS:
    void closed();

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void show(MySinglePic *pic);
    void prefetch();
    void stopSlideshow();
    void drawOverlay(QPainter &painter);
    void toggleSource(bool FspSources::*source);

    MyTimelineView &m_timeline;
    MyThumbsQueue &m_thumbs;
    FullScreenSequence m_sequence;
    ScreenPreviews m_previews;
    DisplaySleepInhibitor m_sleep;
    QTimer m_slideTimer;
    int m_slideDuration = 5;
    bool m_overlayShown = true;
};

} // namespace orv
