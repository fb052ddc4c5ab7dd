#include "support/SaveFixture.h"
#include "support/ScanOne.h"

#include "core/PicScanner.h"

#include <QDateTime>
#include <QFile>
#include <stdexcept>

namespace orv::test {

ImportOptions SaveFixture::fileDateOption()
{
    ImportOptions options;
    options.withEmptyExifFixDate = ImportOptions::UseFileDate;
    return options;
}

SaveSettings SaveFixture::defaultSettings()
{
    SaveSettings settings;
    settings.options = NewDateOptions::cachedForRun({}, currentInstant());
    return settings;
}

MySinglePic &SaveFixture::import(const MediaFile &file, const QString &baseName)
{
    return importPath(file.write(dir.path(), baseName));
}

MySinglePic &SaveFixture::importPath(const QString &path)
{
    std::unique_ptr<MySinglePic> pic = scanFile(path, folder, m_fileDate);
    if (!pic)
        throw std::runtime_error("the scan made no item of " + path.toStdString());
    return *folder.adoptPic(std::move(pic));
}

SaveOutcome SaveFixture::shift(double seconds, FileWriteAccess *disk, const SaveSettings &settings,
                               LogController *log)
{
    folder.setSfDateModificationsFromTimeInterval(seconds, seconds < 0.0);
    m_run =
        std::make_unique<SaveRun>(QList<MySingleFolder *>{&folder}, settings, m_proceed, log, disk);
    return m_run->run();
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + path.toStdString());
    return file.readAll();
}

void setModificationTime(const QString &path, Instant time)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) ||
        !file.setFileTime(QDateTime::fromMSecsSinceEpoch(qint64(time.secondsSinceEpoch() * 1000.0), Qt::UTC),
                          QFileDevice::FileModificationTime))
        throw std::runtime_error("cannot set the modification time of " + path.toStdString());
}

std::vector<qint64> differingOffsets(const QByteArray &a, const QByteArray &b)
{
    std::vector<qint64> offsets;
    const qsizetype common = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < common; ++i) {
        if (a[i] != b[i])
            offsets.push_back(i);
    }
    for (qsizetype i = common; i < std::max(a.size(), b.size()); ++i)
        offsets.push_back(i);
    return offsets;
}

} // namespace orv::test
