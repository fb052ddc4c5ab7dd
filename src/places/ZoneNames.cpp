#include "places/ZoneNames.h"

#include <QCoreApplication>
#include <QTimeZone>

#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/tznames.h>

#include <memory>

namespace orv {

namespace {

QString fromIcu(const icu::UnicodeString &text)
{
    return QString::fromUtf16(reinterpret_cast<const char16_t *>(text.getBuffer()), text.length());
}

icu::UnicodeString toIcu(const QString &text)
{
    return icu::UnicodeString(reinterpret_cast<const char16_t *>(text.utf16()), int32_t(text.size()));
}

// The regions zone ids begin with; ICU names none of them, so they are texts of our own.
constexpr const char *regionNames[] = {
    QT_TRANSLATE_NOOP("ZoneNames", "Africa"),   QT_TRANSLATE_NOOP("ZoneNames", "America"),
    QT_TRANSLATE_NOOP("ZoneNames", "Antarctica"), QT_TRANSLATE_NOOP("ZoneNames", "Arctic"),
    QT_TRANSLATE_NOOP("ZoneNames", "Asia"),     QT_TRANSLATE_NOOP("ZoneNames", "Atlantic"),
    QT_TRANSLATE_NOOP("ZoneNames", "Australia"), QT_TRANSLATE_NOOP("ZoneNames", "Europe"),
    QT_TRANSLATE_NOOP("ZoneNames", "Indian"),   QT_TRANSLATE_NOOP("ZoneNames", "Pacific"),
};

} // namespace

bool ZoneNames::isLocalisedFor(const QLocale &locale)
{
    return locale.language() != QLocale::English && locale.language() != QLocale::C;
}

ZoneNames::ZoneNames(const QLocale &locale) : m_localised(isLocalisedFor(locale))
{
    if (!m_localised)
        return;
    const icu::Locale language(locale.name().toLatin1().constData());
    UErrorCode status = U_ZERO_ERROR;
    for (const char *const *code = icu::Locale::getISOCountries(); *code; ++code) {
        icu::UnicodeString name;
        icu::Locale(nullptr, *code).getDisplayCountry(language, name);
        if (name.length() > 0 && name != icu::UnicodeString(*code))
            m_countries.insert(QString::fromLatin1(*code), fromIcu(name));
    }
    const std::unique_ptr<icu::TimeZoneNames> names(icu::TimeZoneNames::createInstance(language, status));
    for (const QByteArray &id : QTimeZone::availableTimeZoneIds()) {
        const QString zone = QString::fromLatin1(id);
        // ICU files a renamed zone under its older id ("Europe/Kyiv" under "Europe/Kiev").
        icu::UnicodeString canonical;
        UErrorCode canonicalStatus = U_ZERO_ERROR;
        icu::TimeZone::getCanonicalID(toIcu(zone), canonical, canonicalStatus);
        if (U_FAILURE(canonicalStatus))
            canonical = toIcu(zone);
        icu::UnicodeString city;
        if (U_SUCCESS(status))
            names->getExemplarLocationName(canonical, city);
        if (city.length() > 0)
            m_cities.insert(zone, fromIcu(city));
    }
    for (const char *region : regionNames)
        m_regions.insert(QString::fromLatin1(region), QCoreApplication::translate("ZoneNames", region));
}

QString ZoneNames::zone(const QString &zoneId) const
{
    const QString city = m_cities.value(zoneId);
    if (!m_localised || city.isEmpty())
        return zoneId;
    QStringList parts = zoneId.split(u'/');
    parts.first() = m_regions.value(parts.first(), parts.first());
    parts.last() = city;
    // A middle part ("America/Argentina/...") stays unless the city's name already says it
    // ("Knox, Indiana").
    for (qsizetype i = parts.size() - 2; i > 0; --i) {
        parts[i].replace(u'_', u' ');
        if (city.contains(parts[i]))
            parts.removeAt(i);
    }
    return parts.join(QStringLiteral(" / "));
}

} // namespace orv
