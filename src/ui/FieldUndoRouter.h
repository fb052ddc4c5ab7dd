#pragma once

#include <QObject>
#include <QSet>

class QLineEdit;

namespace orv {

// Undo and redo keys in the window's fields. A line edit claims them as soon as it has focus, so
// the window's undo stack would be out of reach from every field. Here a field keeps the keys
// only while it holds an edit of its own, typed since it got focus and not yet entered; otherwise (and once it lost
// focus) they reach the window's actions, and with them the undo stack.
class FieldUndoRouter : public QObject
{
    Q_OBJECT
public:
    // Routes the keys of the fields inside window.
    explicit FieldUndoRouter(QWidget &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void noteEdited();
    void noteCommitted();
    bool keepsKey(QLineEdit &field, bool undo) const;

    QWidget &m_window;
    // Fields typed in since they got focus.
    QSet<const QLineEdit *> m_edited;
};

} // namespace orv
