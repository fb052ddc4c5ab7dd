#include "support/ScanOne.h"

#include "core/MySinglePic.h"
#include "core/PicScanner.h"
#include "folders/ImportQuestions.h"
#include "folders/MySingleFolder.h"

namespace orv {

std::unique_ptr<MySinglePic> scanFile(const QString &path, MySingleFolder &folder, ImportQuestions &questions)
{
    ItemScanContext items = folder.itemScanContext();
    items.askEmptyTagOptions = [&] { return questions.emptyTagOptions(folder); };
    std::unique_ptr<MySinglePic> pic = PicScanner::buildPic(PicScanner::readFacts(path, items.exifIgnored), items);
    folder.takeScanContext(items);
    return pic;
}

} // namespace orv
