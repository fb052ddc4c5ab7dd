#include "time/DateElementEditor.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace orv {

namespace {

using Element = DateElementEditor::Element;

// Where each element stands in "yyyy-MM-dd HH:mm:ss".
constexpr std::array<std::pair<int, int>, DateElementEditor::elementCount> elementRanges{
    {{0, 4}, {5, 2}, {8, 2}, {11, 2}, {14, 2}, {17, 2}}};

bool isSeparator(QChar character)
{
    return QStringLiteral("-:/. T").contains(character);
}

// a mod n in 0..n-1, also for negative a.
int wrapped(int a, int n)
{
    return ((a % n) + n) % n;
}

void clampDay(Instant::Civil &civil)
{
    civil.day = std::min(civil.day, Instant::daysInMonth(civil.year, civil.month));
}

// The wall clock moved by whole seconds, counted as a plain calendar without zones.
Instant::Civil civilAdding(const Instant::Civil &civil, double seconds)
{
    Instant::Civil moved = Instant::fromUtc({civil.year, civil.month, civil.day, civil.hour, civil.minute,
                                             civil.second, 0.0})
                               .addingSeconds(seconds)
                               .toUtcCivil();
    moved.fraction = 0.0;
    return moved;
}

} // namespace

DateElementEditor::DateElementEditor(TimeZone zone, Instant value) : m_zone(std::move(zone))
{
    setDateValue(value);
}

void DateElementEditor::setDateValue(Instant value)
{
    m_value = Instant(value.wholeSeconds());
    showValue();
    m_sourceValue = m_value;
    m_changedUnit.reset();
    m_undo.clear();
    m_redo.clear();
    m_typed.clear();
    m_allSelected = false;
}

int DateElementEditor::elementValue(const Instant::Civil &civil, Element element)
{
    switch (element) {
    case Element::Year:
        return civil.year;
    case Element::Month:
        return civil.month;
    case Element::Day:
        return civil.day;
    case Element::Hour:
        return civil.hour;
    case Element::Minute:
        return civil.minute;
    case Element::Second:
        break;
    }
    return civil.second;
}

void DateElementEditor::setElementValue(Instant::Civil &civil, Element element, int value)
{
    switch (element) {
    case Element::Year:
        civil.year = value;
        break;
    case Element::Month:
        civil.month = value;
        break;
    case Element::Day:
        civil.day = value;
        break;
    case Element::Hour:
        civil.hour = value;
        break;
    case Element::Minute:
        civil.minute = value;
        break;
    case Element::Second:
        civil.second = value;
        break;
    }
}

bool DateElementEditor::isValidCivil(const Instant::Civil &civil)
{
    return civil.year >= 1 && civil.month >= 1 && civil.month <= 12 && civil.day >= 1
           && civil.day <= Instant::daysInMonth(civil.year, civil.month) && civil.hour >= 0 && civil.hour <= 23
           && civil.minute >= 0 && civil.minute <= 59 && civil.second >= 0 && civil.second <= 59;
}

QString DateElementEditor::text() const
{
    QString shown = QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", m_shown.year, m_shown.month, m_shown.day,
                                      m_shown.hour, m_shown.minute, m_shown.second);
    if (hasRunningEntry()) {
        const auto [first, count] = rangeOfElement(m_highlighted);
        shown.replace(first, count, m_typed.rightJustified(count, QLatin1Char(' ')));
    }
    return shown;
}

std::pair<int, int> DateElementEditor::rangeOfElement(int index)
{
    return elementRanges[size_t(std::clamp(index, 0, elementCount - 1))];
}

int DateElementEditor::elementAtCharacter(int position)
{
    for (int index = 0; index < elementCount; ++index) {
        const auto [first, count] = elementRanges[size_t(index)];
        if (position <= first + count)
            return index;
    }
    return elementCount - 1;
}

void DateElementEditor::highlightElementAtIndex(int index)
{
    clearValue();
    m_allSelected = false;
    m_highlighted = std::clamp(index, 0, elementCount - 1);
}

void DateElementEditor::selectAll()
{
    clearValue();
    saveCurrentValueAsUndoable();
    m_allSelected = true;
    m_highlighted = 0;
}

bool DateElementEditor::moveHighlight(int step)
{
    clearValue();
    m_allSelected = false;
    const int next = m_highlighted + step;
    if (next < 0 || next >= elementCount)
        return false;
    m_highlighted = next;
    return true;
}

DateElementEditor::Result DateElementEditor::modifyCurrentElementByAdding(int delta, bool carry)
{
    clearValue();
    m_allSelected = false;
    Instant::Civil civil = m_shown;
    switch (current()) {
    case Element::Year:
        civil.year += delta;
        clampDay(civil);
        break;
    case Element::Month: {
        const int months = civil.month - 1 + delta;
        if (carry)
            civil.year += (months - wrapped(months, 12)) / 12;
        civil.month = wrapped(months, 12) + 1;
        clampDay(civil);
        break;
    }
    case Element::Day:
        if (carry)
            civil = civilAdding(civil, 86400.0 * delta);
        else
            civil.day = wrapped(civil.day - 1 + delta, Instant::daysInMonth(civil.year, civil.month)) + 1;
        break;
    case Element::Hour:
        if (carry)
            civil = civilAdding(civil, 3600.0 * delta);
        else
            civil.hour = wrapped(civil.hour + delta, 24);
        break;
    case Element::Minute:
        if (carry)
            civil = civilAdding(civil, 60.0 * delta);
        else
            civil.minute = wrapped(civil.minute + delta, 60);
        break;
    case Element::Second:
        if (carry)
            civil = civilAdding(civil, delta);
        else
            civil.second = wrapped(civil.second + delta, 60);
        break;
    }
    if (civil.year < 1)
        return Result::Refused;
    m_shown = civil;
    return applyShown(m_highlighted);
}

DateElementEditor::Result DateElementEditor::modifyCurrentElementByTyping(QChar character)
{
    if (isSeparator(character)) {
        if (!hasRunningEntry())
            return Result::Unchanged; // the element was complete and handed on already
        const Result result = applyTyped(true);
        endEntry();
        return result;
    }
    if (!character.isDigit())
        return Result::Unchanged;
    if (m_allSelected) {
        // Typing over the selected date: element after element from the first, one undo step.
        m_allSelected = false;
        m_highlighted = 0;
        saveCurrentValueAsUndoable();
        m_changedUnit = wholeDate;
    }
    const Element element = current();
    const int width = rangeOfElement(m_highlighted).second;
    const int largest = element == Element::Month    ? 12
                        : element == Element::Day    ? Instant::daysInMonth(m_shown.year, m_shown.month)
                        : element == Element::Hour   ? 23
                        : element == Element::Year   ? 9999
                                                     : 59;
    m_typed += character;
    // Two digits that no element holds: the second one starts the entry again.
    if (m_typed.size() == width && m_typed.toInt() > largest && width == 2)
        m_typed = QString(character);
    const bool complete = m_typed.size() == width || (element != Element::Year && m_typed.toInt() * 10 > largest);
    const Result result = applyTyped(complete);
    if (result == Result::Refused)
        m_typed.clear(); // the element stays highlighted for another try
    else if (complete)
        endEntry();
    return result;
}

DateElementEditor::Result DateElementEditor::applyTyped(bool complete)
{
    const Element element = current();
    const int value = m_typed.toInt();
    // A year waits for all its digits; a first 0 of a month or day waits for the next one.
    if (!complete && (element == Element::Year || value == 0))
        return Result::Unchanged;
    if (value == 0 && (element == Element::Year || element == Element::Month || element == Element::Day))
        return Result::Unchanged;
    const Unit unit = m_changedUnit == wholeDate ? wholeDate : m_highlighted;
    Instant::Civil civil = m_shown;
    setElementValue(civil, element, value);
    if (unit == wholeDate) {
        // While a whole date is typed the old day may not fit the new month until the new day
        // comes: held, and applied once it is a date.
        m_shown = civil;
        return isValidCivil(civil) ? applyShown(unit) : Result::Unchanged;
    }
    if (!isValidCivil(civil))
        return Result::Refused;
    m_shown = civil;
    return applyShown(unit);
}

DateElementEditor::Result DateElementEditor::applyShown(Unit unit)
{
    const Instant next = m_zone.instantFromLocalCivil(m_shown);
    if (next < m_minDate || next > m_maxDate) {
        showValue();
        return Result::Refused;
    }
    if (m_changedUnit && *m_changedUnit != unit)
        saveCurrentValueAsUndoable();
    const bool changed = next != m_value;
    m_value = next;
    m_changedUnit = unit;
    if (changed)
        m_redo.clear();
    showValue();
    return changed ? Result::Changed : Result::Unchanged;
}

void DateElementEditor::showValue()
{
    m_shown = m_zone.localCivil(m_value);
    m_shown.fraction = 0.0;
}

void DateElementEditor::endEntry()
{
    m_typed.clear();
    if (m_highlighted + 1 < elementCount) {
        m_highlighted += 1;
        return;
    }
    if (m_changedUnit == wholeDate)
        clearValue();
}

DateElementEditor::Result DateElementEditor::clearValue()
{
    Result result = Result::Unchanged;
    if (hasRunningEntry()) {
        result = applyTyped(true);
        m_typed.clear();
    }
    if (m_changedUnit == wholeDate) {
        // The whole date typed ends here; one that is no date is refused as a whole.
        if (!isValidCivil(m_shown)) {
            showValue();
            result = Result::Refused;
        }
        saveCurrentValueAsUndoable();
    }
    return result;
}

void DateElementEditor::saveCurrentValueAsUndoable()
{
    if (m_changedUnit && m_value != m_sourceValue)
        m_undo.push_back({m_sourceValue, *m_changedUnit});
    m_sourceValue = m_value;
    m_changedUnit.reset();
}

bool DateElementEditor::canUndo() const
{
    return !m_undo.empty() || (m_changedUnit && m_value != m_sourceValue);
}

DateElementEditor::Result DateElementEditor::undo()
{
    clearValue();
    saveCurrentValueAsUndoable();
    if (m_undo.empty())
        return Result::Unchanged;
    const Step step = m_undo.back();
    m_undo.pop_back();
    m_redo.push_back({m_value, step.unit});
    m_value = m_sourceValue = step.before;
    showValue();
    return Result::Changed;
}

DateElementEditor::Result DateElementEditor::redo()
{
    if (m_redo.empty())
        return Result::Unchanged;
    const Step step = m_redo.back();
    m_redo.pop_back();
    m_undo.push_back({m_value, step.unit});
    m_value = m_sourceValue = step.before;
    showValue();
    return Result::Changed;
}

QString DateElementEditor::undoElementName() const
{
    const std::optional<Unit> unit =
        m_changedUnit && m_value != m_sourceValue ? m_changedUnit
        : m_undo.empty()                          ? std::nullopt
                                                  : std::optional<Unit>(m_undo.back().unit);
    if (!unit)
        return {};
    static const std::array<const char *, elementCount> names{
        QT_TRANSLATE_NOOP("DateElementEditor", "Year"),   QT_TRANSLATE_NOOP("DateElementEditor", "Month"),
        QT_TRANSLATE_NOOP("DateElementEditor", "Day"),    QT_TRANSLATE_NOOP("DateElementEditor", "Hour"),
        QT_TRANSLATE_NOOP("DateElementEditor", "Minute"), QT_TRANSLATE_NOOP("DateElementEditor", "Second")};
    return QCoreApplication::translate("DateElementEditor", *unit == wholeDate ? "Date" : names[size_t(*unit)]);
}

} // namespace orv
