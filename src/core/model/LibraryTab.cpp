#include "core/model/LibraryTab.h"

QString rawValue(LibraryTab tab)
{
    switch (tab) {
    case LibraryTab::Playlist:
        return QStringLiteral("Плейлист");
    case LibraryTab::Favorites:
        return QStringLiteral("Избранное");
    case LibraryTab::Covers:
        return QStringLiteral("Обложки");
    case LibraryTab::Converter:
        return QStringLiteral("Конвертер");
    case LibraryTab::Analysis:
        return QStringLiteral("Анализ");
    case LibraryTab::MusicalKey:
        return QStringLiteral("Тональность");
    case LibraryTab::Duplicates:
        return QStringLiteral("Дубликаты");
    }
    Q_UNREACHABLE();
}

std::optional<LibraryTab> libraryTabFromRawValue(const QString& raw)
{
    for (LibraryTab tab : kAllLibraryTabs) {
        if (rawValue(tab) == raw)
            return tab;
    }
    return std::nullopt;
}
