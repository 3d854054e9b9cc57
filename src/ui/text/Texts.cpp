#include "ui/text/Texts.h"

#include <cmath>

namespace {

QString twoDigits(qint64 value)
{
    return QString::number(value).rightJustified(2, u'0');
}

QString clockText(qint64 seconds)
{
    const qint64 hours = seconds / 3600;
    if (hours > 0)
        return QStringLiteral("%1:%2:%3").arg(hours).arg(twoDigits(seconds / 60 % 60), twoDigits(seconds % 60));
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(twoDigits(seconds % 60));
}

bool isKnown(double duration)
{
    return duration > 0 && std::isfinite(duration);
}

/// The whole seconds that have passed; at the end those of the length, which is rounded as everywhere.
qint64 passed(double seconds, double duration)
{
    const double time = std::isfinite(seconds) ? std::max(0.0, seconds) : 0.0;
    if (!isKnown(duration))
        return static_cast<qint64>(time);
    return time >= duration ? std::llround(duration)
                            : std::min<qint64>(static_cast<qint64>(time), std::llround(duration));
}

} // namespace

namespace Texts {

QString length(double seconds)
{
    if (!(seconds > 0) || !std::isfinite(seconds))
        return QStringLiteral("—");
    return clockText(std::llround(seconds));
}

QString position(double seconds, double duration)
{
    return clockText(passed(seconds, duration));
}

QString remaining(double seconds, double duration)
{
    if (!isKnown(duration))
        return QStringLiteral("—");
    return QChar(0x2212) + clockText(std::llround(duration) - passed(seconds, duration));
}

QString totalLength(double seconds)
{
    if (!(seconds > 0) || !std::isfinite(seconds))
        return {};
    const qint64 minutes = std::max<qint64>(1, std::llround(seconds / 60));
    if (minutes < 60)
        return VelmoraLocalization::format(QStringLiteral("%d мин"), {minutes});
    return VelmoraLocalization::format(QStringLiteral("%d ч %@ мин"), {minutes / 60, twoDigits(minutes % 60)});
}

QString trackCount(qint64 count)
{
    return VelmoraLocalization::plural(QStringLiteral("%n треков"), count);
}

QString number(qint64 value)
{
    return VelmoraLocalization::locale().toString(value);
}

QString facts(const QStringList& parts)
{
    QStringList present;
    for (const QString& part : parts) {
        if (!part.isEmpty())
            present += part;
    }
    return present.join(QStringLiteral(" · "));
}

QString byteCount(qint64 bytes)
{
    constexpr double kStep = 1024;
    const auto kilobytes = static_cast<qint64>(std::ceil(bytes / kStep));
    if (kilobytes < kStep)
        return VelmoraLocalization::format(QStringLiteral("%d КБ"), {kilobytes});
    const QString megabytes = VelmoraLocalization::locale().toString(bytes / kStep / kStep, 'f', 1);
    return VelmoraLocalization::format(QStringLiteral("%@ МБ"), {megabytes});
}

QString spoken(const Track& track)
{
    if (track.tags().artist.isEmpty())
        return track.displayTitle();
    return track.displayTitle() + QStringLiteral(" — ") + track.tags().artist;
}

} // namespace Texts
