#include "platform/files/TrashName.h"

#include <gtest/gtest.h>

TEST(TrashName, NumbersStandBeforeTheExtensionAndNamesFit)
{
    constexpr int kMost = 245;                                        // bytes: 255 less ".trashinfo"
    const QByteArray cyrillic = QByteArrayLiteral("Ж").repeated(124); // 248 bytes
    const QByteArray broken(250, '\x80');
    const std::tuple<QByteArray, int, QByteArray> rows[] = {
        {"song.mp3", 1, "song.mp3"},
        {"song.mp3", 2, "song 2.mp3"},
        {"song.mp3", 1234, "song 1234.mp3"},
        {"song", 2, "song 2"},
        {".hidden", 2, ".hidden 2"},
        {".hidden.mp3", 2, ".hidden 2.mp3"},
        {"song.", 2, "song. 2"},
        {"Vol. 1 (live)", 2, "Vol. 1 (live) 2"},
        {"No.1234567890123456789", 2, "No.1234567890123456789 2"},
        {QByteArray(241, 'x') + ".mp3", 1, QByteArray(241, 'x') + ".mp3"},
        {QByteArray(241, 'x') + ".mp3", 10, QByteArray(238, 'x') + " 10.mp3"},
        {QByteArray(251, 'x') + ".mp3", 1, QByteArray(241, 'x') + ".mp3"},
        {QByteArray(255, 'x'), 2, QByteArray(243, 'x') + " 2"},
        {cyrillic + ".mp3", 1, QByteArrayLiteral("Ж").repeated(120) + ".mp3"},
        {cyrillic + ".mp3", 2, QByteArrayLiteral("Ж").repeated(119) + " 2.mp3"},
        {"a" + QByteArrayLiteral("🎧").repeated(63), 1, "a" + QByteArrayLiteral("🎧").repeated(61)},
        {"abc" + QByteArrayLiteral("🎧").repeated(63), 1, "abc" + QByteArrayLiteral("🎧").repeated(60)},
        {broken, 1, broken.first(kMost)},
        {broken, 2, broken.first(kMost - 2) + " 2"},
    };
    for (const auto& [name, number, expected] : rows) {
        const QByteArray kept = TrashName::numbered(name, number);
        EXPECT_EQ(kept, expected) << name.constData() << ' ' << number;
        EXPECT_LE(TrashName::infoName(kept).size(), 255);
    }
}
