#pragma once

#include <QList>
#include <QSet>

namespace orv {

class MySingleFolder;

// Hands out the palette's colours to folders, lowest free index first. Folders beyond the
// palette stay colourless (MySingleFolder::noColorIndex) until a colour comes free.
class FolderColors
{
public:
    explicit FolderColors(int paletteSize);

    quint16 indexOfNextColor();
    // A deleted folder's colour goes back to the free ones, or straight to the first colourless
    // folder when the remaining folders still outnumber the palette.
    void recycleColorIndexFromFolder(const MySingleFolder &deleted, const QList<MySingleFolder *> &remaining);

private:
    int m_maxColorIndex;
    QSet<int> m_availableColorIndexes;
};

} // namespace orv
