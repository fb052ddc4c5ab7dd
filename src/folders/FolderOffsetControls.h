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

// The five offset controls over the selected folders, one or several at once: what they show,
// whether they can be used, and the change they make.
class FolderOffsetControls
{
public:
    enum class Availability {
        Editable,
        NoItems,       // nothing imported yet, or an import still runs
        SeparateMode,  // each item carries its own change
        SlideshowOnly, // no dates are read or written
    };
    enum class Result { Changed, Unchanged, OutOfRange };

    explicit FolderOffsetControls(QList<MySingleFolder *> folders) : m_folders(std::move(folders)) {}

    Availability availability() const;
    // The five texts; a key where the folders with items differ holds MyCompoundFolder's "|".
    DateModifications shown() const;
    // Applies the entry to every folder. Refused when it would carry a folder's earliest or
    // latest item beyond the dates a file can hold; nothing changes then.
    Result apply(const OffsetEntry &entry);

private:
    QList<MySingleFolder *> m_folders;
};

} // namespace orv
