#include "core/model/DecodedPictures.h"

#include <gtest/gtest.h>

namespace {

QImage picture(int width)
{
    return QImage(width, 1, QImage::Format_RGB32);
}

/// Widths of the pictures under the keys "0" to "9"; 0 where there is none. Does not tell the order of use apart.
QList<int> widths(DecodedPictures& pictures, std::initializer_list<int> keys)
{
    QList<int> found;
    for (int key : keys)
        found.append(pictures.find(QString::number(key)).width());
    return found;
}

} // namespace

TEST(DecodedPictures, NumberIsBoundedAndTheLeastRecentlyUsedGoesFirst)
{
    DecodedPictures pictures(3, 1000);
    for (int key : {1, 2, 3})
        pictures.store(QString::number(key), picture(key), 1);
    EXPECT_EQ(pictures.find(QStringLiteral("1")).width(), 1); // 2 is the oldest now
    pictures.store(QStringLiteral("4"), picture(4), 1);
    EXPECT_EQ(widths(pictures, {1, 2, 3, 4}), (QList<int>{1, 0, 3, 4}));
    pictures.store(QStringLiteral("5"), picture(5), 0); // costs nothing, counts all the same
    EXPECT_EQ(widths(pictures, {1, 3, 4, 5}), (QList<int>{0, 3, 4, 5}));
}

TEST(DecodedPictures, CostIsBounded)
{
    DecodedPictures pictures(100, 10);
    for (int key : {1, 2, 3})
        pictures.store(QString::number(key), picture(key), 3);
    pictures.store(QStringLiteral("4"), picture(4), 7);
    EXPECT_EQ(widths(pictures, {1, 2, 3, 4}), (QList<int>{0, 0, 3, 4}));
    pictures.store(QStringLiteral("5"), picture(5), 11);
    EXPECT_EQ(widths(pictures, {3, 4, 5}), (QList<int>{3, 4, 0})) << "too large: not kept, and nothing goes for it";
    pictures.store(QStringLiteral("6"), picture(6), 10);
    EXPECT_EQ(widths(pictures, {3, 4, 6}), (QList<int>{0, 0, 6}));
}

TEST(DecodedPictures, AKeyHasOnePictureAndItsCostCountsOnce)
{
    DecodedPictures pictures(100, 10);
    for (int width : {1, 2, 3, 4})
        pictures.store(QStringLiteral("1"), picture(width), 5);
    pictures.store(QStringLiteral("2"), picture(9), 5);
    EXPECT_EQ(widths(pictures, {1, 2}), (QList<int>{4, 9}));
}
