#pragma once

#include "timeline/TimelineGeometry.h"

#include <QList>
#include <QSet>

#include <optional>

namespace orv {

class MySingleFolder;
class MySinglePic;

// The model side of one strip: the items it shows in order, the temporary order of a preview,
// which folder stands raised, its selection and its layout. The widget that paints it
// (ui/MyTimelineView) reads everything here and owns nothing of it.
//
// Lives on the main thread; a preview replaces the order through setTempSource() and never
// touches an item.
class TimelineStrip
{
public:
    enum SplitMode : int { MainOrMirror = 0, Shelf = 1 };

    explicit TimelineStrip(SplitMode mode = MainOrMirror) : m_splitMode(mode) {}

    SplitMode splitMode() const { return m_splitMode; }
    bool isShelf() const { return m_splitMode != MainOrMirror; }

    // --- Sources ---
    void setSource(const QList<MySinglePic *> &source);
    const QList<MySinglePic *> &theSource() const { return m_source; }
    // The order all geometry follows: the temporary source while a preview shows one.
    const QList<MySinglePic *> &geometrySource() const { return m_tempSource ? *m_tempSource : m_source; }
    // A preview's order (the dragged items among their new neighbours); the items keep their
    // dates. Cleared by clearTempSource() or by the next setSource().
    void setTempSource(const QList<MySinglePic *> &tempSource);
    void clearTempSource();
    bool hasTempSource() const { return m_tempSource.has_value(); }
    // The position of an item in the geometry source, -1 when it is not on this strip.
    qsizetype indexOf(const MySinglePic *pic) const;
    MySinglePic *picAt(qsizetype index) const;

    // --- Raised folders: theDrawerSelection. Empty: every item stands raised. ---
    void setRaisedFolders(const QSet<const MySingleFolder *> &folders) { m_raised = folders; }
    bool isRaised(const MySinglePic &pic) const;
    const QSet<const MySingleFolder *> &raisedFolders() const { return m_raised; }

    // --- Selection ---
    MySinglePic *picSelection() const { return m_picSelection; }
    const QSet<MySinglePic *> &multiSelection() const { return m_multiSelection; }
    void setPicSelection(MySinglePic *pic); // also makes it the whole multi-selection
    void setMultiSelection(const QSet<MySinglePic *> &pics, MySinglePic *main);
    bool isSelected(const MySinglePic *pic) const { return m_multiSelection.contains(const_cast<MySinglePic *>(pic)); }

    // --- Layout ---
    TimelineGeometry &geometry() { return m_geometry; }
    const TimelineGeometry &geometry() const { return m_geometry; }
    // The drawn rectangle of the item at index (view coordinates), empty beyond the source.
    QRectF thumbRectCalculatedAtIndex(qsizetype index) const;
    // The selection border and growth an item's state adds to its hit area.
    double extraSelectionMarginForPic(const MySinglePic &pic) const;
    // The item under a point of the strip, or null.
    MySinglePic *picAtLocationInView(double x, double y) const;
    ThumbRange visibleThumbsRange(double left, double width, qsizetype extension = 0) const
    {
        return m_geometry.visibleThumbsRange(left, width, extension);
    }

    // The left edge of the visible part, kept by the view across source changes.
    double scrollX = 0;

private:
    SplitMode m_splitMode;
    QList<MySinglePic *> m_source;
    std::optional<QList<MySinglePic *>> m_tempSource;
    QSet<const MySingleFolder *> m_raised;
    MySinglePic *m_picSelection = nullptr;
    QSet<MySinglePic *> m_multiSelection;
    TimelineGeometry m_geometry;
};

} // namespace orv
