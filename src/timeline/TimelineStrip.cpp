#include "timeline/TimelineStrip.h"

#include "core/MySinglePic.h"

namespace orv {

void TimelineStrip::setSource(const QList<MySinglePic *> &source)
{
    m_source = source;
    m_tempSource.reset();
    m_geometry.setCount(m_source.size());
    if (m_picSelection && indexOf(m_picSelection) < 0)
        m_picSelection = nullptr;
    m_multiSelection.removeIf([this](MySinglePic *pic) { return indexOf(pic) < 0; });
}

void TimelineStrip::setTempSource(const QList<MySinglePic *> &tempSource)
{
    m_tempSource = tempSource;
    m_geometry.setCount(tempSource.size());
}

void TimelineStrip::clearTempSource()
{
    m_tempSource.reset();
    m_geometry.setCount(m_source.size());
}

qsizetype TimelineStrip::indexOf(const MySinglePic *pic) const
{
    if (!pic)
        return -1;
    const QList<MySinglePic *> &source = geometrySource();
    // The filtered index is the position on a main strip outside a preview.
    const qsizetype known = pic->indexInSource_filtered;
    if (known >= 0 && known < source.size() && source.at(known) == pic)
        return known;
    return source.indexOf(pic);
}

MySinglePic *TimelineStrip::picAt(qsizetype index) const
{
    const QList<MySinglePic *> &source = geometrySource();
    return index >= 0 && index < source.size() ? source.at(index) : nullptr;
}

bool TimelineStrip::isRaised(const MySinglePic &pic) const
{
    return m_raised.isEmpty() || m_raised.contains(pic.spSingleFolder);
}

void TimelineStrip::setPicSelection(MySinglePic *pic)
{
    m_picSelection = pic;
    m_multiSelection.clear();
    if (pic)
        m_multiSelection.insert(pic);
}

void TimelineStrip::setMultiSelection(const QSet<MySinglePic *> &pics, MySinglePic *main)
{
    m_multiSelection = pics;
    m_picSelection = main;
    if (main)
        m_multiSelection.insert(main);
}

QRectF TimelineStrip::thumbRectCalculatedAtIndex(qsizetype index) const
{
    const MySinglePic *pic = picAt(index);
    return pic ? m_geometry.thumbRectCalculatedAtIndex(index, isRaised(*pic)) : QRectF();
}

double TimelineStrip::extraSelectionMarginForPic(const MySinglePic &pic) const
{
    if (&pic == m_picSelection)
        return m_geometry.addBorderSelection() + m_geometry.theThumbExtention();
    if (isSelected(&pic))
        return m_geometry.addBorderMultiSelection() + m_geometry.theThumbExtention();
    return 0;
}

MySinglePic *TimelineStrip::picAtLocationInView(double x, double y) const
{
    // The widest margin any item can have decides the column; its own margin decides the hit.
    const double widest = m_geometry.addBorderSelection() + m_geometry.theThumbExtention();
    const qsizetype index = m_geometry.picIndexAtX(x, widest);
    MySinglePic *pic = picAt(index);
    if (!pic)
        return nullptr;
    const double margin = extraSelectionMarginForPic(*pic);
    if (m_geometry.picIndexAtX(x, margin) != index || !m_geometry.hitsVertically(y, isRaised(*pic), margin))
        return nullptr;
    return pic;
}

} // namespace orv
