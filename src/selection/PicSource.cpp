#include "selection/PicSource.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "selection/NaturalNameOrder.h"

#include <algorithm>

namespace orv {

PicSource::PicSource() : m_collator(naturalNameCollator()) {}

bool PicSource::sortsBefore(const MySinglePic &a, const MySinglePic &b) const
{
    return sortsBefore(a, a.spDateTimeModified_sort(), b, b.spDateTimeModified_sort());
}

bool PicSource::sortsBefore(const MySinglePic &a, const OptionalDate &dateA, const MySinglePic &b,
                            const OptionalDate &dateB) const
{
    // Whole seconds: fractions never decide the order.
    const auto seconds = [](const OptionalDate &date) { return date ? std::optional(date->wholeSeconds()) : std::nullopt; };
    if (seconds(dateA) != seconds(dateB))
        return seconds(dateA) < seconds(dateB); // an item without a date stands first
    if (const int byName = m_collator.compare(a.spName, b.spName))
        return byName < 0;
    const qint64 folderA = a.spSingleFolder ? MySingleFolder::of(a)->folderSortGeneral : 0;
    const qint64 folderB = b.spSingleFolder ? MySingleFolder::of(b)->folderSortGeneral : 0;
    return folderA < folderB;
}

void PicSource::sortedThumbsArray(QList<MySinglePic *> &pics) const
{
    std::stable_sort(pics.begin(), pics.end(),
                     [this](const MySinglePic *a, const MySinglePic *b) { return sortsBefore(*a, *b); });
}

void PicSource::sortedByPreviewDates(QList<MySinglePic *> &pics) const
{
    const auto date = [](const MySinglePic *pic) { return pic->tempTimeDuringLiveModCompleted(); };
    std::stable_sort(pics.begin(), pics.end(), [this, &date](const MySinglePic *a, const MySinglePic *b) {
        return sortsBefore(*a, date(a), *b, date(b));
    });
}

bool PicSource::passes(MySinglePic *pic) const
{
    if (m_selectedPicsToFilter && !m_selectedPicsToFilter->contains(pic))
        return false;
    return !m_predicate || m_predicate->evaluate(*pic);
}

bool PicSource::buildNewSourceUsingOptimizedRefilterOnly(bool optimized)
{
    if (optimized) {
        for (MySingleFolder *folder : std::as_const(m_folders))
            folder->lastChangedPicIndex = -2;
        for (MySinglePic *pic : std::as_const(m_full))
            pic->dstOffsetState = 0;
    } else {
        QList<MySinglePic *> full;
        for (MySingleFolder *folder : std::as_const(m_folders)) {
            folder->imageCounter = 0;
            folder->lastChangedPicIndex = -2;
            full.append(folder->sfPicDetails_fullArray);
        }
        sortedThumbsArray(full);
        ++m_sortCount;
        for (qsizetype i = 0; i < full.size(); ++i) {
            MySinglePic *pic = full.at(i);
            pic->indexInSource_full = i;
            pic->indexInSource_filtered = -1;
            pic->dstOffsetState = 0;
            if (pic->spSingleFolder)
                pic->indexInFolder_full = MySingleFolder::of(*pic)->imageCounter++;
        }
        m_full = std::move(full);
    }

    const bool filtering = m_predicate || m_selectedPicsToFilter;
    QList<MySinglePic *> filtered;
    QSet<MySinglePic *> excluded;
    if (!filtering && m_shelfPics.isEmpty()) {
        filtered = m_full;
    } else {
        filtered.reserve(m_full.size());
        for (MySinglePic *pic : std::as_const(m_full)) {
            if (m_shelfPics.contains(pic))
                continue;
            if (filtering && !passes(pic))
                excluded.insert(pic);
            else
                filtered.append(pic);
        }
    }
    m_allFilteredImages = std::move(excluded);

    for (MySingleFolder *folder : std::as_const(m_folders))
        folder->imageCounter = 0;
    for (MySinglePic *pic : std::as_const(m_full))
        pic->indexInSource_filtered = -1, pic->indexInFolder_filtered = -1;
    for (qsizetype i = 0; i < filtered.size(); ++i) {
        MySinglePic *pic = filtered.at(i);
        pic->indexInSource_filtered = i;
        if (pic->spSingleFolder)
            pic->indexInFolder_filtered = MySingleFolder::of(*pic)->imageCounter++;
    }
    const bool changed = filtered != m_filtered;
    m_filtered = std::move(filtered);
    return changed;
}

} // namespace orv
