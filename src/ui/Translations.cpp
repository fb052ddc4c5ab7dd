#include "ui/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace orv {

Translations::Translations(const QLocale &locale)
{
    m_hasQt = m_qt.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath)) &&
              QCoreApplication::installTranslator(&m_qt);
    m_hasOwn = m_own.load(locale, QStringLiteral("orvelle"), QStringLiteral("_"), QStringLiteral(":/i18n")) &&
               QCoreApplication::installTranslator(&m_own);
}

Translations::~Translations()
{
    if (m_hasOwn)
        QCoreApplication::removeTranslator(&m_own);
    if (m_hasQt)
        QCoreApplication::removeTranslator(&m_qt);
}

} // namespace orv
