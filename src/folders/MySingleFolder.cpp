#include "folders/MySingleFolder.h"

#include "core/MySinglePic.h"

#include <QFileInfo>

#include <cmath>

namespace orv {

MySingleFolder::MySingleFolder(const QString &path, bool separateMode)
    : sfFolder(QFileInfo(path).fileName()),
      sfFolderPath(path),
      sfEditMode(separateMode ? EditSeparately : EditTogether)
{
}

MySingleFolder::~MySingleFolder() = default;

QMap<QString, QString> MySingleFolder::zeroDateModifications()
{
    const QString zero = QStringLiteral("0");
    return {{QStringLiteral("dmDirection"), QStringLiteral("+")},
            {QStringLiteral("dmDays"), zero},
            {QStringLiteral("dmHours"), zero},
            {QStringLiteral("dmMinutes"), zero},
            {QStringLiteral("dmSeconds"), zero}};
}

void MySingleFolder::setDirection(const QString &direction, const QString &days,
                                  const QString &hours, const QString &minutes,
                                  const QString &seconds)
{
    sfDateModifications = {{QStringLiteral("dmDirection"), direction},
                           {QStringLiteral("dmDays"), days},
                           {QStringLiteral("dmHours"), hours},
                           {QStringLiteral("dmMinutes"), minutes},
                           {QStringLiteral("dmSeconds"), seconds}};
    hasChangedDirection = direction == QLatin1String("-");
    const double magnitude =
        days.toDouble() * 86400.0 + hours.toInt() * 3600.0 + minutes.toInt() * 60.0 + seconds.toInt();
    sfDateModificationsTimeInterval = hasChangedDirection ? -magnitude : magnitude;
}

void MySingleFolder::setSfDateModificationsFromTimeInterval(double interval, bool direction)
{
    sfDateModificationsTimeInterval = interval;
    hasChangedDirection = direction;
    const auto magnitude = qint64(std::fabs(interval));
    const QString sign = direction || interval < 0.0 ? QStringLiteral("-") : QStringLiteral("+");
    sfDateModifications = {{QStringLiteral("dmDirection"), sign},
                           {QStringLiteral("dmDays"), QString::number(magnitude / 86400)},
                           {QStringLiteral("dmHours"), QString::number(magnitude / 3600 % 24)},
                           {QStringLiteral("dmMinutes"), QString::number(magnitude / 60 % 60)},
                           {QStringLiteral("dmSeconds"), QString::number(magnitude % 60)}};
}

MySinglePic *MySingleFolder::adoptPic(std::unique_ptr<MySinglePic> pic, bool visible)
{
    MySinglePic *raw = pic.get();
    m_ownedPics.push_back(std::move(pic));
    if (visible)
        sfPicDetails_fullArray.append(raw);
    return raw;
}

bool MySingleFolder::isBundlingAllowedForUtcDates(Instant first, Instant second)
{
    const double difference = std::fabs(first.secondsSince(second));
    if (difference <= 300.0)
        return true;
    if (difference > 3900.0)
        return false;
    return isDstExceptionForUtcDate(first, second);
}

// A camera that switched its clock during the early-morning transition stamps the two halves of a
// pair on either side of the hour; only those patterns, and only in the small hours, pass.
bool MySingleFolder::isDstExceptionForUtcDate(Instant first, Instant second)
{
    const Instant::Civil a = first.toUtcCivil();
    const Instant::Civil b = second.toUtcCivil();
    if (a.hour > 5)
        return false;
    if (a.hour == b.hour)
        return (a.minute == 59 && b.minute == 0) || (a.minute == 0 && b.minute == 59);
    if (a.hour + 2 == b.hour)
        return a.minute == 59 && b.minute == 0;
    if (a.hour == b.hour + 2)
        return a.minute == 0 && b.minute == 59;
    return false;
}

} // namespace orv
