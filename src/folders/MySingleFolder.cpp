#include "folders/MySingleFolder.h"

#include "core/MySinglePic.h"

#include <QFileInfo>

namespace orv {

MySingleFolder::MySingleFolder(const QString &path, bool separateMode)
    : sfFolder(QFileInfo(path).fileName()),
      sfFolderPath(path),
      sfEditMode(separateMode ? EditSeparately : EditTogether)
{
}

MySingleFolder::~MySingleFolder() = default;

MySinglePic *MySingleFolder::adoptPic(std::unique_ptr<MySinglePic> pic, bool visible)
{
    MySinglePic *raw = pic.get();
    m_ownedPics.push_back(std::move(pic));
    if (visible)
        sfPicDetails_fullArray.append(raw);
    return raw;
}

} // namespace orv
