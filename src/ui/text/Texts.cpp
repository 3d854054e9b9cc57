#include "ui/text/Texts.h"

#include <cmath>

namespace {

QString twoDigits(qint64 value)
{
    return QString::number(value).rightJustified(2, u'0');
}

} // namespace

namespace Texts {

QString length(double seconds)
{
    if (!(seconds > 0) || !std::isfinite(seconds))
        return QStringLiteral("—");
    const qint64 whole = std::llround(seconds);
    const qint64 hours = whole / 3600;
    if (hours > 0)
        return QStringLiteral("%1:%2:%3").arg(hours).arg(twoDigits(whole / 60 % 60), twoDigits(whole % 60));
    return QStringLiteral("%1:%2").arg(whole / 60).arg(twoDigits(whole % 60));
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

QString tempo(const QString& tag)
{
    QString text = tag.trimmed();
    bool ok = false;
    const double value = text.replace(u',', u'.').toDouble(&ok);
    return ok && value > 0 && value < 1000 ? QString::number(std::lround(value)) : tag.trimmed();
}

QString pageTitle(LibraryTab tab)
{
    switch (tab) {
    case LibraryTab::Analysis:
        return localized(QStringLiteral("Анализ качества"));
    case LibraryTab::MusicalKey:
        return localized(QStringLiteral("Определение тональности"));
    case LibraryTab::Duplicates:
        return localized(QStringLiteral("Поиск дубликатов"));
    default:
        return localized(rawValue(tab));
    }
}

QString addFiles(LibraryTab tab)
{
    return localized(tab == LibraryTab::Duplicates ? QStringLiteral("Добавить папки…")
                                                   : QStringLiteral("Добавить файлы…"));
}

QString spoken(const Track& track)
{
    if (track.tags().artist.isEmpty())
        return track.displayTitle();
    return track.displayTitle() + QStringLiteral(" — ") + track.tags().artist;
}

} // namespace Texts
