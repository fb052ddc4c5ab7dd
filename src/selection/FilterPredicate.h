#pragma once

#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

namespace orv {

class MySinglePic;

// The values a filter can test on an item, each computed from the item's own fields when asked.
// Kept as an enum so that a predicate resolves its names once, at parsing.
enum class FilterKey : int {
    Rating,            // filter_rating: -1 rejected (also a rejected keeper), 1 keeper, 0 neutral
    MakeModel,         // filter_pivMakeModel
    MakeModelLens,     // filter_pivMakeModelLens: the camera, then its lens where the file names one
    MediaType,         // filter_mediaType: 1 photo, 2 movie
    MediaType2,        // filter_mediaType_2: 1 photo, 2 RAW photo, 3 movie
    DataSource,        // filter_dataSource: spType
    MiscState,         // filter_miscState: the highest of the states below that holds, -1 none
    MiscState0,        // filter_miscState_0 .. _7: yes or no, see FilterValues::miscState
    MiscState1,
    MiscState2,
    MiscState3,
    MiscState4,
    MiscState5,
    MiscState6,
    MiscState7,
    DateTimeModified,  // filter_dateTimeModified: seconds since the epoch
};

// The filter properties of an item under their names.
class FilterValues
{
public:
    static std::optional<FilterKey> keyNamed(const QString &name);
    static QVariant value(const MySinglePic &pic, FilterKey key);
    // The eight yes-or-no states: 0 no date tag (a file or fixed date), 1 rated (keeper or
    // rejected), 2 has a location, 3 location changed, 4 in a group, 5 movie, 6 unsaved,
    // 7 last save failed.
    static bool miscState(const MySinglePic &pic, int state);
};

// A filter as a predicate string over the filter properties, evaluated by our own small engine:
//   comparisons   key OP value   with OP one of == = != <> < <= > >= CONTAINS BEGINSWITH ENDSWITH,
//                 each optionally followed by [c] (case aside), [d] (diacritics aside) or [cd];
//   values        numbers, 'quoted' or "quoted" text, TRUE, FALSE, YES, NO;
//   combinations  AND &&, OR ||, NOT !, parentheses.
// Numbers compare as numbers, everything else as text.
class FilterPredicate
{
public:
    // Nothing, with the reason in error, when the text is not a predicate.
    static std::optional<FilterPredicate> parse(const QString &text, QString *error = nullptr);

    bool evaluate(const MySinglePic &pic) const;
    const QString &text() const { return m_text; }

    struct Node;

private:
    QString m_text;
    std::shared_ptr<const Node> m_root;
};

} // namespace orv
