#include "core/NotificationHub.h"

#include <gtest/gtest.h>

namespace orv {
namespace {

TEST(NotificationHub, ObserversHearOnlyTheirName)
{
    QObject context;
    int heard = 0;
    NotificationHub::instance().observe(notification::prefsChanged, &context,
                                        [&heard] { ++heard; });
    NotificationHub::instance().notify(QStringLiteral("reloadThumbs"));
    NotificationHub::instance().notify(notification::prefsChanged);
    EXPECT_EQ(heard, 1);
}

TEST(NotificationHub, ObservationEndsWithItsContext)
{
    int heard = 0;
    {
        QObject context;
        NotificationHub::instance().observe(notification::prefsChanged, &context,
                                            [&heard] { ++heard; });
    }
    NotificationHub::instance().notify(notification::prefsChanged);
    EXPECT_EQ(heard, 0);
}

} // namespace
} // namespace orv
