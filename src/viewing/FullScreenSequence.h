#pragma once

#include <QList>

namespace orv {

class MySinglePic;

// Which ratings the full-screen view steps through; all three at first.
struct FspSources
{
    bool keepers = true, rejects = true, neutrals = true;

    bool admits(const MySinglePic &pic) const;
};

// The order of the full-screen view and the slideshow: the strip's filtered source, narrowed to
// the ratings chosen, walked one item at a time. An item that left the walk (rated away from the
// chosen ratings) steps on from where it stood. Main thread only, like the items.
class FullScreenSequence
{
public:
    void setSource(const QList<MySinglePic *> &source) { m_source = source; }
    const QList<MySinglePic *> &source() const { return m_source; }
    void setSources(const FspSources &sources) { m_sources = sources; }
    const FspSources &sources() const { return m_sources; }

    // The items the walk visits, in order.
    QList<MySinglePic *> walk() const;
    MySinglePic *current() const { return m_current; }
    void setCurrent(MySinglePic *pic) { m_current = pic; }

    // The item after (direction 1) or before (-1) the current one without moving; at the end,
    // with looping, the other end; null when there is none.
    MySinglePic *peek(int direction, bool looping) const;
    // Moves there and answers it; at the end without looping nothing moves.
    MySinglePic *step(int direction, bool looping);
    // "3 / 12": the current item's place in the walk and its length; "– / 12" when it is not in it.
    QString slideCountText() const;

    // The slide time one step up or down, in seconds: by 1 below 10, by 5 below 60 (70 down),
    // else by 10; never above 90 or below 1.
    static constexpr int maxSlideDuration = 90;
    static int durationUp(int seconds);
    static int durationDown(int seconds);

private:
    QList<MySinglePic *> m_source;
    FspSources m_sources;
    MySinglePic *m_current = nullptr;
};

} // namespace orv
