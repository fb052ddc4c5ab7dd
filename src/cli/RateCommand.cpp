#include "cli/RateCommand.h"

#include "app/AppController.h"
#include "cli/DateSaveRun.h"
#include "cli/PathImport.h"
#include "core/MySinglePic.h"
#include "folders/MySingleFolder.h"

#include <QTextStream>

#include <map>

namespace orv {

namespace {

const std::map<QString, PicRating> ratingFlags = {
    {QStringLiteral("--keeper"), PicRating::Keeper},
    {QStringLiteral("--neutral"), PicRating::Neutral},
    {QStringLiteral("--reject"), PicRating::Rejected},
};

QString ratingName(PicRating rating)
{
    switch (rating) {
    case PicRating::Keeper: return QStringLiteral("keeper");
    case PicRating::Rejected: return QStringLiteral("reject");
    case PicRating::Neutral: break;
    }
    return QStringLiteral("neutral");
}

// The rating as scan --json gives it, and the xmp:Rating the save writes, where it writes one.
DateSaveRun::ItemFacts factsOf(const MySinglePic &pic)
{
    const PicRating rating = ratingOf(pic);
    DateSaveRun::ItemFacts facts;
    facts.json.insert(QStringLiteral("rating"), int(rating));
    const std::optional<int> written = pic.groupXmpRatingToWrite();
    if (written)
        facts.json.insert(QStringLiteral("xmpRating"), *written);
    facts.text = QStringLiteral("rating: ") + ratingName(rating) +
                 (written ? QStringLiteral(" (xmp:Rating %1)").arg(*written)
                          : QStringLiteral(" (the file says so already)"));
    return facts;
}

} // namespace

int RateCommand::run(const QStringList &givenArguments)
{
    QTextStream err(stderr);
    DateSaveRun::Options options;
    QStringList arguments = givenArguments;
    std::optional<PicRating> rating;
    QString problem;
    for (const auto &[flag, value] : ratingFlags) {
        if (arguments.removeAll(flag) == 0)
            continue;
        if (rating)
            problem = QStringLiteral("give one of --keeper, --neutral and --reject");
        rating = value;
    }
    if (!rating && problem.isEmpty())
        problem = QStringLiteral("--keeper, --neutral or --reject is required");
    if (problem.isEmpty())
        problem = DateSaveRun::parseArguments(arguments, {}, {}, {}, options);
    if (!problem.isEmpty()) {
        err << "orvelle-cli rate: " << problem << "\n"
            << "Usage: orvelle-cli rate --keeper|--neutral|--reject [--dry-run] [--json] [--pref KEY=VALUE]... "
               "PATH...\n";
        return 2;
    }
    // The command exists to write the rating: the preference is on whatever the user's says.
    options.prefs.append({QStringLiteral("writeRatingsToXMPOnSave"), QStringLiteral("true")});

    return DateSaveRun::run(options, [&rating](PathImport &imported, Preferences &, QTextStream &) {
        DateSaveRun::ChangeOutcome outcome;
        for (MySingleFolder *folder : imported.folders()) {
            imported.controller().ratings().setRating(folder->sfPicDetails_fullArray, *rating);
            for (const MySinglePic *pic : folder->sfPicDetails_fullArray)
                outcome.itemFacts.insert(pic, factsOf(*pic));
        }
        return outcome;
    });
}

} // namespace orv
