#include "core/Preferences.h"

#include "core/NotificationHub.h"
#include "core/RegisteredDefaults.h"

#include <QDateTime>
#include <QEvent>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>
#include <cmath>

namespace orv {
namespace {

const QString fixDateKey = QStringLiteral("prefFixDateDate");
const double minTimelineHeight = 82.0;
const double maxTimelineHeight = 222.0;

bool isText(const QVariant &value)
{
    return value.typeId() == QMetaType::QString;
}

bool isFloatingPoint(const QVariant &value)
{
    return value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float;
}

bool isScalar(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::QString:
        return true;
    default:
        return false;
    }
}

qint64 truncated(double value)
{
    // Beyond this a double has no integer counterpart; such a value is garbage, not a setting.
    constexpr double limit = 9.2e18;
    return std::isfinite(value) && std::abs(value) < limit ? qint64(std::trunc(value)) : 0;
}

double parsedDouble(const QVariant &value)
{
    bool ok = false;
    const double number =
        isText(value) ? value.toString().trimmed().toDouble(&ok) : value.toDouble(&ok);
    return ok ? number : 0.0;
}

qint64 parsedInteger(const QVariant &value)
{
    if (isFloatingPoint(value))
        return truncated(value.toDouble());
    bool ok = false;
    const qint64 whole =
        isText(value) ? value.toString().trimmed().toLongLong(&ok) : value.toLongLong(&ok);
    return ok ? whole : truncated(parsedDouble(value));
}

bool parsedBool(const QVariant &value)
{
    if (!isText(value))
        return value.toBool();
    const QString text = value.toString().trimmed();
    if (text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 ||
        text.compare(QLatin1String("yes"), Qt::CaseInsensitive) == 0)
        return true;
    return parsedDouble(value) != 0.0;
}

// Booleans are kept as 1 and 0, the form the registered defaults use, so that a value reads
// the same whether it comes from the defaults, from memory or back from the INI file.
QVariant storedForm(const QVariant &value)
{
    return value.typeId() == QMetaType::Bool ? QVariant(value.toBool() ? 1 : 0) : value;
}

QString scalarText(const QVariant &value)
{
    return value.typeId() == QMetaType::Bool ? QString::number(value.toBool() ? 1 : 0)
                                             : value.toString();
}

// The INI file gives numbers back as text, so 128, 128.0 and "128" are one value.
bool sameValue(const QVariant &a, const QVariant &b)
{
    if (isScalar(a) && isScalar(b))
        return scalarText(a) == scalarText(b);
    return a == b;
}

} // namespace

Preferences::Preferences(const QString &settingsPath, QObject *parent)
    : QObject(parent),
      m_settings(settingsPath.isEmpty()
                     ? nullptr
                     : std::make_unique<QSettings>(settingsPath, QSettings::IniFormat)),
      m_defaults(registeredDefaults())
{
    if (m_settings)
        m_settings->installEventFilter(this);
}

Preferences::~Preferences() = default;

QString Preferences::defaultSettingsPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
           QLatin1String("/orvelle.conf");
}

QVariant Preferences::valueInForceLocked(const QString &key) const
{
    if (const auto overridden = m_overrides.constFind(key); overridden != m_overrides.cend())
        return overridden->isValid() ? *overridden : m_defaults.value(key);
    const QVariant stored = m_settings ? m_settings->value(key) : QVariant();
    return stored.isValid() ? stored : m_defaults.value(key);
}

QVariant Preferences::valueForKey(const QString &key) const
{
    const QMutexLocker lock(&m_mutex);
    return valueInForceLocked(key);
}

bool Preferences::hasValueForKey(const QString &key) const
{
    return valueForKey(key).isValid();
}

bool Preferences::boolForKey(const QString &key) const
{
    return parsedBool(valueForKey(key));
}

qint64 Preferences::integerForKey(const QString &key) const
{
    return parsedInteger(valueForKey(key));
}

double Preferences::doubleForKey(const QString &key) const
{
    return parsedDouble(valueForKey(key));
}

QString Preferences::stringForKey(const QString &key) const
{
    return valueForKey(key).toString();
}

OptionalDate Preferences::dateForKey(const QString &key) const
{
    const QVariant value = valueForKey(key);
    if (!value.isValid())
        return std::nullopt;
    return Instant(parsedDouble(value));
}

QByteArray Preferences::dataForKey(const QString &key) const
{
    return valueForKey(key).toByteArray();
}

QCborValue Preferences::archiveForKey(const QString &key) const
{
    QCborParserError error;
    const QCborValue archive = QCborValue::fromCbor(dataForKey(key), &error);
    return error.error == QCborError::NoError ? archive : QCborValue();
}

bool Preferences::write(const QString &key, const QVariant &value, Layer layer)
{
    // QSettings reads an empty key as the whole store: removing it would wipe every setting.
    if (key.isEmpty())
        return false;
    const QMutexLocker lock(&m_mutex);
    const QVariant before = valueInForceLocked(key);
    // Without a file every write belongs to this run.
    if (layer == Layer::Override || !m_settings || m_overrides.contains(key))
        m_overrides.insert(key, value);
    else if (value.isValid())
        m_settings->setValue(key, value);
    else
        m_settings->remove(key);
    return !sameValue(before, valueInForceLocked(key));
}

void Preferences::setValue(const QString &key, const QVariant &value)
{
    if (write(key, storedForm(value), Layer::Owning))
        Q_EMIT valueChanged(key);
}

void Preferences::setBool(const QString &key, bool value)
{
    setValue(key, value);
}

void Preferences::setInteger(const QString &key, qint64 value)
{
    setValue(key, value);
}

void Preferences::setDouble(const QString &key, double value)
{
    setValue(key, value);
}

void Preferences::setDate(const QString &key, Instant value)
{
    setValue(key, value.secondsSinceEpoch());
}

void Preferences::setArchive(const QString &key, const QCborValue &archive)
{
    setValue(key, archive.toCbor());
}

void Preferences::removeValueForKey(const QString &key)
{
    setValue(key, QVariant());
}

void Preferences::setValueNotifying(const QString &key, const QVariant &value)
{
    if (!write(key, storedForm(value), Layer::Owning))
        return;
    Q_EMIT valueChanged(key);
    NotificationHub::instance().notify(notification::prefsChanged);
}

void Preferences::overrideForThisRun(const QString &key, const QVariant &value)
{
    if (write(key, storedForm(value), Layer::Override))
        Q_EMIT valueChanged(key);
}

void Preferences::applyStartClamps(Instant now)
{
    if (!hasValueForKey(fixDateKey))
        setDate(fixDateKey, now);
    for (const QString &key :
         {QStringLiteral("timelineHeight_STD"), QStringLiteral("timelineHeight_FUS")})
        setDouble(key, std::clamp(doubleForKey(key), minTimelineHeight, maxTimelineHeight));
}

void Preferences::applyStartClamps()
{
    applyStartClamps(Instant(double(QDateTime::currentMSecsSinceEpoch()) / 1000.0));
}

// QSettings writes its changes to disk from an event of its own. Taking that event over puts
// the write under the lock, so that it never meets a read from a scan thread.
bool Preferences::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_settings.get() || event->type() != QEvent::UpdateRequest)
        return QObject::eventFilter(watched, event);
    sync();
    return true;
}

void Preferences::sync()
{
    const QMutexLocker lock(&m_mutex);
    if (m_settings)
        m_settings->sync();
}

} // namespace orv
