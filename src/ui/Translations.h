#pragma once

#include <QLocale>
#include <QTranslator>

namespace orv {

// Puts the texts of the window into the user's language while it lives: Orvelle's own (compiled
// into the program) and Qt's (the buttons of standard dialogs, from the system's Qt
// translations). A language without a translation keeps the English texts.
class Translations
{
public:
    explicit Translations(const QLocale &locale = QLocale::system());
    ~Translations();
    Translations(const Translations &) = delete;
    Translations &operator=(const Translations &) = delete;

    // Orvelle's own texts were found for the language.
    bool hasOwn() const { return m_hasOwn; }

private:
    QTranslator m_qt;
    QTranslator m_own;
    bool m_hasQt = false;
    bool m_hasOwn = false;
};

} // namespace orv
