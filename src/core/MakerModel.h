#pragma once

#include <QString>

namespace orv {

// The camera text of an item, built from the maker and model tags.
class MakerModel
{
public:
    // "-" without either; the model alone when it already begins with the maker's name.
    static QString completeMakerModelStringFromMaker(const QString &maker, const QString &model);
    // Drops the maker's name repeated at the start of the model, as many cameras write it.
    static QString WA_displayOptimizedModelMake(const QString &makerModel);
};

} // namespace orv
