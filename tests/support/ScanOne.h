#pragma once

#include <QString>

#include <memory>

namespace orv {

class ImportQuestions;
class MySingleFolder;
class MySinglePic;

// One file made into an item of the folder the way the folder's scan makes it, asking the
// questions given; the folder takes back what the scan gathered. The item is the caller's.
std::unique_ptr<MySinglePic> scanFile(const QString &path, MySingleFolder &folder, ImportQuestions &questions);

} // namespace orv
