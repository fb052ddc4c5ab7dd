#pragma once

#include <QList>
#include <QString>
#include <QUndoCommand>

#include <functional>
#include <memory>

namespace orv {

class MySingleFolder;
class MySinglePic;

// Told after a command changed dates, forwards and backwards alike: the folders whose items
// moved, and the folders whose edit mode the command had to restore; and told of a change
// refused (the window beeps).
struct DateChangeListener
{
    std::function<void(const QList<MySingleFolder *> &changed)> datesChanged;
    std::function<void(MySingleFolder *folder)> editModeChanged;
    std::function<void()> refused;
};

// One user event that changed dates: one undo step. Each command holds the values before and
// after, so undo and redo restore them exactly rather than adding the inverse back. A command
// also brings its folders back into the edit mode it was made in, as the undo of a folder offset
// means nothing to a folder since switched to separate mode.
//
// Commands are made and run on the main thread only, like every change of items and folders.
class DateChangeCommand : public QUndoCommand
{
public:
    void undo() final;
    void redo() final;

    // The same command without anything of the folder, for an undo history that outlives the
    // folder's save; nothing when no part of it is left. The copy merges with nothing.
    virtual std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const = 0;
    virtual QList<MySingleFolder *> folders() const = 0;

    // The next redo or undo leaves the model alone: the command is put back onto a rebuilt stack
    // in the state the model already holds.
    void skipNextApply() { m_skipNextApply = true; }

protected:
    DateChangeCommand(const QString &text, DateChangeListener listener);
    virtual void apply(bool forward) = 0;
    void setEditMode(MySingleFolder &folder, int mode) const;

    DateChangeListener m_listener;

private:
    bool m_skipNextApply = false;
};

// The folder offset of one or several folders (folder mode).
class FolderOffsetCommand : public DateChangeCommand
{
public:
    struct Offset
    {
        double interval = 0.0;
        bool direction = false; // counts as negative, also at zero

        bool operator==(const Offset &) const = default;
    };
    struct Change
    {
        MySingleFolder *folder = nullptr;
        Offset before, after;
    };
    // Changes made by one control repeating its gesture (steps of one field) merge into one
    // undo step; an empty mergeKey never merges.
    FolderOffsetCommand(QList<Change> changes, const QString &text, const QString &mergeKey,
                        DateChangeListener listener);

    static constexpr int commandId = 1;
    int id() const override { return commandId; }
    bool mergeWith(const QUndoCommand *other) override;
    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;

private:
    void apply(bool forward) override;

    QList<Change> m_changes;
    QString m_mergeKey;
};

// Items' own offsets (single mode): moves, spreading, alignments, removals, resets. Entries
// whose value stays are kept: undo names them as the items to select again.
class PicOffsetCommand : public DateChangeCommand
{
public:
    struct Change
    {
        MySinglePic *pic = nullptr;
        double before = 0.0, after = 0.0;
    };
    PicOffsetCommand(QList<Change> changes, const QString &text, const QString &mergeKey,
                     DateChangeListener listener);

    static constexpr int commandId = 2;
    int id() const override { return commandId; }
    bool mergeWith(const QUndoCommand *other) override;
    std::unique_ptr<DateChangeCommand> withoutFolder(const MySingleFolder *folder) const override;
    QList<MySingleFolder *> folders() const override;
    QList<MySinglePic *> pics() const;

private:
    void apply(bool forward) override;

    QList<Change> m_changes;
    QString m_mergeKey;
};

} // namespace orv
