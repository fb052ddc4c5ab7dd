#include "core/NotificationHub.h"

namespace orv {

NotificationHub &NotificationHub::instance()
{
    static NotificationHub hub;
    return hub;
}

void NotificationHub::notify(const QString &name)
{
    Q_EMIT posted(name);
}

} // namespace orv
