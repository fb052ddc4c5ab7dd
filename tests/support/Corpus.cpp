#include "support/Corpus.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cctype>
#include <QTemporaryDir>
#include <stdexcept>

namespace orv::test {

QString corpusLocation()
{
    const QString fromEnvironment = qEnvironmentVariable("ORV_CORPUS_DIR");
    if (!fromEnvironment.isEmpty())
        return QDir(fromEnvironment).absolutePath();
    return QDir::cleanPath(QStringLiteral(ORV_SOURCE_DIR "/../shared/corpus"));
}

bool corpusAvailable()
{
    return QFileInfo(corpusLocation()).isDir();
}

QStringList corpusFiles(const QStringList &suffixes)
{
    QStringList files;
    if (!corpusAvailable())
        return files;
    QDirIterator it(corpusLocation(), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (suffixes.isEmpty() || suffixes.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive))
            files << path;
    }
    files.sort();
    return files;
}

QString corpusFile(const QString &relativePath)
{
    return QDir(corpusLocation()).filePath(relativePath);
}

QString copyToTemporary(const QString &path, const QTemporaryDir &dir)
{
    const QString copy = dir.filePath(QFileInfo(path).fileName());
    if (!QFile::copy(path, copy))
        throw std::runtime_error("cannot copy " + path.toStdString() + " to " + copy.toStdString());
    QFile::setPermissions(copy, QFile::permissions(copy) | QFile::WriteOwner);
    return copy;
}

std::string corpusTestName(const testing::TestParamInfo<QString> &info)
{
    std::string name = QFileInfo(info.param).fileName().toStdString();
    for (char &c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    }
    return name + "_" + std::to_string(info.index);
}

} // namespace orv::test
