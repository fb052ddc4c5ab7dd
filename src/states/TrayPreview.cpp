#include "states/TrayPreview.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "states/CborFields.h"

#include <QCborStreamWriter>

namespace orv {

using namespace Qt::StringLiterals;

namespace {

void countItem(const MySinglePic &pic, TrayPreview &preview)
{
    if (pic.isMovie())
        ++preview.movies;
    else if (!pic.bundleDependentImage)
        ++preview.images;
    if (pic.isKeeper)
        ++preview.keepers;
    else if (pic.isRejected)
        ++preview.rejects;
    if (pic.isUnsaved())
        ++preview.unsavedChanges;
    if (const OptionalDate date = pic.spDateTimeModified_sort()) {
        if (!preview.fromDate || *date < *preview.fromDate)
            preview.fromDate = date;
        if (!preview.toDate || *preview.toDate < *date)
            preview.toDate = date;
    }
}

} // namespace

TrayPreview TrayPreview::previewDataForCurrentState(const QList<MySingleFolder *> &folders,
                                                    const MySingleFolder *activeFolder)
{
    TrayPreview preview;
    preview.folderCount = folders.size();
    if (!activeFolder && !folders.isEmpty())
        activeFolder = folders.first();
    if (activeFolder)
        preview.activeFolderName = activeFolder->sfFolder;
    for (const MySingleFolder *folder : folders) {
        preview.livePhotos += folder->bundleDependentsLivePhotos.size();
        preview.rawPlusJpgs += folder->bundleDependentsRawAndJPG.size();
        for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
            if (!pic->isMovedToTrash)
                countItem(*pic, preview);
    }
    return preview;
}

QByteArray TrayPreview::toCbor() const
{
    QByteArray data;
    QCborStreamWriter stream(&data);
    {
        CborMapWriter map(stream);
        map.put("folderCount"_L1, folderCount);
        map.put("activeFolderName"_L1, activeFolderName);
        map.put("altFolderName"_L1, altFolderName);
        map.put("additionalInfos"_L1, additionalInfos);
        map.put("images"_L1, images);
        map.put("movies"_L1, movies);
        map.put("keepers"_L1, keepers);
        map.put("rejects"_L1, rejects);
        map.put("livePhotos"_L1, livePhotos);
        map.put("rawPlusJpgs"_L1, rawPlusJpgs);
        map.put("unsavedChanges"_L1, unsavedChanges);
        map.put("fromDate"_L1, fromDate);
        map.put("toDate"_L1, toDate);
        map.put("isUndeletedState"_L1, isUndeletedState);
    }
    return data;
}

TrayPreview::ReadResult TrayPreview::fromCbor(const QByteArray &data, const QString &fileName)
{
    ReadResult result;
    StateProblem problem;
    QCborParserError error;
    const QCborValue root = QCborValue::fromCbor(data, &error);
    if (error.error != QCborError::NoError) {
        result.problem = u"%1: %2"_s.arg(fileName, error.errorString());
        return result;
    }
    const CborFields fields(root, fileName, problem);
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    TrayPreview &preview = result.preview;
    preview.folderCount = fields.integer("folderCount"_L1, 0, 0, most);
    preview.activeFolderName = fields.text("activeFolderName"_L1);
    preview.altFolderName = fields.text("altFolderName"_L1);
    preview.additionalInfos = fields.text("additionalInfos"_L1);
    preview.images = fields.integer("images"_L1, 0, 0, most);
    preview.movies = fields.integer("movies"_L1, 0, 0, most);
    preview.keepers = fields.integer("keepers"_L1, 0, 0, most);
    preview.rejects = fields.integer("rejects"_L1, 0, 0, most);
    preview.livePhotos = fields.integer("livePhotos"_L1, 0, 0, most);
    preview.rawPlusJpgs = fields.integer("rawPlusJpgs"_L1, 0, 0, most);
    preview.unsavedChanges = fields.integer("unsavedChanges"_L1, 0, 0, most);
    preview.fromDate = fields.date("fromDate"_L1);
    preview.toDate = fields.date("toDate"_L1);
    preview.isUndeletedState = fields.flag("isUndeletedState"_L1);
    if (problem.has())
        result = {{}, problem.text()};
    return result;
}

QString TrayPreview::sortName(const QString &fallback) const
{
    if (!altFolderName.isEmpty())
        return altFolderName;
    return activeFolderName.isEmpty() ? fallback : activeFolderName;
}

} // namespace orv
