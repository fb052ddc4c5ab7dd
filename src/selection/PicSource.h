#pragma once

#include "selection/FilterPredicate.h"
#include "time/Instant.h"

#include <QCollator>
#include <QList>
#include <QSet>

#include <optional>

namespace orv {

class MySingleFolder;
class MySinglePic;

// The two ordered lists every view shows: the full source (all items of the folders on show, in
// time order) and the filtered source (the part the active filter and the sidebar's selection
// let through, without the items held on a shelf). Each item carries its position in both
// (indexInSource_full, indexInSource_filtered; -1 outside) and in its folder.
//
// Lives on the main thread with the items it orders; sources are replaced as whole lists.
class PicSource
{
public:
    PicSource();

    // What the next build works on; none of these rebuilds by itself.
    void setFolders(const QList<MySingleFolder *> &folders) { m_folders = folders; }
    void setPredicate(std::optional<FilterPredicate> predicate) { m_predicate = std::move(predicate); }
    // The sidebar's selection: none lets everything through, an empty set nothing.
    void setSelectedPicsToFilter(std::optional<QSet<MySinglePic *>> pics) { m_selectedPicsToFilter = std::move(pics); }
    void setShelfPics(const QSet<MySinglePic *> &pics) { m_shelfPics = pics; }
    const std::optional<FilterPredicate> &predicate() const { return m_predicate; }
    const QList<MySingleFolder *> &folders() const { return m_folders; }

    // The list work. optimized: only the filter changed, so the full source keeps its order and
    // nothing is sorted. Answers whether the filtered source changed.
    bool buildNewSourceUsingOptimizedRefilterOnly(bool optimized);

    const QList<MySinglePic *> &source_full() const { return m_full; }
    const QList<MySinglePic *> &source_filtered() const { return m_filtered; }
    // The items the filter keeps away (shelf items are not among them).
    const QSet<MySinglePic *> &allFilteredImages() const { return m_allFilteredImages; }
    qsizetype filteredImagesCount() const { return m_allFilteredImages.size(); }
    // How many times the full source was sorted: a filter change must leave it as it is.
    int sortCount() const { return m_sortCount; }

    // The order of the timeline: date in force of the item that places it, then the name as a
    // file manager orders it (IMG_2 before IMG_10), then the folder's position.
    bool sortsBefore(const MySinglePic &a, const MySinglePic &b) const;
    void sortedThumbsArray(QList<MySinglePic *> &pics) const;
    // The same order over the dates a preview shows: an item's temporary date where it has one.
    void sortedByPreviewDates(QList<MySinglePic *> &pics) const;

private:
    bool passes(MySinglePic *pic) const;
    bool sortsBefore(const MySinglePic &a, const OptionalDate &dateA, const MySinglePic &b,
                     const OptionalDate &dateB) const;

    QList<MySingleFolder *> m_folders;
    std::optional<FilterPredicate> m_predicate;
    std::optional<QSet<MySinglePic *>> m_selectedPicsToFilter;
    QSet<MySinglePic *> m_shelfPics;
    QList<MySinglePic *> m_full;
    QList<MySinglePic *> m_filtered;
    QSet<MySinglePic *> m_allFilteredImages;
    QCollator m_collator;
    int m_sortCount = 0;
};

} // namespace orv
