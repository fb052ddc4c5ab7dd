#pragma once

#include "folders/MySingleFolder.h"

#include <QList>
#include <QString>
#include <optional>

namespace orv {

// What the user set in the five offset controls. A value left empty was not touched: where the
// folders differ the control shows no value, and each folder keeps its own.
struct OffsetEntry
{
    std::optional<bool> negative = {};
    std::optional<qint64> days = {};
    std::optional<int> hours = {};
    std::optional<int> minutes = {};
    std::optional<int> seconds = {};
};

// A folder offset as the controls ask for it: the interval, and whether it counts as negative
// (also at zero).
struct FolderOffset
{
    double interval = 0.0;
    bool negative = false;
};

// The five offset controls over the selected folders, one or several at once: what they show,
// whether they can be used, and the offset they ask of each folder. The change itself is the
// date change owner's (app/).
class FolderOffsetControls
{
public:
    enum class Availability {
        Editable,
        NoItems,       // nothing imported yet, or an import still runs
        SeparateMode,  // each item carries its own change
        SlideshowOnly, // no dates are read or written
    };

    explicit FolderOffsetControls(QList<MySingleFolder *> folders) : m_folders(std::move(folders)) {}

    Availability availability() const;
    // The five texts; a key where the folders with items differ holds MyCompoundFolder's "|".
    DateModifications shown() const;
    // The entry completed by each folder's own values, one offset per folder in order.
    QList<FolderOffset> offsetsFor(const OffsetEntry &entry) const;

private:
    QList<MySingleFolder *> m_folders;
};

} // namespace orv
