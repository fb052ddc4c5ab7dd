#pragma once

#include <QObject>
#include <QString>
#include <utility>

namespace orv {

// Names of the notifications that loosely coupled objects exchange through the hub.
namespace notification {
inline const QString prefsChanged = QStringLiteral("prefsChanged");
} // namespace notification

// One application-wide channel for short named notifications. Objects that must hear of a
// change without knowing who makes it observe a name; the maker posts that name. Posting is
// allowed from any thread: observers living on another thread are called through their own
// event loop, as for any Qt signal.
class NotificationHub : public QObject
{
    Q_OBJECT
public:
    static NotificationHub &instance();

    void notify(const QString &name);

    // Calls callback for each posting of name while context lives.
    template <typename Callback>
    QMetaObject::Connection observe(const QString &name, const QObject *context, Callback callback)
    {
        return connect(this, &NotificationHub::posted, context,
                       [name, callback = std::move(callback)](const QString &postedName) {
                           if (postedName == name)
                               callback();
                       });
    }

Q_SIGNALS:
    void posted(const QString &name);

private:
    NotificationHub() = default;
};

} // namespace orv
