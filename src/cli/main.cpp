#include "cli/AlignCommand.h"
#include "cli/GeotagCommand.h"
#include "cli/JournalCommands.h"
#include "cli/LocateCommand.h"
#include "cli/PlacesCommand.h"
#include "cli/RateCommand.h"
#include "cli/RenameCommand.h"
#include "cli/ScanCommand.h"
#include "cli/ShiftCommand.h"
#include "cli/StillCommand.h"
#include "cli/StateCommand.h"
#include "cli/ZoneCommand.h"
#include "formats/SaveJournal.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

const char *const usage =
    "Usage: orvelle-cli COMMAND [OPTIONS] PATH...\n"
    "\n"
    "Reads and corrects the dates, time zones and places of photos and movies.\n"
    "\n"
    "Commands:\n"
    "  scan [OPTIONS] PATH...  Import files and folders as the window does, and show each\n"
    "                          file's date, its source, camera and location.\n"
    "    --json                One JSON object per file, in an array.\n"
    "                          rating: 1 keeper, 0 neutral, -1 reject (an xmp:Rating\n"
    "                          of 5 makes a keeper, -1 a reject).\n"
    "    --subfolders DEPTH    Also import subfolders, DEPTH levels deep (default 0).\n"
    "    --filter TEXT         Import only these extensions, e.g. \".jpg,.png\".\n"
    "    --exclude TEXT        Leave these extensions out, e.g. \".mov .mp4\".\n"
    "                          Sidecars (.xmp, .aae) always pass either filter.\n"
    "    --empty-tags CHOICE   Date of files whose date tags are empty: file-date\n"
    "                          (default), or fixed:DATE:STEP with DATE as\n"
    "                          2024-05-01T10:00:00 (local) or ...Z (UTC) and STEP in\n"
    "                          seconds added from one such file to the next.\n"
    "  shift --by OFFSET [--add-missing-dates] [--dry-run] [--json] [--pref KEY=VALUE]... PATH...\n"
    "                          Move every date of the files by OFFSET and save it into\n"
    "                          them in place. OFFSET is [+-][Nd]H:MM[:SS]: a sign, optional\n"
    "                          days, hours, minutes and optional seconds, e.g. +1:00:00,\n"
    "                          -0:30 (thirty minutes back), +2d3:00:00. --dry-run shows each\n"
    "                          date slot's OLD and NEW and the pre-save findings and writes\n"
    "                          nothing. --pref sets a preference for this run only.\n"
    "                          --add-missing-dates also adds the date tags a file lacks\n"
    "                          (through exiftool). Without it no tag is added: a file\n"
    "                          dated only by the file system gets the new date as its\n"
    "                          modification time, and its entry says so.\n"
    "  locate --at LAT,LON[,ALT] [--accuracy M] [--dry-run] [--json] [--pref KEY=VALUE]...\n"
    "         PATH...          Give every file this place (degrees, metres) and save it:\n"
    "                          in place where the file has GPS tags, otherwise through\n"
    "                          exiftool, or into an XMP sidecar for files that have one.\n"
    "                          --place NAME instead of --at takes the first place that\n"
    "                          'places NAME' lists (named on stderr).\n"
    "  geotag --gpx FILE [--gpx FILE]... [--offset OFFSET] [--dry-run] [--json]\n"
    "         [--pref KEY=VALUE]... PATH...\n"
    "                          Place the files by GPX tracks (GPX 1.0 and 1.1) and save the\n"
    "                          places as locate does, with the height of the track point\n"
    "                          nearer in time where the track has heights. A file takes the\n"
    "                          track's place at its date: a point within 5 seconds as it is,\n"
    "                          otherwise interpolated between the two points around it; a\n"
    "                          date in a gap between segments, before or after the tracks\n"
    "                          gets no place. Of overlapping tracks the one that starts first\n"
    "                          is used. Files with a place of their own keep it; files\n"
    "                          without a date of their own (only a file system date) are\n"
    "                          never placed. OFFSET ([+-]H:MM:SS) is added to the files'\n"
    "                          dates before they meet the tracks: +0:01:30 when the camera's\n"
    "                          clock ran 90 s behind the GPS; the files' dates stay as they\n"
    "                          are. Each file says how it matched (trackMatch: point,\n"
    "                          interpolated, gap, outside, ownPlace, noDate) and the seconds\n"
    "                          to the nearest track point (secondsToTrackPoint); each GPX\n"
    "                          file's problems are said on stderr and its other tracks still\n"
    "                          load.\n"
    "  align --by RULE [--main PATH] [--dry-run] [--json] [--pref KEY=VALUE]... PATH...\n"
    "                          Give the files, taken in time order, dates by a rule and\n"
    "                          save them like shift. RULE: gaps (spread the inner files\n"
    "                          evenly between the first and the last), minimize (one second\n"
    "                          apart around the --main file, default the first), filename\n"
    "                          (the dates in file name order), reverse (the order turned\n"
    "                          over), reverse-intervals (the run turned over, gaps kept),\n"
    "                          copy:SLOT (each file's other date: SLOT is one of\n"
    "                          exifDateTimeDigitized, tiffDateTime, fileCreationDate,\n"
    "                          fileModificationDate followed by OLD or NEW).\n"
    "  zone --source ZONE [--target ZONE] [--dry-run] [--json] [--pref KEY=VALUE]... PATH...\n"
    "                          Read the files' local stamps as clock time of the source\n"
    "                          zone and save them as clock time of the target zone (default\n"
    "                          the system's), zones named as in the tz database, e.g.\n"
    "                          Europe/Berlin. Stamps with an offset of their own keep their\n"
    "                          instant. Each file shows its daylight-saving findings: a stamp\n"
    "                          in an hour the source zone skips (divergence) or repeats\n"
    "                          (ambiguity; the later moment is taken), and a stored offset\n"
    "                          that disagrees with the zone.\n"
    "  rename --template TEXT [--text TEXT]... [--start N] [--dry-run] [--json] PATH...\n"
    "                          Rename the files by a template, each with the files of its\n"
    "                          group (RAW and JPEG, a Live Photo's still and movie) and its\n"
    "                          sidecars (.xmp, .aae), which keep one base name with it. TEXT\n"
    "                          is literal text with elements in braces: {year} (four\n"
    "                          digits), {year2} (two), {month} (two digits), {month1} (one\n"
    "                          character: 1 to 9, A, B, C), {day} {hour} {minute} {second}\n"
    "                          of the file's date as a save writes it, {counter} or\n"
    "                          {counter:N} (at least N digits, counting from --start, default\n"
    "                          1, over all files in date order), {folder} (the folder's name),\n"
    "                          {name} (the old name), {camera}, and {text} (up to three\n"
    "                          times, the --text values in order); {{ and }} are braces.\n"
    "                          E.g. '{year}-{month}-{day} {hour}-{minute}-{second} {camera}'.\n"
    "                          Extensions stay. A name taken by another file gets a number:\n"
    "                          \"name 2\", \"name 3\" (error 8 in the report); names that\n"
    "                          differ only in case count as the same. The whole plan is\n"
    "                          checked before the first rename and refused, naming both\n"
    "                          files, should two files meet one name; no rename ever\n"
    "                          replaces a file, and names may be swapped. Each line says\n"
    "                          OLD (path) and NEW (name); --dry-run only says them. --json\n"
    "                          gives one object per file: path, old, new, files (each file\n"
    "                          of the item, old and new), renamed, numberAdded, errors (ids)\n"
    "                          and, for a file that was not renamed, problem.\n"
    "  still --at SECONDS[,SECONDS...] [--chapters] [--format jpg|tif|heic] [--live] [--json]\n"
    "        MOVIE...          (--chapters alone, or with --at, also takes the starts of\n"
    "                          the movie's chapters as positions)\n"
    "                          Make a still of each movie at each position (seconds from\n"
    "                          its start), in a new folder \"NAME Stills\" beside the movie,\n"
    "                          named by the position (01_02_03.456.jpg). The still is the\n"
    "                          frame shown at that moment, upright, as JPEG (quality 75) or\n"
    "                          TIFF; heic is written as JPEG. It carries the movie's date\n"
    "                          plus the position (with the offset tags where the movie's\n"
    "                          zone is known), its place and its camera, and has that date\n"
    "                          as its file date. A still whose name exists is not made\n"
    "                          again and is said; a position past the end is an error and\n"
    "                          leaves no file. Prints each new still's path and date (UTC);\n"
    "                          --json gives movie, position, path, status (written or\n"
    "                          exists), date, stamp and offset of each still. The movies\n"
    "                          themselves are never changed. --live makes Live Photo\n"
    "                          pairs instead, in \"NAME Live Photos\": the JPEG still and a\n"
    "                          3-second movie around it (its video copied from the key\n"
    "                          frame before, no sound) that carry one content identifier,\n"
    "                          read back from both files before they take their names\n"
    "                          (--json adds livePhotoMovie).\n"
    "  state show PATH         Print a kept working set as JSON: a .orvstate package or\n"
    "                          a quit file (savedFolders_v6 in ~/.local/share/orvelle).\n"
    "                          Each folder's path, editMode (1 together, 2 separate),\n"
    "                          folderOffset (seconds), source and target time zones\n"
    "                          (_DEFAULT and zones of single items), and its items: name,\n"
    "                          dateOriginal, dateInForce, itemOffset, keeper, rejected,\n"
    "                          location, locationChanged, unsaved, fileUnchangedState and\n"
    "                          their group's dependent. Reads only; a file that is no\n"
    "                          state is named on stderr (exit code 1). \"view\": the\n"
    "                          window's view kept beside it (selections by place,\n"
    "                          filter, strip position, stateAtQuitType, the zone offset\n"
    "                          and conversionType: 2 when kept under another system\n"
    "                          time zone), null without one.\n"
    "  revert                  Put back the bytes and dates that the last save changed,\n"
    "                          file by file, exiftool's rewrites included, modification\n"
    "                          dates to the nanosecond; or, when the last run was a\n"
    "                          rename, the names it changed. A file changed since that\n"
    "                          run is left as it is and named, and the exit code is 1.\n"
    "  rate --keeper|--neutral|--reject [--dry-run] [--json] [--pref KEY=VALUE]... PATH...\n"
    "                          Rate the files (a RAW and JPEG pair or a Live Photo as one, in\n"
    "                          its main file) and save the rating as XMP xmp:Rating, which\n"
    "                          other programs read: 5 for a keeper, -1 for a reject, and 0\n"
    "                          (XMP's \"unrated\") for a neutral file that said 5 or -1. A file\n"
    "                          that says so already is not written; ratings 1 to 4 count as\n"
    "                          neutral and stay. Written in place into the file's XMP packet\n"
    "                          where its padding has room (the file keeps its length and\n"
    "                          modification date), otherwise through exiftool, into the\n"
    "                          file's XMP sidecar where it has one, for movies, and for RAW\n"
    "                          files unless addRawLocationsOnlyInSidecars is off (a new\n"
    "                          sidecar is made). Dates and places are not touched. Each file\n"
    "                          says its rating (1, 0, -1 as scan gives it) and xmpRating,\n"
    "                          the value written. 'revert' takes the ratings back.\n"
    "  places [--limit N] [--json] TEXT...\n"
    "                          List the places (cities of the system's GeoNames list, and\n"
    "                          time zones) whose name, country, region or zone name begins\n"
    "                          with TEXT, ignoring case and accents, largest first (at most\n"
    "                          N, default 20), each with its time zone and coordinates.\n"
    "                          Changes nothing.\n"
    "\n"
    "  --no-wait               With any command: when another save or revert is running,\n"
    "                          refuse at once (exit code 3) instead of waiting for it.\n"
    "  --version               Print the version.\n"
    "  --help                  Print this help.\n"
    "\n"
    "Every save and rename is recorded in a journal before a file is written or renamed; a\n"
    "journal that cannot be written (no space, no permission) stops the run before any file\n"
    "is touched. One save, rename or revert runs at a time: another one waits for it and\n"
    "says so on stderr. Each command first finishes a save or rename that was interrupted\n"
    "(killed, crashed) and says so on stderr.\n"
    "\n"
    "Exit codes: 0 success: every file was read and saved; 1 some path or file could not\n"
    "be read, saved, renamed or reverted (the rest is still done; each problem is listed\n"
    "on stderr with its path and reason), or a rename plan was refused (nothing was\n"
    "renamed); 2 wrong usage (nothing was done); 3 another save or revert was running\n"
    "and --no-wait was given (nothing was done).\n";

// Commands that may write files.
bool writesFiles(const QStringList &args)
{
    static const QStringList writing = {QStringLiteral("revert"), QStringLiteral("shift"), QStringLiteral("locate"),
                                        QStringLiteral("align"), QStringLiteral("zone"), QStringLiteral("geotag"),
                                        QStringLiteral("rename"), QStringLiteral("rate")};
    return writing.contains(args.first()) && !args.contains(QStringLiteral("--dry-run"));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("orvelle"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORV_VERSION));

    QStringList args = QCoreApplication::arguments().mid(1);
    const bool noWait = args.removeAll(QStringLiteral("--no-wait")) > 0;
    QTextStream out(stdout);
    if (args.isEmpty() || args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h")) {
        out << usage;
        return args.isEmpty() ? 2 : 0;
    }
    if (args.first() == QLatin1String("--version")) {
        out << "orvelle-cli " << ORV_VERSION << "\n";
        return 0;
    }
    // A command that writes holds the journal's lock to its end. Any other only finishes an
    // interrupted save when no other run holds the journal, and never waits.
    const bool writes = writesFiles(args);
    std::shared_ptr<orv::JournalLock> lock;
    {
        QTextStream err(stderr);
        const QString journal = orv::SaveJournal::defaultPath();
        lock = orv::JournalLock::take(journal, writes && !noWait, [&err] {
            err << "orvelle-cli: another save or revert is running; waiting for it to finish\n";
            err.flush();
        });
        if (!lock && writes) {
            err << "orvelle-cli: another save or revert is running (--no-wait): nothing was done\n";
            return 3;
        }
        if (lock)
            orv::JournalCommands::finishInterruptedSave(err);
        if (!writes)
            lock.reset();
    }
    if (args.first() == QLatin1String("revert"))
        return orv::JournalCommands::revert(args.mid(1));
    if (args.first() == QLatin1String("scan"))
        return orv::ScanCommand::run(args.mid(1));
    if (args.first() == QLatin1String("align"))
        return orv::AlignCommand::run(args.mid(1));
    if (args.first() == QLatin1String("shift"))
        return orv::ShiftCommand::run(args.mid(1));
    if (args.first() == QLatin1String("locate"))
        return orv::LocateCommand::run(args.mid(1));
    if (args.first() == QLatin1String("geotag"))
        return orv::GeotagCommand::run(args.mid(1));
    if (args.first() == QLatin1String("rename"))
        return orv::RenameCommand::run(args.mid(1));
    if (args.first() == QLatin1String("still"))
        return orv::StillCommand::run(args.mid(1));
    if (args.first() == QLatin1String("zone"))
        return orv::ZoneCommand::run(args.mid(1));
    if (args.first() == QLatin1String("state"))
        return orv::StateCommand::run(args.mid(1));
    if (args.first() == QLatin1String("rate"))
        return orv::RateCommand::run(args.mid(1));
    if (args.first() == QLatin1String("places"))
        return orv::PlacesCommand::run(args.mid(1));
    QTextStream(stderr) << "orvelle-cli: unknown command '" << args.first() << "'\n" << usage;
    return 2;
}
