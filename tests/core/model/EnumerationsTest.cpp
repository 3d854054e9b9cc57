#include "core/model/LibraryTab.h"
#include "core/model/SupportedAudio.h"
#include "core/model/TrackSort.h"

#include <gtest/gtest.h>

TEST(LibraryTab, RawValuesNameEachSectionOnce)
{
    const char* names[] = {"Плейлист", "Избранное", "Обложки", "Конвертер", "Анализ", "Тональность", "Дубликаты"};
    ASSERT_EQ(kAllLibraryTabs.size(), std::size(names));
    for (size_t i = 0; i < kAllLibraryTabs.size(); ++i) {
        EXPECT_EQ(rawValue(kAllLibraryTabs[i]), QString::fromUtf8(names[i]));
        EXPECT_EQ(libraryTabFromRawValue(QString::fromUtf8(names[i])), kAllLibraryTabs[i]);
    }
    for (const char* unknown : {"", "плейлист", "Playlist"})
        EXPECT_FALSE(libraryTabFromRawValue(QString::fromUtf8(unknown))) << unknown;
}

TEST(TrackSort, FieldsAndDirectionsAreReadBack)
{
    const std::pair<TrackSortField, const char*> rows[] = {
        {TrackSortField::Original, "original"}, {TrackSortField::Name, "name"}, {TrackSortField::Genre, "genre"},
        {TrackSortField::Format, "format"},     {TrackSortField::BPM, "bpm"},   {TrackSortField::Rating, "rating"},
    };
    for (const auto& [field, raw] : rows) {
        EXPECT_EQ(rawValue(field), QString::fromUtf8(raw));
        EXPECT_EQ(trackSortFieldFromRawValue(QString::fromUtf8(raw)), field);
    }
    EXPECT_FALSE(trackSortFieldFromRawValue(QStringLiteral("Name")));
    EXPECT_FALSE(trackSortDirectionFromRawValue(QStringLiteral("up")));
    const std::tuple<TrackSortDirection, QString, QString> directions[] = {
        {TrackSortDirection::Ascending, QStringLiteral("ascending"), QStringLiteral("arrow.up")},
        {TrackSortDirection::Descending, QStringLiteral("descending"), QStringLiteral("arrow.down")},
    };
    for (const auto& [direction, raw, symbol] : directions) {
        EXPECT_EQ(rawValue(direction), raw);
        EXPECT_EQ(trackSortDirectionFromRawValue(raw), direction);
        EXPECT_EQ(icon(direction), symbol);
    }
}

TEST(SupportedAudio, GoesByTheExtension)
{
    for (const char* name : {"a.mp3", "a.M4A", "a.aac", "a.wav", "a.AIFF", "a.aif", "a.b.Flac", "..mp3", "Ё.mp3"})
        EXPECT_TRUE(SupportedAudio::hasSupportedExtension(QString::fromUtf8(name))) << name;
    for (const char* name : {"", "mp3", ".mp3", "a.mp", "a.mp33", "a.mp3.", "a.mp3 ", "a.ogg", "a.mp3/"})
        EXPECT_FALSE(SupportedAudio::hasSupportedExtension(QString::fromUtf8(name))) << name;
}
