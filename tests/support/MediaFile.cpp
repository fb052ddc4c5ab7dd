#include "support/MediaFile.h"

#include <QDir>
#include <QFile>
#include <stdexcept>

namespace orv::test {

QString MediaFile::write(const QString &dir, const QString &baseName) const
{
    const QString path = QDir(dir).filePath(baseName + u'.' + suffix);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + path.toStdString() + ": " +
                                 file.errorString().toStdString());
    return path;
}

} // namespace orv::test
