#include "core/MakerModel.h"

#include <array>

namespace orv {

namespace {

QString capitalized(const QString &text)
{
    // Each word starts upper case and goes on lower case, as a maker's name is shown.
    QString result = text.toLower();
    bool wordStart = true;
    for (QChar &c : result) {
        if (wordStart && c.isLetter())
            c = c.toUpper();
        wordStart = c.isSpace();
    }
    return result;
}

struct PrefixRule
{
    const char *prefix;
    const char *replacement; // nullptr: the text stays as it is
    int keepFrom;
};

} // namespace

QString MakerModel::completeMakerModelStringFromMaker(const QString &maker, const QString &model)
{
    const QString make = capitalized(maker.trimmed());
    const QString mod = model.trimmed();
    if (make.isEmpty() && mod.isEmpty())
        return QStringLiteral("-");
    if (make.isEmpty())
        return mod;
    if (mod.isEmpty())
        return make;
    if (mod.size() > make.size() && capitalized(mod.left(make.size())) == make)
        return mod;
    return make + QLatin1Char(' ') + mod;
}

QString MakerModel::WA_displayOptimizedModelMake(const QString &makerModel)
{
    static const std::array<PrefixRule, 12> rules{{
        {"Nikon Corporation NIKON", "Nikon Corporation", 23},
        {"Eastman Kodak Company KODAK", "Eastman Kodak Company", 27},
        {"Eastman Kodak Company Kodak", "Eastman Kodak Company", 27},
        {"Eastman Kodak Company ", nullptr, 0},
        {"Hewlett-Packard HP", "Hewlett-Packard", 18},
        {"Pentax Corporation PENTAX", "Pentax Corporation", 25},
        {"Samsung ", nullptr, 0},
        {"Mamiya-Op Co.,Ltd. MAMIYA", "Mamiya-Op Co.,Ltd.", 25},
        {"Ricoh Imaging Company, Ltd. PENTAX", "Ricoh Imaging Company, Ltd.", 34},
        {"Leica Camera Ag LEICA", "Leica Camera Ag", 21},
        {"PENTAX", "Pentax", 6},
        {"SIGMA", "Sigma", 5},
    }};
    for (const PrefixRule &rule : rules) {
        if (!makerModel.startsWith(QLatin1String(rule.prefix)))
            continue;
        if (QLatin1String(rule.prefix) == QLatin1String("Samsung ")) {
            QString result = makerModel;
            return result.replace(QStringLiteral(" SAMSUNG "), QStringLiteral(" "));
        }
        if (!rule.replacement)
            return makerModel;
        return QLatin1String(rule.replacement) + makerModel.mid(rule.keepFrom);
    }
    if (makerModel.startsWith(QLatin1String("Om Digital")))
        return QStringLiteral("OM Digital") + makerModel.mid(10);
    return makerModel;
}

} // namespace orv
