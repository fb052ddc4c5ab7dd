#include "time/DateStampCodec.h"
#include "core/DaylightSaving.h"
#include "core/MySinglePic.h"
#include "time/TimeZone.h"

#include <QFile>
#include <QProcess>
#include <QTimeZone>
#include <gtest/gtest.h>

using namespace orv;

namespace {

// Every zone of the tz database's own list, by its name.
QStringList zone1970Names()
{
    QFile file(QStringLiteral("/usr/share/zoneinfo/zone1970.tab"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList names;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split('\t');
        if (!line.startsWith('#') && fields.size() >= 3)
            names << QString::fromLatin1(fields[2]);
    }
    return names;
}

struct Probe
{
    QString zone;
    QByteArray wallClock; // "yyyy:MM:dd HH:mm:ss"
    int jump;             // seconds the clocks moved at the transition
};

QByteArray exifText(qint64 wallSeconds)
{
    const Instant::Civil c = Instant(double(wallSeconds)).toUtcCivil();
    return QString::asprintf("%04d:%02d:%02d %02d:%02d:%02d", c.year, c.month, c.day, c.hour, c.minute, c.second)
        .toLatin1();
}

// One minute before, inside and one minute after each gap and each overlap that the clocks of
// the zone made from 2000 to 2030, as wall-clock readings. Qt only says where the changes are;
// what a reading means is Python's to say.
std::vector<Probe> transitionProbes(const QStringList &zones)
{
    const QDateTime from(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC);
    const QDateTime till(QDate(2031, 1, 1), QTime(0, 0), Qt::UTC);
    std::vector<Probe> probes;
    for (const QString &name : zones) {
        const QTimeZone zone(name.toLatin1());
        for (const QTimeZone::OffsetData &change : zone.transitions(from, till)) {
            const qint64 at = change.atUtc.toSecsSinceEpoch();
            const int before = zone.offsetFromUtc(change.atUtc.addSecs(-1));
            const int jump = change.offsetFromUtc - before;
            if (jump == 0)
                continue;
            const qint64 wall = at + before; // the wall clock that stops at the change
            const qint64 first = std::min(wall, wall + jump), last = std::max(wall, wall + jump);
            for (const qint64 probe : {first - 60, first + (last - first) / 2, last + 60})
                probes.push_back({name, exifText(probe), jump});
        }
    }
    return probes;
}

// Python's zoneinfo on each reading: 0 plain, 1 skipped, 2 repeated.
std::vector<int> zoneinfoVerdicts(const std::vector<Probe> &probes)
{
    static const char *script = R"(
import sys, datetime, zoneinfo
for line in sys.stdin:
    name, stamp = line.rstrip('\n').split('|')
    zone = zoneinfo.ZoneInfo(name)
    wall = datetime.datetime.strptime(stamp, '%Y:%m:%d %H:%M:%S')
    early, late = wall.replace(tzinfo=zone, fold=0), wall.replace(tzinfo=zone, fold=1)
    if early.utcoffset() == late.utcoffset():
        print(0)
    else:
        back = early.astimezone(datetime.timezone.utc).astimezone(zone).replace(tzinfo=None)
        print(2 if back == wall else 1)
)";
    QProcess python;
    python.start(QStringLiteral("python3"), {QStringLiteral("-c"), QString::fromLatin1(script)});
    QByteArray input;
    for (const Probe &p : probes)
        input += p.zone.toLatin1() + '|' + p.wallClock + '\n';
    python.write(input);
    python.closeWriteChannel();
    python.waitForFinished(60000);
    std::vector<int> verdicts;
    for (const QByteArray &line : python.readAllStandardOutput().split('\n'))
        if (!line.isEmpty())
            verdicts.push_back(line.toInt());
    return verdicts;
}

} // namespace

// Every transition of every zone from 2000 to 2030: a local creation stamp in a skipped hour
// diverges, one in a repeated hour is ambiguous, and the earlier moment of a repeated hour
// cannot be written as a local stamp; the stamps a minute outside are plain.
TEST(DaylightSaving, transitionsOfEveryZoneMatchZoneinfo)
{
    const QStringList zones = zone1970Names();
    ASSERT_GT(zones.size(), 300);
    const std::vector<Probe> probes = transitionProbes(zones);
    const std::vector<int> verdicts = zoneinfoVerdicts(probes);
    ASSERT_EQ(verdicts.size(), probes.size()) << "python3 with zoneinfo is needed";

    MySinglePic pic(QStringLiteral("probe.jpg"), nullptr, SpTypeExifOriginal, std::nullopt);
    int mismatches = 0, skipped = 0, repeated = 0;
    for (std::size_t i = 0; i < probes.size(); ++i) {
        const TimeZone zone = *TimeZone::fromName(probes[i].zone);
        const QByteArray stamp = probes[i].wallClock + '\0';
        const Instant read = DateStampCodec::dateFromExifData(stamp, zone);
        pic.singlePicAttributes.ExifDateTimeOriginal = StampRecord{stamp, 100};
        pic.exifDateTimeOriginalOLD = read;
        const DstFindings found = DaylightSaving::checkDSTDivergence(pic, {zone});
        const DstFindings expected{verdicts[i] == 1 ? quint64(DateSlotCreation) : 0, verdicts[i] == 2 ? quint64(DateSlotCreation) : 0};
        // The stored reading of a repeated hour is its later moment; the earlier cannot be written.
        const bool exportFails = verdicts[i] == 2
                                 && DaylightSaving::hasDSTAmbiguityForDate(pic, read.addingSeconds(probes[i].jump), 1, {zone})
                                 && !DaylightSaving::hasDSTAmbiguityForDate(pic, read, 1, {zone});
        skipped += verdicts[i] == 1;
        repeated += verdicts[i] == 2;
        if (found != expected || (verdicts[i] == 2 && !exportFails)) {
            if (++mismatches <= 10)
                ADD_FAILURE() << probes[i].zone.toStdString() << " " << probes[i].wallClock.toStdString()
                              << ": zoneinfo " << verdicts[i] << ", divergence " << found.divergence
                              << ", ambiguity " << found.ambiguity << ", export " << exportFails;
        }
    }
    EXPECT_EQ(mismatches, 0) << "of " << probes.size() << " readings";
    EXPECT_GT(skipped, 1000);
    EXPECT_GT(repeated, 1000);
}
