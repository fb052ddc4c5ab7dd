#pragma once

#include "time/Instant.h"
#include "time/TimeZone.h"

#include <QString>

#include <optional>
#include <vector>

namespace orv {

// The logic of the program's own date field: a wall clock of a zone shown as the elements year,
// month, day, hour, minute and second ("2024-05-01 10:00:00"), one of them highlighted, and what
// keys do to it. Up and Down change the highlighted element by one, wrapping inside the larger
// element (59 seconds go to 0 in the same minute), or with carry moving it on. Digits typed into
// an element change it at once; a complete element hands on to the next, so a whole date typed
// over the selected field gives exactly that date. A value a month does not hold is refused,
// as is one beyond the bounds; the value stays.
//
// Edits of one element collect into one undo step until another element changes; these steps
// are the field's own and never reach the main undo stack. Plain value type, no threads.
class DateElementEditor
{
public:
    enum class Element : int { Year, Month, Day, Hour, Minute, Second };
    static constexpr int elementCount = 6;
    enum class Result { Unchanged, Changed, Refused };

    DateElementEditor(TimeZone zone, Instant value);

    Instant dateValue() const { return m_value; }
    // A new value from outside: no entry runs and the undo steps are gone.
    void setDateValue(Instant value);
    void setMinDate(Instant date) { m_minDate = date; }
    void setMaxDate(Instant date) { m_maxDate = date; }

    // --- What the field shows ---
    QString text() const;
    // The characters of an element in text(): first and count.
    static std::pair<int, int> rangeOfElement(int index);
    // The element whose characters hold (or stand nearest to) this position.
    static int elementAtCharacter(int position);
    int highlightedIndex() const { return m_highlighted; }
    void highlightElementAtIndex(int index);
    // The whole date stands selected: typing replaces it, element after element.
    bool isAllSelected() const { return m_allSelected; }
    void selectAll();
    bool hasRunningEntry() const { return !m_typed.isEmpty(); }

    // --- Keys ---
    // Left and Right, Tab and Backtab: a running entry ends and the highlight moves; false when
    // it would leave the field.
    bool moveHighlight(int step);
    // Up and Down; with carry the larger elements follow.
    Result modifyCurrentElementByAdding(int delta, bool carry = false);
    // A digit, or a separator that ends the element's entry and hands on to the next.
    Result modifyCurrentElementByTyping(QChar character);
    // Ends a running entry (a second without keys, focus leaving, Return).
    Result clearValue();

    // --- Undo of the field's own steps ---
    bool canUndo() const;
    bool canRedo() const { return !m_redo.empty(); }
    Result undo();
    Result redo();
    // "Hour", "Date", ...: what the next undo takes back.
    QString undoElementName() const;

private:
    // -1: a whole date typed over the selection.
    using Unit = int;
    static constexpr Unit wholeDate = -1;
    struct Step
    {
        Instant before;
        Unit unit;
    };
    Element current() const { return Element(m_highlighted); }
    static int elementValue(const Instant::Civil &civil, Element element);
    static void setElementValue(Instant::Civil &civil, Element element, int value);
    static bool isValidCivil(const Instant::Civil &civil);
    // The typed digits as the element's value; with `complete` no further digit can follow.
    Result applyTyped(bool complete);
    // The shown wall clock as the value, when it is a date and inside the bounds.
    Result applyShown(Unit unit);
    void saveCurrentValueAsUndoable();
    // The value's wall clock becomes what the field shows.
    void showValue();
    void endEntry();

    TimeZone m_zone;
    Instant m_value;
    Instant m_minDate = Instant::minDate();
    Instant m_maxDate = Instant::maxDate();
    Instant::Civil m_shown;
    int m_highlighted = 0;
    bool m_allSelected = false;
    QString m_typed; // _lastDownValue
    Instant m_sourceValue;
    std::optional<Unit> m_changedUnit;
    std::vector<Step> m_undo, m_redo;
};

} // namespace orv
