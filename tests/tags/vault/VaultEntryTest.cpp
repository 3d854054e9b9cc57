#include "tags/vault/VaultEntry.h"

#include "support/TagBytes.h"
#include "tags/vault/PackedBytes.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <gtest/gtest.h>

using namespace TagBytes;

namespace {

QByteArray packedOf(const QByteArray& bytes)
{
    QByteArray packed;
    PackedBytes::pack(bytes, packed);
    return packed;
}

VaultEntry entryOf(const QByteArray& file)
{
    SourceBytes bytes(file.size(), [&](qint64 offset, qint64 count) { return file.mid(offset, count); });
    const RewriteSource source(bytes, QStringLiteral("/a.wav"));
    return VaultEntry::make(source.path(), source, FileAnatomy::read(source, QStringLiteral("wav")));
}

/// Checksums made to fit, as a hostile hand would do it.
QByteArray sealed(QByteArray bytes)
{
    const qsizetype labelSize = qFromLittleEndian<quint32>(bytes.constData() + 12);
    if (labelSize >= 4 && labelSize <= bytes.size() - 4)
        bytes.replace(labelSize - 4, 4, little(VaultEntry::checksum(bytes.first(labelSize - 4)), 4));
    return bytes.chopped(4) + little(VaultEntry::checksum(bytes.chopped(4)), 4);
}

TEST(PackedBytesTest, givesBackEveryKindOfBytes)
{
    constexpr qsizetype kBlock = 65536;
    const QByteArray cases[] = {
        {},
        "a",
        noise(kBlock - 1),
        noise(kBlock),
        noise(kBlock + 1),
        QByteArray(kBlock * 3, 'x'),
        QByteArray(kBlock, 'x') + noise(kBlock) + "end",
        noise(100),
    };
    for (const QByteArray& bytes : cases) {
        const QByteArray packed = packedOf(bytes);
        EXPECT_LE(packed.size(), PackedBytes::largestSize(bytes.size()));
        EXPECT_TRUE(PackedBytes::unpack(packed, bytes.size()) == bytes) << bytes.size();
        EXPECT_FALSE(PackedBytes::unpack(packed, bytes.size() + 1));
        EXPECT_FALSE(PackedBytes::unpack(packed + "x", bytes.size()));
        if (!bytes.isEmpty()) {
            EXPECT_FALSE(PackedBytes::unpack(packed, bytes.size() - 1));
            EXPECT_FALSE(PackedBytes::unpack(packed.chopped(1), bytes.size()));
        }
    }
    EXPECT_LT(packedOf(QByteArray(kBlock * 3, 'x')).size(), 1000);
}

TEST(VaultEntryTest, survivesTheDiskWhole)
{
    const QByteArray file = wave(50, riffChunk("odd ", "1") + riffChunk("data", "more") + info({}));
    const VaultEntry entry = entryOf(file);
    const std::optional<VaultEntry> read = VaultEntry::fromBytes(entry.toBytes());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->label().path, QStringLiteral("/a.wav"));
    EXPECT_EQ(read->label().soundLengths, (std::vector<qint64>{100, 4}));
    EXPECT_EQ(read->label().soundDigest, entry.label().soundDigest);
    EXPECT_EQ(read->label().otherDigest, entry.label().otherDigest);
    EXPECT_TRUE(read->toBytes() == entry.toBytes());
}

TEST(VaultEntryTest, isNoneOnceAnyByteIsDamaged)
{
    const QByteArray bytes = entryOf(wave(50, info(riffChunk("INAM", "title")))).toBytes();
    ASSERT_TRUE(VaultEntry::fromBytes(bytes));
    for (qsizetype place = 0; place < bytes.size(); ++place) {
        for (const int bit : {0, 3, 7}) {
            QByteArray damaged = bytes;
            damaged[place] = static_cast<char>(damaged[place] ^ (1 << bit));
            EXPECT_FALSE(VaultEntry::fromBytes(damaged)) << place;
        }
        EXPECT_FALSE(VaultEntry::fromBytes(bytes.first(place))) << place;
        EXPECT_FALSE(VaultEntry::labelOf(bytes, place)) << "another length";
    }
    EXPECT_FALSE(VaultEntry::fromBytes(bytes + '\0'));
}

TEST(VaultEntryTest, isNoneWhateverSizesAHostileOneClaims)
{
    const QByteArray bytes = entryOf(wave(50, riffChunk("data", "more"))).toBytes();
    ASSERT_TRUE(VaultEntry::fromBytes(sealed(bytes)));
    const qsizetype pathAt = 24 + 64;
    const qsizetype countAt = pathAt + 4 + 6; // "/a.wav"
    const qsizetype soundsAt = countAt + 4;
    const qsizetype piecesAt = soundsAt + 2 * 8;
    const std::tuple<const char*, qsizetype, QByteArray> cases[] = {
        {"version", 8, little(1, 4)},
        {"label of nothing", 12, little(0, 4)},
        {"label of the whole", 12, little(quint64(bytes.size()), 4)},
        {"label without end", 12, little(0xFFFFFFFF, 4)},
        {"content without end", 16, little(~0ull, 8)},
        {"path without end", pathAt, little(0xFFFFFFFF, 4)},
        {"no sound", countAt, little(0, 4)},
        {"sounds without end", countAt, little(0xFFFFFFFF, 4)},
        {"more sounds than there are", countAt, little(65536, 4)},
        {"negative sound", soundsAt, little(~0ull, 8)},
        {"longer piece", piecesAt, little(45, 8)},
        {"shorter piece", piecesAt, little(43, 8)},
        {"piece without end", piecesAt, little(1ull << 62, 8)},
        {"pieces of more than fits", piecesAt, little(256 * 1024 * 1024, 8)},
    };
    for (const auto& [what, place, value] : cases) {
        QByteArray hostile = bytes;
        hostile.replace(place, value.size(), value);
        EXPECT_NE(hostile, bytes) << what;
        EXPECT_FALSE(VaultEntry::fromBytes(sealed(hostile))) << what;
    }
}

TEST(VaultEntryTest, ofMoreThanTheLimitsIsNotMade)
{
    QByteArray many;
    for (qint64 count = 0; count <= VaultEntry::kMaximumSounds; ++count)
        many += riffChunk("data", "ab");
    EXPECT_THROW(entryOf(wave(1, many)), FileError);
    EXPECT_TRUE(VaultEntry::fromBytes(entryOf(wave(1, many.sliced(20))).toBytes())) << "one fewer is none too many";
}

} // namespace
