#include "folders/FolderColors.h"

#include "folders/MySingleFolder.h"

#include <algorithm>

namespace orv {

FolderColors::FolderColors(int paletteSize) : m_maxColorIndex(paletteSize - 1)
{
    for (int index = 0; index <= m_maxColorIndex; ++index)
        m_availableColorIndexes.insert(index);
}

quint16 FolderColors::indexOfNextColor()
{
    if (m_availableColorIndexes.isEmpty())
        return MySingleFolder::noColorIndex;
    const int lowest = *std::min_element(m_availableColorIndexes.cbegin(), m_availableColorIndexes.cend());
    m_availableColorIndexes.remove(lowest);
    return quint16(lowest);
}

void FolderColors::recycleColorIndexFromFolder(const MySingleFolder &deleted, const QList<MySingleFolder *> &remaining)
{
    const int index = deleted.colorIndex;
    if (index > m_maxColorIndex)
        return;
    if (remaining.size() <= m_maxColorIndex) {
        m_availableColorIndexes.insert(index);
        return;
    }
    const auto colourless = std::find_if(remaining.cbegin(), remaining.cend(), [](const MySingleFolder *folder) {
        return folder->colorIndex == MySingleFolder::noColorIndex;
    });
    if (colourless != remaining.cend())
        (*colourless)->colorIndex = quint16(index);
    else
        m_availableColorIndexes.insert(index);
}

} // namespace orv
