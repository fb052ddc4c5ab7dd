#pragma once

#include "time/Instant.h"

#include <QByteArray>
#include <QCborValue>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVariantHash>
#include <memory>

class QSettings;

namespace orv {

// The one flat store of settings, keyed by the preference names as strings.
//
// A read looks through three layers: the values overridden for this run, the stored values (an
// INI file through QSettings), and the registered defaults (see RegisteredDefaults.h). Numbers
// and booleans come back from the INI file as text, so read them through the typed getters,
// which parse text the way the defaults are written: "1" is true and 1, "0" false and 0.
//
// Stored forms: booleans as 1 or 0, dates as seconds since the Unix epoch (a double), keyed
// archives as CBOR bytes.
//
// Reads and writes are safe from any thread; the scan threads read options while the main thread
// may change them.
class Preferences : public QObject
{
    Q_OBJECT
public:
    // settingsPath is the INI file; an empty path keeps everything in memory for this run.
    explicit Preferences(const QString &settingsPath, QObject *parent = nullptr);
    ~Preferences() override;

    // orvelle.conf in the application's XDG config folder.
    static QString defaultSettingsPath();

    QVariant valueForKey(const QString &key) const;
    bool hasValueForKey(const QString &key) const;
    bool boolForKey(const QString &key) const;
    qint64 integerForKey(const QString &key) const;
    double doubleForKey(const QString &key) const;
    QString stringForKey(const QString &key) const;
    OptionalDate dateForKey(const QString &key) const;
    QByteArray dataForKey(const QString &key) const;
    // The decoded keyed archive; undefined when the key holds no CBOR.
    QCborValue archiveForKey(const QString &key) const;

    // Writes of a key that is overridden for this run stay in that layer and never reach disk.
    void setValue(const QString &key, const QVariant &value);
    void setBool(const QString &key, bool value);
    void setInteger(const QString &key, qint64 value);
    void setDouble(const QString &key, double value);
    void setDate(const QString &key, Instant value);
    void setArchive(const QString &key, const QCborValue &archive);
    // The key reads as its registered default again, or as absent when it has none.
    void removeValueForKey(const QString &key);

    // A change the user made that other objects must see: stored like setValue, then announced
    // with the "prefsChanged" notification when the value in force differs from before.
    void setValueNotifying(const QString &key, const QVariant &value);

    // Shadows the stored value for the rest of this run without writing anything to disk. An
    // invalid value makes the key read as its registered default.
    void overrideForThisRun(const QString &key, const QVariant &value);

    // Run right after construction, before other objects read: gives prefFixDateDate a value
    // when it has none and keeps the timeline heights in the range the window can show.
    void applyStartClamps(Instant now);
    void applyStartClamps();

    // Writes pending changes to disk now instead of at destruction.
    void sync();

Q_SIGNALS:
    // The value in force for key changed, by a write of any kind or an override. Emitted on the
    // thread that wrote.
    void valueChanged(const QString &key);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Owning: the override layer when the key is overridden or there is no file, else the file.
    enum class Layer { Owning, Override };

    QVariant valueInForceLocked(const QString &key) const;
    // An invalid value removes a stored key and makes an overridden one read as its default.
    // Tells whether the value in force changed.
    bool write(const QString &key, const QVariant &value, Layer layer);

    mutable QMutex m_mutex;
    std::unique_ptr<QSettings> m_settings; // null for a store in memory
    const QVariantHash m_defaults;
    QVariantHash m_overrides;
};

} // namespace orv
