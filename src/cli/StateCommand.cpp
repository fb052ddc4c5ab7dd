#include "cli/StateCommand.h"

#include "cli/ItemJson.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "states/AdditionalData.h"
#include "states/SavedFolders.h"
#include "states/StateFiles.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace orv {

namespace {

using namespace Qt::StringLiterals;

QJsonValue location(const std::optional<double> &latitude, const std::optional<double> &longitude)
{
    if (!latitude || !longitude)
        return QJsonValue::Null;
    return QJsonObject{{u"latitude"_s, *latitude}, {u"longitude"_s, *longitude}};
}

QJsonObject itemJson(const MySinglePic &pic)
{
    QJsonObject item{{u"name"_s, pic.spName},
                     {u"dateOriginal"_s, ItemJson::date(pic.spDateTimeOriginal)},
                     {u"dateInForce"_s, ItemJson::date(pic.spDateTimeModified())},
                     {u"itemOffset"_s, pic.singlePicModification},
                     {u"keeper"_s, pic.isKeeper},
                     {u"rejected"_s, pic.isRejected},
                     {u"location"_s, location(pic.gpsLat, pic.gpsLong)},
                     {u"locationChanged"_s, pic.hasLocationChange()},
                     {u"unsaved"_s, pic.isUnsaved()},
                     {u"fileUnchangedState"_s, pic.fileUnchangedState}};
    item.insert(u"dependent"_s, pic.bundleDependentImage ? QJsonValue(itemJson(*pic.bundleDependentImage))
                                                         : QJsonValue(QJsonValue::Null));
    return item;
}

QJsonObject zonesJson(const FolderTimeZones &zones)
{
    QJsonObject object;
    if (zones.defaultZone)
        object.insert(u"_DEFAULT"_s, *zones.defaultZone);
    for (auto it = zones.itemsByZone.cbegin(); it != zones.itemsByZone.cend(); ++it) {
        QStringList names;
        for (const MySinglePic *pic : it.value())
            names.append(pic->spName);
        names.sort();
        object.insert(it.key(), QJsonArray::fromStringList(names));
    }
    return object;
}

QJsonObject folderJson(const MySingleFolder &folder)
{
    QJsonArray items;
    for (const MySinglePic *pic : folder.sfPicDetails_fullArray)
        items.append(itemJson(*pic));
    return {{u"path"_s, folder.sfFolderPath},
            {u"editMode"_s, folder.sfEditMode},
            {u"folderOffset"_s, folder.sfDateModificationsTimeInterval},
            {u"sourceTimeZones"_s, zonesJson(folder.sourceTimeZones)},
            {u"targetTimeZones"_s, zonesJson(folder.targetTimeZones)},
            {u"items"_s, items}};
}

QJsonArray placesJson(const QList<qint64> &places)
{
    QJsonArray array;
    for (qint64 place : places)
        array.append(place);
    return array;
}

QJsonArray subStripsJson(const QList<AdditionalData::SubStrip> &strips)
{
    QJsonArray array;
    for (const AdditionalData::SubStrip &strip : strips)
        array.append(QJsonObject{{u"subTLIsShelf"_s, strip.subTLIsShelf},
                                 {u"subTLShelfSourceIndexSet"_s, placesJson(strip.subTLShelfSourceIndexSet)},
                                 {u"tlv_subCompleteWidth"_s, strip.tlv_subCompleteWidth},
                                 {u"tlvScrollPosition"_s, strip.tlvScrollPosition},
                                 {u"picSelectionCurrentIndex"_s, strip.picSelectionCurrentIndex},
                                 {u"selectedThumbsIndexSet"_s, placesJson(strip.selectedThumbsIndexSet)}});
    return array;
}

// The window's view kept beside the folders, and how a restore here must take it; null for a
// state without one (or with one that cannot be read: the folders restore alone).
QJsonValue viewJson(const QString &foldersPath)
{
    QFile file(StateFiles::additionalDataFileOf(foldersPath));
    if (!file.open(QIODevice::ReadOnly))
        return QJsonValue::Null;
    const AdditionalData::ReadResult read = AdditionalData::read(file.readAll(), file.fileName());
    if (!read.problem.isEmpty())
        return QJsonValue::Null;
    const AdditionalData::ViewState &v = read.view;
    return QJsonObject{
        {u"stateVersion"_s, read.stateVersion},
        {u"conversionType"_s, int(AdditionalData::conversionNeeded(read.stateVersion, v))},
        {u"stateAtQuitType"_s, v.stateAtQuitType},
        {u"tlvViewWidth"_s, v.tlvViewWidth},
        {u"tlvCompleteWidth"_s, v.tlvCompleteWidth},
        {u"tlvScrollPosition"_s, v.tlvScrollPosition},
        {u"selectedFolderIndex"_s, v.selectedFolderIndex},
        {u"selectedCompoundFoldersIndexSet"_s, placesJson(v.selectedCompoundFoldersIndexSet)},
        {u"picSelectionCurrentIndex"_s, v.picSelectionCurrentIndex},
        {u"selectedThumbsIndexSet"_s, placesJson(v.selectedThumbsIndexSet)},
        {u"ratingFilterSelectedOption"_s, v.ratingFilterSelectedOption},
        {u"secondsFromGMTForDate"_s,
         v.secondsFromGMTForDate ? QJsonValue(*v.secondsFromGMTForDate) : QJsonValue(QJsonValue::Null)},
        {u"importedTracks"_s, read.importedTracks.size()},
        {u"filterSelectionsAndLockState"_s, QJsonArray::fromStringList(v.filterSelectionsAndLockState)},
        {u"filterExpandedState2"_s, QJsonArray::fromStringList(v.filterExpandedState2)},
        {u"selectionRadius"_s, v.selectionRadius},
        {u"locationWindowVisibilityState_8"_s, v.locationWindowVisibilityState_8},
        {u"locationCamera"_s, v.locationCamera ? QJsonValue(QJsonObject{{u"latitude"_s, v.locationCamera->latitude},
                                                                         {u"longitude"_s, v.locationCamera->longitude},
                                                                         {u"zoom"_s, v.locationCamera->zoom}})
                                               : QJsonValue(QJsonValue::Null)},
        {u"subTLs"_s, subStripsJson(v.subTLs)}};
}

} // namespace

int StateCommand::run(const QStringList &arguments)
{
    QTextStream err(stderr);
    if (arguments.size() != 2 || arguments.first() != u"show"_s) {
        err << "orvelle-cli: usage: orvelle-cli state show PATH\n";
        return 2;
    }
    const QString path = StateFiles::foldersFileOf(arguments.at(1));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        err << "orvelle-cli: " << path << ": " << file.errorString() << "\n";
        return 1;
    }
    const SavedFolders::ReadResult state = SavedFolders::read(file.readAll(), path);
    if (!state.problem.isEmpty()) {
        err << "orvelle-cli: " << state.problem << "\n";
        return 1;
    }
    QJsonArray folders;
    for (const auto &folder : state.folders)
        folders.append(folderJson(*folder));
    QTextStream(stdout) << QJsonDocument(QJsonObject{{u"state"_s, path}, {u"folders"_s, folders}, {u"view"_s, viewJson(path)}}).toJson(
        QJsonDocument::Compact) << "\n";
    return 0;
}

} // namespace orv
