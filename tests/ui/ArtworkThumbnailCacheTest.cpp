#include "support/ManualExecutor.h"
#include "support/Pictures.h"

#include "async/TaskSlot.h"
#include "ui/thumbnails/ArtworkThumbnailCache.h"
#include "ui/thumbnails/ThumbnailDecoder.h"

#include <gtest/gtest.h>

namespace {

class ArtworkThumbnailCacheTest : public testing::Test {
protected:
    /// Asks and waits. \param size of the thumbnail that is made if the key is not held.
    bool ask(const QByteArray& key, qsizetype size = 1)
    {
        made = false;
        const ArtworkThumbnailCache::SourceData source = [this, size]() -> std::optional<QByteArray> {
            made = true;
            return hasSource ? std::optional(QByteArray(size, 'x')) : std::nullopt;
        };
        std::optional<QByteArray> answer;
        slot.start([&](std::stop_token stop) { return fetch(key, source, answer, std::move(stop)); });
        executor.runAll();
        EXPECT_TRUE(!answer || answer->size() == size);
        return answer.has_value();
    }
    async::Task<> fetch(QByteArray key, ArtworkThumbnailCache::SourceData source, std::optional<QByteArray>& answer,
                        std::stop_token stop)
    {
        answer = co_await cache.thumbnailData(key, source, 64, stop);
    }
    bool holds(const QByteArray& key, qsizetype size = 1) { return ask(key, size) && !made; }
    static QByteArray key(int number) { return QByteArray::number(number); }

    ManualExecutor executor;
    bool hasSource = true;
    bool canMake = true;
    bool made = false; ///< whether the last lookup asked for the source
    ArtworkThumbnailCache cache{executor, [this](const QByteArray& bytes, int) -> std::optional<QByteArray> {
                                    return canMake ? std::optional(bytes) : std::nullopt;
                                }};
    async::TaskSlot slot;
};

} // namespace

TEST_F(ArtworkThumbnailCacheTest, AFullCacheLosesWhatWasLookedUpLeastRecently)
{
    constexpr qsizetype kPart = ArtworkThumbnailCache::kMaximumTotalBytes / 4;
    const struct {
        const char* name;
        int fits;       ///< thumbnails that are held at most
        qsizetype size; ///< of each
    } kCases[]{{"count", 256, 1}, {"bytes", 4, kPart}};
    for (const auto& each : kCases) {
        SCOPED_TRACE(each.name);
        const QByteArray prefix = each.name;
        for (int i = 0; i < each.fits; ++i)
            ask(prefix + key(i), each.size);
        for (int i = 0; i < each.fits; ++i)
            EXPECT_TRUE(holds(prefix + key(i), each.size)) << "exactly full, nothing goes";
        EXPECT_TRUE(holds(prefix + key(0), each.size)); // 1 is now the one not seen longest
        ask(prefix + "one more", each.size);
        EXPECT_TRUE(holds(prefix + key(0), each.size));
        EXPECT_TRUE(holds(prefix + key(2), each.size));
        EXPECT_FALSE(holds(prefix + key(1), each.size));
    }
}

TEST_F(ArtworkThumbnailCacheTest, OneThatIsLargerThanTheCacheIsGivenAndNotKept)
{
    constexpr qsizetype kTooLarge = ArtworkThumbnailCache::kMaximumTotalBytes + 1;
    EXPECT_TRUE(ask("large", kTooLarge));
    EXPECT_FALSE(holds("large", kTooLarge));
}

TEST_F(ArtworkThumbnailCacheTest, FailuresAreNotRemembered)
{
    for (bool* obstacle : {&hasSource, &canMake}) {
        const QByteArray name = obstacle == &hasSource ? "no source" : "no picture";
        *obstacle = false;
        EXPECT_FALSE(ask(name));
        *obstacle = true;
        EXPECT_TRUE(ask(name));
        EXPECT_TRUE(made);
        EXPECT_TRUE(holds(name));
    }
}

TEST(ThumbnailDecoder, ThumbnailsAreUprightOpaqueAndNeverLarger)
{
    const QSize wide(600, 300);
    const struct {
        const char* name;
        QByteArray bytes;
        int limit;
        QSize size; ///< empty: no thumbnail
        QColor colour;
    } kCases[]{
        {"reduced", Pictures::plain(wide, 0xFF2040C0, "PNG"), 128, {128, 64}, 0xFF2040C0},
        {"far reduced", Pictures::plain({3000, 1500}, 0xFF2040C0, "JPEG"), 128, {128, 64}, 0xFF2040C0},
        {"exactly fitting", Pictures::plain(wide, 0xFF2040C0, "PNG"), 600, wide, 0xFF2040C0},
        {"never enlarged", Pictures::plain({40, 20}, 0xFF2040C0, "PNG"), 128, {40, 20}, 0xFF2040C0},
        {"turned", Pictures::turned(Pictures::plain(wide, 0xFF2040C0, "JPEG")), 128, {64, 128}, 0xFF2040C0},
        {"transparent", Pictures::plain(wide, 0x00000000, "PNG"), 128, {128, 64}, 0xFFFFFFFF},
        {"a line", Pictures::plain({4000, 2}, 0xFF2040C0, "PNG"), 128, {128, 1}, 0xFF2040C0},
        {"no picture", "no picture", 128, {}, {}},
        {"cut off", Pictures::plain(wide, 0xFF2040C0, "PNG").first(40), 128, {}, {}},
    };
    for (const auto& each : kCases) {
        SCOPED_TRACE(each.name);
        const std::optional<QByteArray> jpeg = ThumbnailDecoder::jpeg(each.bytes, each.limit);
        ASSERT_EQ(jpeg.has_value(), !each.size.isEmpty());
        if (!jpeg)
            continue;
        EXPECT_TRUE(jpeg->startsWith("\xFF\xD8"));
        const QImage image = QImage::fromData(*jpeg);
        EXPECT_EQ(image.size(), each.size);
        const QColor seen = image.pixelColor(image.width() / 2, image.height() / 2);
        EXPECT_NEAR(seen.red(), each.colour.red(), 6);
        EXPECT_NEAR(seen.blue(), each.colour.blue(), 6);
    }
}
