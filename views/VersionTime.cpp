#include "views/VersionTime.h"

#include "text/UtcTime.h"

#include <QCoreApplication>
#include <QDateTime>

namespace {

const QString kSeconds = QStringLiteral("yyyy-MM-dd HH:mm:ss");

QString AsItStands(std::string_view stamp)
{
    return QString::fromUtf8(stamp.data(), static_cast<qsizetype>(stamp.size()));
}

QDateTime LocalTime(UtcTime time)
{
    return QDateTime::fromMSecsSinceEpoch(time.time_since_epoch().count());
}

} // namespace

QString VersionTime(std::string_view stamp)
{
    const auto time = TimeOfStamp(stamp);
    return time ? LocalTime(*time).toString(kSeconds) : AsItStands(stamp);
}

QString VersionTimeUtc(std::string_view stamp)
{
    const auto time = TimeOfStamp(stamp);
    return time ? LocalTime(*time).toUTC().toString(kSeconds) + QStringLiteral(" UTC") : AsItStands(stamp);
}

QString VersionMoment(std::string_view stamp)
{
    const auto translated = [](const char* text) { return QCoreApplication::translate("VersionTime", text); };
    const auto time = TimeOfStamp(stamp);
    if (!time)
        return translated("at %1").arg(AsItStands(stamp));
    const QDateTime local = LocalTime(*time);
    const QString clock = local.toString(QStringLiteral("HH:mm"));
    if (local.date() == QDate::currentDate())
        return translated("at %1").arg(clock);
    return translated("on %1 at %2").arg(local.toString(QStringLiteral("yyyy-MM-dd")), clock);
}
