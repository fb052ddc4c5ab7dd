#include "ui/FieldUndoRouter.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

namespace orv {

namespace {

bool isRedoKey(const QKeyEvent &key)
{
    return key.matches(QKeySequence::Redo) || key.keyCombination() == QKeyCombination(Qt::ControlModifier, Qt::Key_Y);
}

// The line edit that holds a field's text: the field itself, or the one inside a spin box or
// an editable combo box, which take focus and keys for it.
QLineEdit *textOf(QObject *watched)
{
    if (auto *field = qobject_cast<QLineEdit *>(watched))
        return field;
    if (qobject_cast<QAbstractSpinBox *>(watched) || qobject_cast<QComboBox *>(watched))
        return watched->findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly);
    return nullptr;
}

} // namespace

FieldUndoRouter::FieldUndoRouter(QWidget &window) : QObject(&window), m_window(window)
{
    qApp->installEventFilter(this);
}

void FieldUndoRouter::noteEdited()
{
    m_edited.insert(qobject_cast<QLineEdit *>(sender()));
}

// An entry finished by Return went to the window's stack like any other change.
void FieldUndoRouter::noteCommitted()
{
    m_edited.remove(qobject_cast<QLineEdit *>(sender()));
}

bool FieldUndoRouter::keepsKey(QLineEdit &field, bool undo) const
{
    return m_edited.contains(&field) && (undo ? field.isUndoAvailable() : field.isRedoAvailable());
}

bool FieldUndoRouter::eventFilter(QObject *watched, QEvent *event)
{
    if (!watched->isWidgetType())
        return false;
    QLineEdit *field = textOf(watched);
    if (!field || field->window() != &m_window)
        return false;
    switch (event->type()) {
    case QEvent::FocusIn:
        // What was typed before the field last lost focus is in the window's stack by now.
        m_edited.remove(field);
        connect(field, &QLineEdit::textEdited, this, &FieldUndoRouter::noteEdited, Qt::UniqueConnection);
        connect(field, &QLineEdit::editingFinished, this, &FieldUndoRouter::noteCommitted, Qt::UniqueConnection);
        return false;
    case QEvent::ShortcutOverride: {
        auto *key = static_cast<QKeyEvent *>(event);
        const bool undo = key->matches(QKeySequence::Undo);
        if (!undo && !isRedoKey(*key))
            return false;
        if (keepsKey(*field, undo))
            return false;
        // Not claimed: the shortcut goes to the window's action.
        key->ignore();
        return true;
    }
    default:
        return false;
    }
}

} // namespace orv
