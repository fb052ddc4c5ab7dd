#include "states/SavedFolders.h"

#include "folders/MySingleFolder.h"
#include "states/FolderCoder.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QtConcurrent/QtConcurrentMap>

namespace orv::SavedFolders {

namespace {

using namespace Qt::StringLiterals;

// The folders' encodings in key order, or a problem.
struct RootEntries
{
    QList<QByteArray> folders;
    QString problem;
};

RootEntries readRoot(const QByteArray &data, const QString &fileName)
{
    QCborStreamReader reader(data);
    const auto fail = [&](const QString &what) { return RootEntries{{}, fileName + u": "_s + what}; };
    // The oldest generations were keyed archives of another platform, a form this system has
    // never written and does not read.
    if (data.startsWith("bplist00"))
        return fail(u"a keyed archive of an older generation, which cannot be read here"_s);
    if (!reader.isTag() || reader.toTag() != QCborTag(QCborKnownTags::Signature))
        return fail(u"not a state file"_s);
    reader.next();
    // The root is a map of the folders by their places; the older root is the list of them.
    const bool isList = reader.isArray();
    if ((!reader.isMap() && !isList) || !reader.enterContainer())
        return fail(u"the root is not a map of folders"_s);
    RootEntries root;
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        if (!isList && (!reader.isUnsignedInteger() || reader.toUnsignedInteger() != quint64(root.folders.size())))
            return fail(u"folder key %1 is missing or out of order"_s.arg(root.folders.size()));
        if (!isList)
            reader.next();
        if (!reader.isByteArray())
            return fail(u"folder %1 is not encoded data"_s.arg(root.folders.size()));
        QByteArray folder;
        auto chunk = reader.readByteArray();
        while (chunk.status == QCborStreamReader::Ok) {
            folder += chunk.data;
            chunk = reader.readByteArray();
        }
        if (chunk.status == QCborStreamReader::Error)
            break;
        root.folders.append(folder);
    }
    if (reader.lastError() == QCborError::NoError)
        reader.leaveContainer();
    if (reader.lastError() != QCborError::NoError)
        return fail(reader.lastError().toString());
    return root;
}

} // namespace

QByteArray write(const QList<MySingleFolder *> &folders)
{
    QList<const MySingleFolder *> imported;
    for (const MySingleFolder *folder : folders)
        if (folder->sfPics >= 0)
            imported.append(folder);
    const QList<QByteArray> encoded =
        QtConcurrent::blockingMapped(imported, [](const MySingleFolder *folder) { return FolderCoder::write(*folder); });
    QByteArray data;
    QCborStreamWriter writer(&data);
    writer.append(QCborKnownTags::Signature);
    writer.startMap(quint64(encoded.size()));
    for (qsizetype i = 0; i < encoded.size(); ++i) {
        writer.append(quint64(i));
        writer.append(encoded.at(i));
    }
    writer.endMap();
    return data;
}

ReadResult read(const QByteArray &data, const QString &fileName)
{
    RootEntries root = readRoot(data, fileName);
    if (!root.problem.isEmpty())
        return {{}, root.problem};
    // One folder after the other: each decodes its items on the whole pool.
    std::vector<FolderCoder::ReadFolder> decoded;
    for (qsizetype key = 0; key < root.folders.size(); ++key)
        decoded.push_back(FolderCoder::read(root.folders.at(key), u"%1, folder %2"_s.arg(fileName).arg(key)));
    ReadResult result;
    for (FolderCoder::ReadFolder &folder : decoded) {
        if (!folder.folder)
            return {{}, folder.problem};
        result.folders.push_back(std::move(folder.folder));
    }
    return result;
}

} // namespace orv::SavedFolders
