#include "states/FolderCoder.h"

#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"
#include "states/CborFields.h"
#include "states/ItemCoder.h"

#include <QHash>
#include <QtConcurrent/QtConcurrentMap>

#include <algorithm>
#include <array>
#include <numeric>

namespace orv::FolderCoder {

namespace {

using namespace Qt::StringLiterals;

// Items are referred to by their place: masters first, then the two lists of dependents.
class ItemReferences
{
public:
    explicit ItemReferences(const QList<QList<MySinglePic *>> &lists)
    {
        for (const QList<MySinglePic *> &list : lists)
            for (MySinglePic *pic : list) {
                m_ids.insert(pic, m_pics.size());
                m_pics.append(pic);
            }
    }
    qint64 idOf(const MySinglePic *pic) const { return m_ids.value(pic, -1); }
    MySinglePic *picOf(qint64 id) const { return id >= 0 && id < m_pics.size() ? m_pics.at(id) : nullptr; }
    // The ids of the items, rising; items the state does not hold are left out.
    QList<qint64> ids(const QSet<const MySinglePic *> &pics) const
    {
        QList<qint64> list;
        for (const MySinglePic *pic : pics)
            if (const qint64 id = idOf(pic); id >= 0)
                list.append(id);
        std::sort(list.begin(), list.end());
        return list;
    }

private:
    QHash<const MySinglePic *, qint64> m_ids;
    QList<MySinglePic *> m_pics;
};

QList<MySinglePic *> keptMasters(const MySingleFolder &folder)
{
    QList<MySinglePic *> kept;
    for (MySinglePic *pic : folder.sfPicDetails_fullArray)
        if (!pic->isMovedToTrash)
            kept.append(pic);
    return kept;
}

void writeIds(QCborStreamWriter &w, const QList<qint64> &ids)
{
    w.startArray(quint64(ids.size()));
    for (qint64 id : ids)
        w.append(id);
    w.endArray();
}

// "_DEFAULT" keeps its name; every other zone its items' ids.
void writeZones(QCborStreamWriter &w, const FolderTimeZones &zones, const ItemReferences &refs)
{
    QStringList names = zones.itemsByZone.keys();
    names.sort();
    CborMapWriter map(w);
    if (zones.defaultZone)
        map.entry("_DEFAULT"_L1).append(*zones.defaultZone);
    for (const QString &name : std::as_const(names)) {
        w.append(name);
        writeIds(w, refs.ids(zones.itemsByZone.value(name)));
    }
}

void writeOptions(QCborStreamWriter &w, const ImportOptions &o)
{
    const ImportOptions defaults;
    CborMapWriter map(w);
    map.put("withEmptyExifFixDate"_L1, qint64(o.withEmptyExifFixDate));
    map.put("prefFixDateDate"_L1, o.prefFixDateDate);
    map.putDouble("prefFixDateStepValue"_L1, o.prefFixDateStepValue);
    map.put("prefFixDateStepperKind"_L1, qint64(o.prefFixDateStepperKind));
    map.putDouble("intervalStepper"_L1, o.intervalStepper);
    // Flags whose default is true are written as they are.
    for (const auto &[key, value] :
         {std::pair{"skipEmptyTagImportOptions"_L1, o.skipEmptyTagImportOptions},
          std::pair{"fixFinderDateOnImport"_L1, o.fixFinderDateOnImport},
          std::pair{"createFileGroups"_L1, o.createFileGroups},
          std::pair{"createFileGroupsOnMovingFilesToo"_L1, o.createFileGroupsOnMovingFilesToo},
          std::pair{"isMDTADateEnabled"_L1, o.isMDTADateEnabled},
          std::pair{"isMVHDTimezoneCorrectionEnabled"_L1, o.isMVHDTimezoneCorrectionEnabled},
          std::pair{"useMovieOptionsQTValuesWithoutShowingSheet"_L1, o.useMovieOptionsQTValuesWithoutShowingSheet},
          std::pair{"sortLPsByMov"_L1, o.sortLPsByMov}})
        map.entry(key).append(value);
    map.put("dateComparisonThresold"_L1, qint64(o.dateComparisonThresold), qint64(defaults.dateComparisonThresold));
    map.put("harmonizingRawJpgsTypeDefault"_L1, qint64(o.harmonizingRawJpgsTypeDefault));
    map.put("sortLPsByMovModifierDefault"_L1, qint64(o.sortLPsByMovModifierDefault));
    map.put("groupDisplayRawJpgPreviewDefault"_L1, qint64(o.groupDisplayRawJpgPreviewDefault));
}

ImportOptions readOptions(const CborFields &f)
{
    ImportOptions o;
    o.withEmptyExifFixDate = int(f.integer("withEmptyExifFixDate"_L1, 0, 0, 3));
    o.prefFixDateDate = f.date("prefFixDateDate"_L1);
    o.prefFixDateStepValue = f.real("prefFixDateStepValue"_L1);
    o.prefFixDateStepperKind = int(f.integer("prefFixDateStepperKind"_L1, 0, 0, 2));
    o.intervalStepper = f.real("intervalStepper"_L1);
    for (const auto &[key, value] :
         {std::pair{"skipEmptyTagImportOptions"_L1, &o.skipEmptyTagImportOptions},
          std::pair{"fixFinderDateOnImport"_L1, &o.fixFinderDateOnImport},
          std::pair{"createFileGroups"_L1, &o.createFileGroups},
          std::pair{"createFileGroupsOnMovingFilesToo"_L1, &o.createFileGroupsOnMovingFilesToo},
          std::pair{"isMDTADateEnabled"_L1, &o.isMDTADateEnabled},
          std::pair{"isMVHDTimezoneCorrectionEnabled"_L1, &o.isMVHDTimezoneCorrectionEnabled},
          std::pair{"useMovieOptionsQTValuesWithoutShowingSheet"_L1, &o.useMovieOptionsQTValuesWithoutShowingSheet},
          std::pair{"sortLPsByMov"_L1, &o.sortLPsByMov}})
        *value = f.has(key) ? f.flag(key) : *value;
    o.dateComparisonThresold = int(f.integer("dateComparisonThresold"_L1, o.dateComparisonThresold, 0, 1 << 30));
    o.harmonizingRawJpgsTypeDefault = int(f.integer("harmonizingRawJpgsTypeDefault"_L1, 0, -1, 9));
    o.sortLPsByMovModifierDefault = int(f.integer("sortLPsByMovModifierDefault"_L1, 0, -1, 9));
    o.groupDisplayRawJpgPreviewDefault = int(f.integer("groupDisplayRawJpgPreviewDefault"_L1, 0, -1, 9));
    return o;
}

void writeItems(QCborStreamWriter &w, const QList<MySinglePic *> &pics, const MySingleFolder &folder)
{
    w.startArray(quint64(pics.size()));
    for (const MySinglePic *pic : pics) {
        const MySinglePic *dependent = pic->bundleDependentImage;
        const QList<MySinglePic *> &list =
            dependent && dependent->spType > 13 ? folder.bundleDependentsLivePhotos : folder.bundleDependentsRawAndJPG;
        ItemCoder::write(w, *pic, dependent ? list.indexOf(dependent) : -1);
    }
    w.endArray();
}

// The item lists' keys: their items are sliced out of the folder's bytes and decoded apart.
constexpr std::array<QLatin1StringView, 3> itemListKeys = {
    QLatin1StringView("sfPicDetails"), QLatin1StringView("bundleDependentsRawAndJPG"),
    QLatin1StringView("bundleDependentsLivePhotos")};

// A folder's map split for reading: every value but the item lists as a map, and each item of
// those lists as its own bytes, so that items are decoded in parallel and one at a time rather
// than as one tree of the whole folder.
struct FolderParts
{
    QCborMap values;
    std::array<QList<QByteArrayView>, 3> items;
    QString problem;
};

// The folder's entries are cut apart by their heads alone (cborItemEnd): a stream reader's walk
// over every item decoded each text on the way, on the one thread that has to finish before the
// items can be decoded on the pool. What a value is, is left to the decoding of its own bytes.
FolderParts splitFolder(const QByteArray &data)
{
    FolderParts parts;
    const QByteArrayView bytes(data);
    const auto fail = [](const QString &what) { return FolderParts{{}, {}, what}; };
    const CborHead map = cborHead(bytes, 0);
    if (map.length == 0 || map.major != 5)
        return fail(u"the folder is not a map"_s);
    qsizetype at = map.length;
    // The writer leaves the map's length open; a definite one is read as well.
    const qsizetype end = map.isIndefinite() ? bytes.size() - 1 : bytes.size();
    quint64 entry = 0;
    for (; at < end && (map.isIndefinite() || entry < map.argument); ++entry) {
        const qsizetype keyEnd = cborItemEnd(bytes, at);
        const qsizetype valueEnd = cborItemEnd(bytes, keyEnd);
        if (keyEnd < 0 || valueEnd < 0)
            return fail(u"the folder's bytes are damaged"_s);
        QCborParserError error;
        const QCborValue key = QCborValue::fromCbor(bytes.data() + at, keyEnd - at, &error);
        if (error.error != QCborError::NoError || !key.isString())
            return fail(u"a key is not a text"_s);
        const QByteArrayView value = bytes.sliced(keyEnd, valueEnd - keyEnd);
        at = valueEnd;
        const auto list = std::find(itemListKeys.begin(), itemListKeys.end(), key.toString());
        if (list == itemListKeys.end()) {
            const QCborValue decoded = QCborValue::fromCbor(value.data(), value.size(), &error);
            if (error.error != QCborError::NoError)
                return fail(u"%1 cannot be read: %2"_s.arg(key.toString(), error.errorString()));
            parts.values.insert(key, decoded);
            continue;
        }
        const CborHead array = cborHead(value, 0);
        if (array.major != 4)
            return fail(u"%1 is not an array"_s.arg(key.toString()));
        qsizetype item = array.length;
        const qsizetype itemsEnd = array.isIndefinite() ? value.size() - 1 : value.size();
        QList<QByteArrayView> &items = parts.items[std::size_t(list - itemListKeys.begin())];
        while (item < itemsEnd) {
            const qsizetype itemEnd = cborItemEnd(value, item);
            items.append(value.sliced(item, itemEnd - item));
            item = itemEnd;
        }
    }
    const bool whole = map.isIndefinite() ? at == end && quint8(bytes[end]) == 0xff : at == end && entry == map.argument;
    if (!whole)
        return fail(u"the folder's bytes are damaged"_s);
    return parts;
}

// Decodes one list of items on the pool; the first problem by position is the one named.
std::vector<ItemCoder::ReadItem> readItems(const QList<QByteArrayView> &items, const CborFields &f,
                                           QLatin1StringView key)
{
    std::vector<ItemCoder::ReadItem> read(std::size_t(items.size()));
    std::vector<StateProblem> problems(read.size());
    QList<qsizetype> positions(items.size());
    std::iota(positions.begin(), positions.end(), 0);
    QtConcurrent::blockingMap(positions, [&](qsizetype i) {
        const std::size_t at = std::size_t(i);
        const QByteArray item = QByteArray::fromRawData(items.at(i).data(), items.at(i).size());
        read[at] = ItemCoder::read(CborFields::ofItem(item, f.where() + u"/%1[%2]"_s.arg(key).arg(i), problems[at]));
    });
    for (const StateProblem &problem : problems)
        if (problem.has()) {
            f.problem().note({}, problem.text());
            return {};
        }
    return read;
}

QSet<const MySinglePic *> readIdSet(const CborFields &f, const QCborValue &value, const QString &key,
                                    const ItemReferences &refs)
{
    QSet<const MySinglePic *> pics;
    if (!value.isArray()) {
        f.refuse(u"%1 is not a list of items"_s.arg(key));
        return pics;
    }
    for (const QCborValue &id : value.toArray()) {
        MySinglePic *pic = id.isInteger() ? refs.picOf(id.toInteger()) : nullptr;
        if (!pic) {
            f.refuse(u"%1 names an item the folder does not hold"_s.arg(key));
            return {};
        }
        pics.insert(pic);
    }
    return pics;
}

FolderTimeZones readZones(const CborFields &f, const ItemReferences &refs)
{
    FolderTimeZones zones;
    const QCborMap all = f.all();
    for (auto it = all.constBegin(); it != all.constEnd() && !f.problem().has(); ++it) {
        const QString name = it.key().toString();
        if (name == u"_DEFAULT"_s) {
            zones.defaultZone = f.text("_DEFAULT"_L1);
            continue;
        }
        QSet<const MySinglePic *> pics = readIdSet(f, it.value(), name, refs);
        if (!pics.isEmpty())
            zones.itemsByZone.insert(name, std::move(pics));
    }
    return zones;
}

} // namespace

QByteArray write(const MySingleFolder &folder)
{
    QByteArray data;
    QCborStreamWriter w(&data);
    const QList<MySinglePic *> masters = keptMasters(folder);
    const ItemReferences refs({masters, folder.bundleDependentsRawAndJPG, folder.bundleDependentsLivePhotos});
    CborMapWriter map(w);
    map.put("stateVersion"_L1, stateVersion);
    map.put("lastConnectedState"_L1, folder.lastConnectedState);
    map.put("sfFolderPath_OLD"_L1, folder.sfLastKnownFolderPath);
    map.put("sfFolder_lastKnown"_L1, folder.sfFolder);
    map.put("sfFolderPath"_L1, folder.sfFolderPath);
    QCborStreamWriter &token = map.entry("sfSecBookmark"_L1);
    token.startArray(3);
    token.append(folder.sfSecBookmark.path());
    token.append(folder.sfSecBookmark.identity().device);
    token.append(folder.sfSecBookmark.identity().inode);
    token.endArray();
    writeItems(map.entry("sfPicDetails"_L1), masters, folder);
    writeItems(map.entry("bundleDependentsRawAndJPG"_L1), folder.bundleDependentsRawAndJPG, folder);
    writeItems(map.entry("bundleDependentsLivePhotos"_L1), folder.bundleDependentsLivePhotos, folder);
    map.put("sfEditMode"_L1, qint64(folder.sfEditMode));
    map.entry("isQuicktimeMDTADateEnabled"_L1).append(folder.isQuicktimeMDTADateEnabled);
    map.entry("isQuicktimeMVHDTimezoneCorrectionEnabled"_L1).append(folder.isQuicktimeMVHDTimezoneCorrectionEnabled);
    map.put("isAdvanced"_L1, folder.isAdvanced);
    map.put("modifyImportBecauseOfCommand"_L1, qint64(folder.modifyImportBecauseOfCommand));
    writeOptions(map.entry("perFolderImportOptions"_L1), folder.perFolderImportOptions);
    map.put("isImportSheetDone"_L1, folder.isImportSheetDone);
    map.put("isMovieImportSheetDone"_L1, folder.isMovieImportSheetDone);
    map.put("importDepth"_L1, folder.importDepth);
    map.put("colorIndex"_L1, qint64(folder.colorIndex), qint64(MySingleFolder::noColorIndex));
    map.putDouble("sfDateModificationsTimeInterval"_L1, folder.sfDateModificationsTimeInterval);
    {
        QCborStreamWriter &e = map.entry("sfDateModifications"_L1);
        e.startMap(quint64(folder.sfDateModifications.size()));
        for (auto it = folder.sfDateModifications.cbegin(); it != folder.sfDateModifications.cend(); ++it) {
            e.append(it.key());
            e.append(it.value());
        }
        e.endMap();
    }
    map.put("hasChangedDirection"_L1, folder.hasChangedDirection);
    map.put("fixedDates"_L1, qint64(folder.fixedDates));
    map.put("saveErrors"_L1, qint64(folder.saveErrors));
    map.put("renameErrors"_L1, qint64(folder.renameErrors));
    map.put("singlePicModeImages"_L1, folder.singlePicModeImages);
    writeZones(map.entry("sourceTimeZones"_L1), folder.sourceTimeZones, refs);
    writeZones(map.entry("targetTimeZones"_L1), folder.targetTimeZones, refs);
    map.put("harmonizingRawJpgsType"_L1, folder.harmonizingRawJpgsType, -1);
    map.put("sortLPsByMovModifier"_L1, folder.sortLPsByMovModifier, -1);
    map.put("globalSortLPsByMov"_L1, folder.globalSortLPsByMov);
    map.put("rawJpgDisplayType"_L1, folder.rawJpgDisplayType, -1);
    QStringList tracks(folder.linkedTracksKeys.cbegin(), folder.linkedTracksKeys.cend());
    tracks.sort();
    map.put("linkedTracksKeys"_L1, tracks);
    map.put("folderSortGeneral"_L1, folder.folderSortGeneral);
    map.put("lastKnownModDateTime"_L1, folder.lastKnownModDateTime);
    if (!folder.quickSelection.isEmpty())
        writeIds(map.entry("quickSelectionIndexSet"_L1), refs.ids(folder.quickSelection));
    return data;
}

ReadFolder read(const QByteArray &data, const QString &where)
{
    const FolderParts parts = splitFolder(data);
    if (!parts.problem.isEmpty())
        return {nullptr, where + u": "_s + parts.problem};
    StateProblem problem;
    const CborFields f(parts.values, where, problem);
    if (const qint64 version = f.integer("stateVersion"_L1); !problem.has() && version != stateVersion)
        f.refuse(u"folder version %1 is not %2"_s.arg(version).arg(stateVersion));
    const QString path = f.text("sfFolderPath"_L1);
    if (!problem.has() && !path.startsWith(QLatin1Char('/')))
        f.refuse(u"the folder has no absolute path"_s);
    if (problem.has())
        return {nullptr, problem.text()};

    auto folder = std::make_unique<MySingleFolder>(path, false);
    MySingleFolder &d = *folder;
    d.lastConnectedState = f.integer("lastConnectedState"_L1);
    d.sfLastKnownFolderPath = f.text("sfFolderPath_OLD"_L1);
    d.sfFolder = f.text("sfFolder_lastKnown"_L1);
    const QCborArray token = f.array("sfSecBookmark"_L1);
    if (token.size() != 3 || !token.at(0).isString() || !token.at(1).isInteger() || !token.at(2).isInteger())
        f.refuse(u"sfSecBookmark is not a folder token"_s);
    else
        d.sfSecBookmark = FolderToken::stored(token.at(0).toString(),
                                              {quint64(token.at(1).toInteger()), quint64(token.at(2).toInteger())});

    std::vector<ItemCoder::ReadItem> masters = readItems(parts.items[0], f, itemListKeys[0]);
    std::vector<ItemCoder::ReadItem> raws = readItems(parts.items[1], f, itemListKeys[1]);
    std::vector<ItemCoder::ReadItem> movies = readItems(parts.items[2], f, itemListKeys[2]);
    if (problem.has())
        return {nullptr, problem.text()};
    QList<MySinglePic *> lists[3];
    SharedCameraTexts cameraTexts;
    for (int list = 0; list < 3; ++list)
        for (ItemCoder::ReadItem &item : (list == 0 ? masters : list == 1 ? raws : movies)) {
            cameraTexts.share(*item.pic);
            lists[list].append(d.adoptPic(std::move(item.pic), list == 0));
        }
    d.bundleDependentsRawAndJPG = lists[1];
    d.bundleDependentsLivePhotos = lists[2];
    for (std::size_t i = 0; i < masters.size(); ++i) {
        if (masters[i].dependentIndex < 0)
            continue;
        const QList<MySinglePic *> &dependents = masters[i].dependentIsMovie ? lists[2] : lists[1];
        MySinglePic *dependent = dependents.value(masters[i].dependentIndex);
        if (!dependent || dependent->bundleMasterImage) {
            f.refuse(u"item %1 names a group partner the folder does not hold"_s.arg(qint64(i)));
            return {nullptr, problem.text()};
        }
        lists[0][qsizetype(i)]->bundleDependentImage = dependent;
        dependent->bundleMasterImage = lists[0][qsizetype(i)];
    }
    const ItemReferences refs({lists[0], lists[1], lists[2]});

    d.sfEditMode = int(f.integer("sfEditMode"_L1, 1, 1, 2));
    d.isQuicktimeMDTADateEnabled = f.flag("isQuicktimeMDTADateEnabled"_L1);
    d.isQuicktimeMVHDTimezoneCorrectionEnabled = f.flag("isQuicktimeMVHDTimezoneCorrectionEnabled"_L1);
    d.isAdvanced = f.flag("isAdvanced"_L1);
    d.modifyImportBecauseOfCommand = int(f.integer("modifyImportBecauseOfCommand"_L1, 0, 0, 4));
    d.perFolderImportOptions = readOptions(f.map("perFolderImportOptions"_L1));
    d.isImportSheetDone = f.flag("isImportSheetDone"_L1);
    d.isMovieImportSheetDone = f.flag("isMovieImportSheetDone"_L1);
    d.importDepth = f.integer("importDepth"_L1, 0, -1);
    d.colorIndex = quint16(f.integer("colorIndex"_L1, MySingleFolder::noColorIndex, 0, 65535));
    d.sfDateModificationsTimeInterval = f.real("sfDateModificationsTimeInterval"_L1);
    const CborFields modifications = f.map("sfDateModifications"_L1);
    const QCborMap allModifications = modifications.all();
    for (auto it = allModifications.constBegin(); it != allModifications.constEnd(); ++it) {
        if (!it.value().isString() || !d.sfDateModifications.contains(it.key().toString()))
            f.refuse(u"sfDateModifications holds an unknown control"_s);
        else
            d.sfDateModifications[it.key().toString()] = it.value().toString();
    }
    d.hasChangedDirection = f.flag("hasChangedDirection"_L1);
    d.fixedDates = int(f.integer("fixedDates"_L1, 0, 0, 1 << 30));
    d.saveErrors = int(f.integer("saveErrors"_L1, 0, 0, 1 << 30));
    d.renameErrors = int(f.integer("renameErrors"_L1, 0, 0, 1 << 30));
    d.singlePicModeImages = f.integer("singlePicModeImages"_L1, 0, 0);
    d.sourceTimeZones = readZones(f.map("sourceTimeZones"_L1), refs);
    d.targetTimeZones = readZones(f.map("targetTimeZones"_L1), refs);
    d.harmonizingRawJpgsType = f.integer("harmonizingRawJpgsType"_L1, -1, -1, 9);
    d.sortLPsByMovModifier = f.integer("sortLPsByMovModifier"_L1, -1, -1, 9);
    d.globalSortLPsByMov = f.flag("globalSortLPsByMov"_L1);
    d.rawJpgDisplayType = f.integer("rawJpgDisplayType"_L1, -1, -1, 9);
    const QStringList tracks = f.texts("linkedTracksKeys"_L1);
    d.linkedTracksKeys = QSet<QString>(tracks.cbegin(), tracks.cend());
    d.folderSortGeneral = f.integer("folderSortGeneral"_L1);
    d.lastKnownModDateTime = f.date("lastKnownModDateTime"_L1);
    if (f.has("quickSelectionIndexSet"_L1))
        d.quickSelection = readIdSet(f, f.value("quickSelectionIndexSet"_L1), u"quickSelectionIndexSet"_s, refs);
    if (problem.has())
        return {nullptr, problem.text()};

    d.sfPics = d.count();
    d.sfUpdatePicsFromAndTill();
    d.updateFolderValuesOnPicMove();
    d.recountKeepersAndRejects();
    return {std::move(folder), {}};
}

} // namespace orv::FolderCoder
