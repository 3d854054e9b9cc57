#include "core/model/ArtworkData.h"

#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace {

/// The pool is the program's; each test finds it empty and leaves it as it was.
class ArtworkDataTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(ArtworkData::pooledByteCount(), 0); }
    void TearDown() override
    {
        ArtworkData::setPoolLimit(ArtworkData::kDefaultPoolLimit);
        EXPECT_EQ(ArtworkData::pooledByteCount(), 0) << "bytes outlive their last handle";
    }
};

} // namespace

TEST_F(ArtworkDataTest, EqualBytesAreHeldOnce)
{
    const QByteArray bytes(1000, 'a');
    const ArtworkData first = ArtworkData::intern(bytes);
    const ArtworkData second = ArtworkData::intern(QByteArray(1000, 'a'));
    const ArtworkData other = ArtworkData::intern(QByteArray(1000, 'b'));
    EXPECT_EQ(first, second);
    EXPECT_FALSE(first == other);
    EXPECT_EQ(first.bytes().constData(), second.bytes().constData());
    EXPECT_EQ(ArtworkData::pooledByteCount(), 2000);
    EXPECT_EQ(first.byteCount(), 1000);
    EXPECT_EQ(first.prefix(), QByteArray(24, 'a'));
    EXPECT_EQ(first.contentID(), second.contentID());
    EXPECT_NE(first.contentID(), other.contentID());
    EXPECT_NE(first.contentID(), ArtworkData::intern(QByteArray(1001, 'a')).contentID());
    EXPECT_EQ(ArtworkData::intern("short").prefix(), QByteArray("short"));
}

TEST_F(ArtworkDataTest, AFullPoolLetsTheLeastRecentlyUsedGo)
{
    ArtworkData::setPoolLimit(2500);
    const ArtworkData a = ArtworkData::intern(QByteArray(1000, 'a'));
    const ArtworkData b = ArtworkData::intern(QByteArray(1000, 'b'));
    EXPECT_FALSE(a.bytes().isNull()); // b is the oldest now
    const ArtworkData c = ArtworkData::intern(QByteArray(1000, 'c'));
    EXPECT_EQ(ArtworkData::pooledByteCount(), 2000);
    EXPECT_TRUE(b.bytes().isNull());
    EXPECT_EQ(a.bytes(), QByteArray(1000, 'a'));
    EXPECT_EQ(c.bytes(), QByteArray(1000, 'c'));

    EXPECT_FALSE(b.isNull());
    EXPECT_EQ(b.byteCount(), 1000);
    EXPECT_EQ(b.prefix(), QByteArray(24, 'b'));
    const ArtworkData again = ArtworkData::intern(QByteArray(1000, 'b'));
    EXPECT_EQ(again, b);
    EXPECT_EQ(b.bytes(), QByteArray(1000, 'b')) << "another read brings the bytes back for all handles";
    EXPECT_TRUE(a.bytes().isNull());
}

TEST_F(ArtworkDataTest, TheNewestStaysWhateverItsSize)
{
    ArtworkData::setPoolLimit(10);
    const ArtworkData large = ArtworkData::intern(QByteArray(1000, 'a'));
    EXPECT_EQ(large.bytes().size(), 1000);
    const ArtworkData next = ArtworkData::intern(QByteArray(2000, 'b'));
    EXPECT_TRUE(large.bytes().isNull());
    EXPECT_EQ(next.bytes().size(), 2000);
    EXPECT_EQ(ArtworkData::pooledByteCount(), 2000);
}

TEST_F(ArtworkDataTest, ManyThreadsShareThePool)
{
    ArtworkData::setPoolLimit(8 * 1000);
    std::atomic<int> wrong = 0;
    {
        std::vector<std::jthread> threads;
        for (unsigned seed = 0; seed < 4; ++seed) {
            threads.emplace_back([&wrong, seed] {
                std::minstd_rand random(seed + 1);
                std::vector<ArtworkData> held(6);
                for (int round = 0; round < 3000; ++round) {
                    const char letter = static_cast<char>('a' + random() % 12);
                    ArtworkData& place = held[random() % held.size()];
                    place = ArtworkData::intern(QByteArray(1000, letter));
                    const ArtworkData& asked = held[random() % held.size()];
                    const QByteArray bytes = asked.bytes();
                    wrong += !bytes.isNull() && bytes != QByteArray(1000, asked.prefix().front());
                    wrong += place.prefix() != QByteArray(24, letter);
                }
            });
        }
    }
    EXPECT_EQ(wrong, 0);
}
