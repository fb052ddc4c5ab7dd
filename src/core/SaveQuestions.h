#pragma once

#include <QList>
#include <QMap>
#include <QString>

namespace orv {

class MySinglePic;
struct SaveSettings;

// What the pre-check found: an error key (error_01_ambiguousStamp, error_05_notFound, ...) to
// the items it concerns, in the order they were checked.
using PreSaveErrors = QMap<QString, QList<MySinglePic *>>;

// Everything the pre-check knows before the first byte is written: what it found, the items
// the save will write (their NEW values calculated) and the settings it writes them with.
struct PreSaveReview
{
    PreSaveErrors errors;
    QList<MySinglePic *> items;
    const SaveSettings *settings = nullptr;
};

// Questions a save run asks the user. The window answers with its pre-save summary; tests and
// the command-line tool with fixed choices. Called on the run's thread, which waits for the
// answer, so a window implementation must hop to the main thread and block until the user
// decided.
class SaveQuestions
{
public:
    virtual ~SaveQuestions() = default;
    // Asked once the pre-check is done, before any file is touched: it may have found values
    // that cannot be written as they are, or files changed since import. True saves what can
    // be saved; false cancels.
    virtual bool confirmSave(const PreSaveReview &review) = 0;
    // An item dated by its file alone cannot keep a new date in the file's creation date here:
    // true lets the run add date tags the file did not have; false adds none and sets only the
    // file's modification date. Asked once, before the first such item is saved.
    virtual bool addDateTagsToFileDatedItems() = 0;
};

// Always the same answers; a save without findings always goes on.
class FixedSaveAnswers : public SaveQuestions
{
public:
    explicit FixedSaveAnswers(bool proceed, bool addDateTags = true)
        : m_proceed(proceed), m_addDateTags(addDateTags)
    {
    }
    bool confirmSave(const PreSaveReview &review) override { return review.errors.isEmpty() || m_proceed; }
    bool addDateTagsToFileDatedItems() override { return m_addDateTags; }

private:
    bool m_proceed;
    bool m_addDateTags;
};

} // namespace orv
