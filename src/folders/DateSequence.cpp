#include "folders/DateSequence.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QCollator>

#include <algorithm>

namespace orv {

namespace {

// Items whose date the sequence may set outright: they have no date of their own worth keeping.
bool takesSequenceDateDirectly(int spType)
{
    return spType == SpTypeNoTagsImportOptionDate || spType == SpTypeUnsupportedPhoto
           || spType == SpTypeMvhdZeroFixedDate;
}

} // namespace

void DateSequence::addDelayer(MySingleFolder *folder)
{
    ++m_delayers;
    if (!m_folders.contains(folder))
        m_folders.append(folder);
}

bool DateSequence::removeDelayer()
{
    return --m_delayers == 0;
}

bool DateSequence::forget(MySingleFolder *folder)
{
    m_folders.removeOne(folder);
    return removeDelayer();
}

QList<MySingleFolder *> DateSequence::finish()
{
    QCollator collator;
    collator.setNumericMode(true);
    std::stable_sort(m_pics.begin(), m_pics.end(), [&collator](const auto &a, const auto &b) {
        if (const int byName = collator.compare(a->spName, b->spName))
            return byName < 0;
        return collator.compare(a->spSingleFolder->sfFolderPath, b->spSingleFolder->sfFolderPath) < 0;
    });

    QList<MySingleFolder *> switched;
    double offset = 0.0;
    for (auto &owned : m_pics) {
        MySingleFolder &folder = *MySingleFolder::of(*owned);
        MySinglePic &pic = *folder.adoptPic(std::move(owned));
        if (!m_start)
            continue;
        const bool direct = takesSequenceDateDirectly(pic.spType);
        const bool together = folder.sfEditMode == MySingleFolder::EditTogether;
        if ((together && !direct && folder.isUnsavedFolder()) || folder.isEXIFIgnored())
            continue;
        if (together && !direct) {
            folder.sfEditMode = MySingleFolder::EditSeparately;
            switched.append(&folder);
        }
        const Instant date = m_start->addingSeconds(offset);
        if (direct || !pic.spDateTimeOriginal)
            pic.spDateTimeOriginal = date;
        else
            folder.updateSinglePicModificationBy(pic, date.secondsSince(*pic.spDateTimeOriginal));
        offset += m_step;
    }
    m_pics.clear();
    return switched;
}

} // namespace orv
