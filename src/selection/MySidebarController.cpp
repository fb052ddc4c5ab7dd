#include "selection/MySidebarController.h"

#include "core/DaylightSaving.h"
#include "core/MySinglePic.h"
#include "core/SaveSettings.h"
#include "folders/MySingleFolder.h"
#include "selection/CameraKinds.h"
#include "selection/NaturalNameOrder.h"
#include "selection/PicKinds.h"
#include "selection/RelativeTimes.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMap>

#include <algorithm>

namespace orv {

namespace {

QString translated(const char *text) { return QCoreApplication::translate("MySidebarController", text); }

const QString noFilterKey = QStringLiteral("noFilter");
const QString slideshowKey = QStringLiteral("slideshowOnly");
const QString unsavedKey = QStringLiteral("unsaved");
const QString ratingPrefix = QStringLiteral("rating/");
const QString cameraPrefix = QStringLiteral("camera/");
const QString lensPrefix = QStringLiteral("lens/");
const QString settingPrefix = QStringLiteral("setting/");
// Between a row's key and its sub-row's value: camera and lens names hold slashes ("f/4").
const QChar subKeySeparator(0x1F);
const QString typePrefix = QStringLiteral("type/");
const QString timePrefix = QStringLiteral("time/");
const QString alertKey = QStringLiteral("withAlert");
const QString alertPrefix = QStringLiteral("alert/");
const QString relativeTimeKey = QStringLiteral("relativeTime");
const QString relativeTimePrefix = QStringLiteral("relativeTime/");
// Headings: choosing one filters nothing.
const QStringList groupKeys = {QStringLiteral("rating"), QStringLiteral("times"), QStringLiteral("cameras"),
                               QStringLiteral("fileType"), QStringLiteral("lenses"), QStringLiteral("camSettings")};

MyFiltersItem groupRow(const QString &key, const QString &title, QList<MyFiltersItem> children)
{
    return {key, title, true, {}, std::move(children)};
}

// The rows of the stores whose keys begin with prefix, one per key, ordered as names; title
// gives a row's title from the rest of its key.
QList<MyFiltersItem> rowsOfStores(const QHash<QString, QSet<MySinglePic *>> &stores, const QString &prefix,
                                  const std::function<QString(const QString &)> &title)
{
    QStringList keys;
    for (auto it = stores.cbegin(); it != stores.cend(); ++it)
        if (it.key().startsWith(prefix) && !it.key().mid(prefix.size()).contains(QLatin1Char('/')) && !it->isEmpty())
            keys.append(it.key());
    const QCollator collator = naturalNameCollator();
    std::sort(keys.begin(), keys.end(), collator);
    QList<MyFiltersItem> rows;
    for (const QString &key : std::as_const(keys))
        rows.append({key, title(key.mid(prefix.size())), false, stores.value(key), {}});
    return rows;
}

QString keyPart(QString text) { return text.replace(subKeySeparator, QLatin1Char(' ')); }

QString withSubKey(const QString &key, const QString &value) { return key + subKeySeparator + keyPart(value); }

// A camera with its body's serial, a lens with its own, each setting of the shot: the row
// keys and their sub-row keys.
void appendCameraKeys(const MySinglePic &pic, QStringList &keys)
{
    const QString camera = cameraPrefix + keyPart(CameraKinds::cameraOf(pic));
    keys.append(camera);
    keys.append(withSubKey(camera, CameraKinds::bodySnOf(pic)));
    const QString lens = lensPrefix + keyPart(CameraKinds::lensOf(pic));
    keys.append(lens);
    keys.append(withSubKey(lens, CameraKinds::lensSnOf(pic)));
    for (const ShotSetting setting : allShotSettings)
        if (const std::optional<QString> value = CameraKinds::settingOf(pic, setting)) {
            const QString settingKey = settingPrefix + QString::number(int(setting));
            keys.append(settingKey);
            keys.append(withSubKey(settingKey, *value));
        }
}

// The rows of the stores whose keys begin with prefix and hold no sub-key, each with the rows
// of its sub-keys as children. Children appear where showChildren says so of their values.
QList<MyFiltersItem> rowsWithSubRows(const QHash<QString, QSet<MySinglePic *>> &stores, const QString &prefix,
                                     const std::function<QString(const QString &)> &title,
                                     const std::function<QString(const QString &)> &childTitle,
                                     const std::function<bool(const QStringList &)> &showChildren)
{
    QMap<QString, QStringList> subValues;
    for (auto it = stores.cbegin(); it != stores.cend(); ++it) {
        if (!it.key().startsWith(prefix) || it->isEmpty())
            continue;
        const qsizetype separator = it.key().indexOf(subKeySeparator);
        if (separator < 0)
            subValues[it.key()];
        else
            subValues[it.key().first(separator)].append(it.key().mid(separator + 1));
    }
    QStringList keys = subValues.keys();
    const QCollator collator = naturalNameCollator();
    std::sort(keys.begin(), keys.end(), collator);
    QList<MyFiltersItem> rows;
    for (const QString &key : std::as_const(keys)) {
        MyFiltersItem row{key, title(key.mid(prefix.size())), false, stores.value(key), {}};
        QStringList values = subValues.value(key);
        if (showChildren(values)) {
            std::sort(values.begin(), values.end(), collator);
            for (const QString &value : std::as_const(values))
                row.children.append({withSubKey(key, value), childTitle(value), false, stores.value(withSubKey(key, value)), {}});
        }
        rows.append(std::move(row));
    }
    return rows;
}

// Serial rows where the items name a serial: a single row of none would say nothing.
bool namesASerial(const QStringList &serials)
{
    return serials.size() > 1 || (serials.size() == 1 && serials.constFirst() != CameraKinds::unknown);
}

const MyFiltersItem *findRow(const QList<MyFiltersItem> &rows, const QString &key)
{
    for (const MyFiltersItem &row : rows) {
        if (row.key == key)
            return &row;
        if (const MyFiltersItem *child = findRow(row.children, key))
            return child;
    }
    return nullptr;
}

// The alerts an item stands under until the user deals with them. Rename errors are not among
// them: a rename run reports them for the run, and no item keeps them.
struct AlertKind
{
    const char *key;
    const char *title;
    bool (*holds)(const MySinglePic &pic);
};

// The file's tags hold no date of it: an empty stamp, or none, gave way to a file or a fixed
// date. Files that take no dates at all are no case for an alert.
bool isDatedWithoutTag(const MySinglePic &pic)
{
    switch (pic.spType) {
    case 0:
    case SpTypeNoTagsFileDate:
    case SpTypeNoTagsImportOptionDate:
    case SpTypeMovieFileDate:
        return true;
    default:
        return pic.isNullerFile();
    }
}

const AlertKind alertKinds[] = {
    {"errorsSave", QT_TRANSLATE_NOOP("MySidebarController", "Save Errors"),
     [](const MySinglePic &pic) { return pic.hasBundleSaveError(); }},
    {"externalChanged", QT_TRANSLATE_NOOP("MySidebarController", "Changed by Other Programs"),
     [](const MySinglePic &pic) {
         const qint64 state = pic.bundleUnchangedState();
         return state >= 2 && state <= 4;
     }},
    {"externalDeleted", QT_TRANSLATE_NOOP("MySidebarController", "Missing Files"),
     [](const MySinglePic &pic) { return pic.bundleUnchangedState() == 1; }},
    {"outdatedData", QT_TRANSLATE_NOOP("MySidebarController", "To Be Read Again"),
     [](const MySinglePic &pic) { return pic.bundleUnchangedState() == 5; }},
    {"majorDateDifference", QT_TRANSLATE_NOOP("MySidebarController", "Major Date Differences"),
     [](const MySinglePic &pic) { return pic.hasMajorDateDifference(); }},
    {"minorDateDifference", QT_TRANSLATE_NOOP("MySidebarController", "Differences from the GPS Time"),
     [](const MySinglePic &pic) { return pic.hasMinorDateDifference; }},
    // The source zone's clocks skipped the stamp's hour: it names no moment there.
    {"dstDivergence", QT_TRANSLATE_NOOP("MySidebarController", "Hours Skipped at a Clock Change"),
     [](const MySinglePic &pic) { return pic.dstDivergenceState != 0; }},
    // They went through the stamp's hour twice: it names two moments.
    {"dstAmbiguity", QT_TRANSLATE_NOOP("MySidebarController", "Hours Repeated at a Clock Change"),
     DaylightSaving::isDateSourceAmbiguousAtImport},
    {"missingDate", QT_TRANSLATE_NOOP("MySidebarController", "No Date in the Tags"), isDatedWithoutTag},
};

// The rows of the ranges from today, by RelativeTimes::indexOf: their keys and titles.
QList<std::pair<QString, QString>> relativeRangeRows()
{
    const auto ago = [](const char *text, int steps) {
        return QCoreApplication::translate("MySidebarController", text, nullptr, steps);
    };
    QList<std::pair<QString, QString>> rows{
        {QStringLiteral("days_1"), translated(QT_TRANSLATE_NOOP("MySidebarController", "Today"))},
        {QStringLiteral("days_2"), translated(QT_TRANSLATE_NOOP("MySidebarController", "Yesterday"))},
        {QStringLiteral("days_3"), ago(QT_TRANSLATE_N_NOOP("MySidebarController", "%n Days Ago"), 2)},
        {QStringLiteral("month"), translated(QT_TRANSLATE_NOOP("MySidebarController", "This Month"))},
        {QStringLiteral("months_1"), translated(QT_TRANSLATE_NOOP("MySidebarController", "Last Month"))},
    };
    for (int months = 2; months < RelativeTimes::rangesPerScale[RelativeTimes::Months]; ++months)
        rows.append({QStringLiteral("months_%1").arg(months),
                     ago(QT_TRANSLATE_N_NOOP("MySidebarController", "%n Months Ago"), months)});
    rows.append({QStringLiteral("year"), translated(QT_TRANSLATE_NOOP("MySidebarController", "This Year"))});
    rows.append({QStringLiteral("years_1"), translated(QT_TRANSLATE_NOOP("MySidebarController", "Last Year"))});
    for (int years = 2; years < RelativeTimes::rangesPerScale[RelativeTimes::Years]; ++years)
        rows.append({QStringLiteral("years_%1").arg(years),
                     ago(QT_TRANSLATE_N_NOOP("MySidebarController", "%n Years Ago"), years)});
    return rows;
}

} // namespace

QStringList MySidebarController::storeKeysFor(const MySinglePic &pic) const
{
    QStringList keys;
    const MySinglePic &rated = pic.bundleMasterImage ? *pic.bundleMasterImage : pic;
    keys.append(ratingPrefix + QLatin1String(rated.isRejected ? "rejects" : rated.isKeeper ? "keepers" : "neutrals"));
    const MySingleFolder *folder = pic.spSingleFolder ? MySingleFolder::of(pic) : nullptr;
    // A folder imported as a slideshow only read no camera.
    if (folder && folder->isEXIFIgnored())
        keys.append(slideshowKey);
    else
        appendCameraKeys(pic, keys);
    for (const PicKind kind : {PicKind::Photo, PicKind::Movie, PicKind::Group, PicKind::Sidecar}) {
        const QStringList types = PicKinds::typesOf(pic, kind);
        if (types.isEmpty())
            continue;
        const QString kindKey = typePrefix + PicKinds::key(kind);
        keys.append(kindKey);
        for (const QString &type : types)
            keys.append(kindKey + QLatin1Char('/') + type);
    }
    return keys;
}

void MySidebarController::addFixedValuesFor(const QList<MySinglePic *> &pics)
{
    for (MySinglePic *pic : pics) {
        if (m_allAddedMedia.contains(pic))
            continue;
        m_allAddedMedia.insert(pic);
        // The item remembers the stores' own keys, so that 100,000 items share their texts, and
        // of a row with sub-rows only the sub-row's, which names the row before it.
        const QStringList keys = storeKeysFor(*pic);
        QStringList remembered;
        for (qsizetype i = 0; i < keys.size(); ++i) {
            auto store = m_stores.find(keys.at(i));
            if (store == m_stores.end())
                store = m_stores.insert(keys.at(i), {});
            store->insert(pic);
            const bool namedBySubRow = i + 1 < keys.size() && keys.at(i + 1).startsWith(keys.at(i) + subKeySeparator);
            if (!namedBySubRow)
                remembered.append(store.key());
        }
        m_filedUnder.insert(pic, remembered);
    }
}

void MySidebarController::removeFixedValuesFor(const QList<MySinglePic *> &pics)
{
    for (MySinglePic *pic : pics) {
        if (!m_allAddedMedia.remove(pic))
            continue;
        for (const QString &key : m_filedUnder.take(pic)) {
            forget(pic, key);
            if (const qsizetype separator = key.indexOf(subKeySeparator); separator >= 0)
                forget(pic, key.first(separator));
        }
    }
}

void MySidebarController::forget(MySinglePic *pic, const QString &key)
{
    QSet<MySinglePic *> &store = m_stores[key];
    store.remove(pic);
    if (store.isEmpty())
        m_stores.remove(key);
}

void MySidebarController::didChangeSource(const QList<MySinglePic *> &items)
{
    const QSet<MySinglePic *> now(items.cbegin(), items.cend());
    QList<MySinglePic *> gone;
    for (MySinglePic *pic : std::as_const(m_allAddedMedia))
        if (!now.contains(pic))
            gone.append(pic);
    removeFixedValuesFor(gone);
    addFixedValuesFor(items);
}

void MySidebarController::sourceRelevantChangeWasMade(const QList<MySinglePic *> &pics)
{
    QList<MySinglePic *> known;
    for (MySinglePic *pic : pics) {
        if (m_allAddedMedia.contains(pic))
            known.append(pic);
        // A group's rating is its master's: the dependent follows it.
        if (pic->bundleDependentImage && m_allAddedMedia.contains(pic->bundleDependentImage))
            known.append(pic->bundleDependentImage);
    }
    removeFixedValuesFor(known);
    addFixedValuesFor(known);
}

MySidebarController::DatedPics MySidebarController::datedMedia() const
{
    DatedPics dated;
    dated.reserve(m_allAddedMedia.size());
    for (MySinglePic *pic : m_allAddedMedia)
        if (const OptionalDate date = pic->spDateTimeModified())
            dated.append({pic, *date});
    return dated;
}

QList<MyFiltersItem> MySidebarController::timesRows(const DatedPics &dated) const
{
    // Zones lie at most a day from UTC: only a date in UTC's last or first day of a year asks
    // the zone, so a refresh of 100,000 items costs arithmetic alone.
    const auto yearOf = [this](Instant date) {
        const Instant::Civil utc = date.toUtcCivil();
        const bool nearNewYear = (utc.month == 12 && utc.day == 31) || (utc.month == 1 && utc.day == 1);
        return nearNewYear ? m_zone.localCivil(date).year : utc.year;
    };
    QMap<int, QSet<MySinglePic *>> byYear;
    for (const auto &[pic, date] : dated)
        byYear[yearOf(date)].insert(pic);
    QList<MyFiltersItem> rows;
    for (auto it = byYear.cbegin(); it != byYear.cend(); ++it)
        rows.append({timePrefix + QString::number(it.key()), QString::number(it.key()), false, it.value(), {}});
    return rows;
}

std::optional<MyFiltersItem> MySidebarController::withAlertRow() const
{
    // One visit per item for all kinds: with 100,000 items the visits, not the tests, cost.
    constexpr size_t kindCount = std::size(alertKinds);
    std::array<QSet<MySinglePic *>, kindCount> pics;
    QSet<MySinglePic *> withAnyAlert;
    for (MySinglePic *pic : m_allAddedMedia) {
        for (size_t k = 0; k < kindCount; ++k) {
            if (alertKinds[k].holds(*pic)) {
                pics[k].insert(pic);
                withAnyAlert.insert(pic);
            }
        }
    }
    if (withAnyAlert.isEmpty())
        return std::nullopt;
    MyFiltersItem withAlert{alertKey, translated(QT_TRANSLATE_NOOP("MySidebarController", "Alerts")), false,
                            withAnyAlert, {}};
    withAlert.isCollapsedByDefault = true;
    for (size_t k = 0; k < kindCount; ++k)
        if (!pics[k].isEmpty())
            withAlert.children.append(
                {alertPrefix + QLatin1String(alertKinds[k].key), translated(alertKinds[k].title), false, pics[k], {}});
    return withAlert;
}

Instant MySidebarController::now() const { return m_now ? m_now() : currentInstant(); }

Instant MySidebarController::endOfToday() const { return RelativeTimes(now(), m_zone).endOfToday(); }

std::optional<MyFiltersItem> MySidebarController::relativeTimeRow(const DatedPics &dated) const
{
    // The date in force, as the years' rows take it, from today in the same zone.
    const RelativeTimes times(now(), m_zone);
    std::array<QSet<MySinglePic *>, RelativeTimes::rangeCount> pics;
    for (const auto &[pic, date] : dated)
        for (const RelativeTimes::Scale scale : {RelativeTimes::Days, RelativeTimes::Months, RelativeTimes::Years})
            if (const std::optional<int> stepsBack = times.stepsBack(scale, date))
                pics[size_t(RelativeTimes::indexOf(scale, *stepsBack))].insert(pic);
    const QList<std::pair<QString, QString>> keysAndTitles = relativeRangeRows();
    QList<MyFiltersItem> rows;
    for (size_t i = 0; i < pics.size(); ++i)
        if (!pics[i].isEmpty())
            rows.append({relativeTimePrefix + keysAndTitles.at(qsizetype(i)).first,
                         keysAndTitles.at(qsizetype(i)).second, false, pics[i], {}});
    if (rows.isEmpty())
        return std::nullopt;
    return groupRow(relativeTimeKey, translated(QT_TRANSLATE_NOOP("MySidebarController", "How Long Ago")), rows);
}

QList<MyFiltersItem> MySidebarController::cameraAndLensRows() const
{
    QList<MyFiltersItem> groups;
    QList<MyFiltersItem> cameras =
        rowsWithSubRows(m_stores, cameraPrefix, CameraKinds::cameraName, CameraKinds::serialName, namesASerial);
    if (!cameras.isEmpty())
        groups.append(groupRow(groupKeys[2], translated(QT_TRANSLATE_NOOP("MySidebarController", "Camera")), cameras));
    // Lenses only where a file names one: a lone "No Lens" row would say nothing.
    QList<MyFiltersItem> lenses =
        rowsWithSubRows(m_stores, lensPrefix, CameraKinds::lensName, CameraKinds::serialName, namesASerial);
    if (!lenses.isEmpty() && !(lenses.size() == 1 && lenses.constFirst().key == lensPrefix + CameraKinds::unknown))
        groups.append(groupRow(groupKeys[4], translated(QT_TRANSLATE_NOOP("MySidebarController", "Lens")), lenses));
    return groups;
}

QList<MyFiltersItem> MySidebarController::settingsRows() const
{
    QList<MyFiltersItem> kinds;
    for (const ShotSetting setting : allShotSettings) {
        const QString settingKey = settingPrefix + QString::number(int(setting));
        const QSet<MySinglePic *> pics = m_stores.value(settingKey);
        if (pics.isEmpty())
            continue;
        const QString valuesPrefix = settingKey + subKeySeparator;
        QList<std::pair<double, QString>> values;
        for (auto it = m_stores.cbegin(); it != m_stores.cend(); ++it)
            if (it.key().startsWith(valuesPrefix) && !it->isEmpty()) {
                const QString value = it.key().mid(valuesPrefix.size());
                values.append({CameraKinds::settingOrder(setting, value), value});
            }
        std::sort(values.begin(), values.end());
        MyFiltersItem kind{settingKey, CameraKinds::settingName(setting), false, pics, {}};
        for (const auto &[order, value] : std::as_const(values))
            kind.children.append({valuesPrefix + value, CameraKinds::settingValueName(setting, value), false,
                                  m_stores.value(valuesPrefix + value), {}});
        kinds.append(std::move(kind));
    }
    if (kinds.isEmpty())
        return {};
    return {groupRow(groupKeys[5], translated(QT_TRANSLATE_NOOP("MySidebarController", "Camera Settings")), kinds)};
}

const QList<MyFiltersItem> &MySidebarController::fullRefresh()
{
    m_rows.clear();
    m_rows.append({noFilterKey,
                   m_allAddedMedia.isEmpty() ? translated(QT_TRANSLATE_NOOP("MySidebarController", "None"))
                                             : translated(QT_TRANSLATE_NOOP("MySidebarController", "All")),
                   false, m_allAddedMedia, {}});
    if (const QSet<MySinglePic *> slideshow = m_stores.value(slideshowKey); !slideshow.isEmpty())
        m_rows.append({slideshowKey, translated(QT_TRANSLATE_NOOP("MySidebarController", "Slideshow Only")), false,
                       slideshow, {}});
    if (std::optional<MyFiltersItem> withAlert = withAlertRow())
        m_rows.append(*std::move(withAlert));
    QSet<MySinglePic *> unsaved;
    for (MySinglePic *pic : std::as_const(m_allAddedMedia))
        if (pic->isUnsaved())
            unsaved.insert(pic);
    if (!unsaved.isEmpty())
        m_rows.append({unsavedKey, translated(QT_TRANSLATE_NOOP("MySidebarController", "Unsaved")), false, unsaved, {}});

    static const std::pair<const char *, const char *> ratings[] = {
        {"keepers", QT_TRANSLATE_NOOP("MySidebarController", "Keepers")},
        {"neutrals", QT_TRANSLATE_NOOP("MySidebarController", "Neutrals")},
        {"rejects", QT_TRANSLATE_NOOP("MySidebarController", "Rejects")}};
    QList<MyFiltersItem> ratingRows;
    for (const auto &[key, title] : ratings) {
        // A chosen rating stays while the user rates its last item away: the filter then shows
        // nothing rather than everything.
        const QString rowKey = ratingPrefix + QLatin1String(key);
        if (const QSet<MySinglePic *> pics = m_stores.value(rowKey); !pics.isEmpty() || m_selectedKeys.contains(rowKey))
            ratingRows.append({rowKey, translated(title), false, pics, {}});
    }
    if (!ratingRows.isEmpty())
        m_rows.append(groupRow(groupKeys[0], translated(QT_TRANSLATE_NOOP("MySidebarController", "Rating")), ratingRows));
    const DatedPics dated = datedMedia();
    if (QList<MyFiltersItem> times = timesRows(dated); !times.isEmpty())
        m_rows.append(groupRow(groupKeys[1], translated(QT_TRANSLATE_NOOP("MySidebarController", "Dates")), times));
    if (std::optional<MyFiltersItem> fromToday = relativeTimeRow(dated))
        m_rows.append(*std::move(fromToday));
    m_rows.append(cameraAndLensRows());
    QList<MyFiltersItem> kinds;
    for (const PicKind kind : {PicKind::Photo, PicKind::Movie, PicKind::Group, PicKind::Sidecar}) {
        const QString kindKey = typePrefix + PicKinds::key(kind);
        const QSet<MySinglePic *> pics = m_stores.value(kindKey);
        if (pics.isEmpty())
            continue;
        kinds.append({kindKey, PicKinds::name(kind), false, pics,
                      rowsOfStores(m_stores, kindKey + QLatin1Char('/'), [](const QString &type) { return type; })});
    }
    if (!kinds.isEmpty())
        m_rows.append(groupRow(groupKeys[3], translated(QT_TRANSLATE_NOOP("MySidebarController", "File Type")), kinds));
    m_rows.append(settingsRows());
    // A camera or a type whose items all left the working set is no longer chosen.
    m_selectedKeys.removeIf([this](const QString &key) { return !rowForKey(key); });
    return m_rows;
}

const MyFiltersItem *MySidebarController::rowForKey(const QString &key) const { return findRow(m_rows, key); }

std::optional<QSet<MySinglePic *>> MySidebarController::selectedPicsToFilter() const
{
    std::optional<QSet<MySinglePic *>> pics;
    for (const QString &key : m_selectedKeys) {
        const MyFiltersItem *row = rowForKey(key);
        if (key == noFilterKey || groupKeys.contains(key) || (row && row->isGroupItem))
            continue;
        if (!pics)
            pics.emplace();
        if (row)
            pics->unite(row->pics);
    }
    return pics;
}

} // namespace orv
