#include "ui/keys/KeyWheel.h"
#include "ui/keys/KeyWheelGeometry.h"
#include "ui/theme/Theme.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

MusicalKey key(const char* code)
{
    return *MusicalKey::fromCamelotCode(QString::fromLatin1(code));
}

QString codeAt(const KeyWheelGeometry& wheel, double x, double y)
{
    const std::optional<MusicalKey> found = wheel.keyAt({x, y});
    return found ? found->camelot() : QString();
}

/// A wheel that notes the chosen keys.
class KeyWheelTest : public testing::Test {
protected:
    KeyWheelTest()
    {
        wheel.resize(340, 300); // the square of 300 stands in the middle
        QObject::connect(&wheel, &KeyWheel::keyChosen, &wheel,
                         [this](const MusicalKey& chosen) { codes.append(chosen.camelot()); });
    }

    Theme theme{Appearance::Dark};
    KeyWheel wheel{theme};
    QStringList codes;
};

} // namespace

TEST(KeyWheelGeometryTest, PointsLeadToTheKeysThatAreDrawnThere)
{
    const KeyWheelGeometry wheel(300);
    const std::tuple<double, double, const char*> kCases[] = {
        {150, 10, "12B"}, {150, 70, "12A"}, {290, 150, "3B"}, {230, 150, "3A"},
        {150, 290, "6B"}, {10, 150, "9B"},  {112, 12, "11B"}, {187, 12, "1B"}, // just beyond the borders of 12
        {150, 150, ""},   {150, 110, ""},                                      // the middle
        {2, 2, ""},       {150, 0, ""},                                        // outside the circle
    };
    for (const auto& [x, y, code] : kCases)
        EXPECT_EQ(codeAt(wheel, x, y), QString::fromLatin1(code)) << x << ", " << y;
}

TEST_F(KeyWheelTest, AClickChoosesTheSegmentUnderIt)
{
    QTest::mouseClick(&wheel, Qt::LeftButton, {}, {170, 10});
    QTest::mouseClick(&wheel, Qt::LeftButton, {}, {310, 150});
    QTest::mouseClick(&wheel, Qt::LeftButton, {}, {170, 150}); // the middle
    QTest::mouseClick(&wheel, Qt::RightButton, {}, {170, 10});
    EXPECT_EQ(codes, QStringList({QStringLiteral("12B"), QStringLiteral("3B")}));
}

TEST_F(KeyWheelTest, TheKeyboardGoesRoundFromTheKeyShown)
{
    wheel.setKey(key("12A"), {});
    for (const Qt::Key pressed : {Qt::Key_Return, Qt::Key_Right, Qt::Key_Space, Qt::Key_Up, Qt::Key_Return,
                                  Qt::Key_Left, Qt::Key_Left, Qt::Key_Down, Qt::Key_Return})
        QTest::keyClick(&wheel, pressed);
    EXPECT_EQ(codes,
              QStringList({QStringLiteral("12A"), QStringLiteral("1A"), QStringLiteral("1B"), QStringLiteral("11A")}));
    EXPECT_TRUE(wheel.accessibleDescription().startsWith(QStringLiteral("11A · фа-диез минор")))
        << qPrintable(wheel.accessibleDescription());
}

TEST_F(KeyWheelTest, OnlyAnotherKeyMovesTheKeyboard)
{
    wheel.setKey(key("12A"), {});
    QTest::keyClick(&wheel, Qt::Key_Right);
    wheel.setKey(key("12A"), QStringLiteral("the same again"));
    wheel.setCounts({{QStringLiteral("1A"), 3}});
    QTest::keyClick(&wheel, Qt::Key_Return);
    wheel.setKey(std::nullopt, {});
    QTest::keyClick(&wheel, Qt::Key_Return);
    wheel.setKey(key("3B"), {});
    QTest::keyClick(&wheel, Qt::Key_Return);
    EXPECT_EQ(codes, QStringList({QStringLiteral("1A"), QStringLiteral("1A"), QStringLiteral("3B")}));
}

TEST_F(KeyWheelTest, LightsWhatMixes)
{
    wheel.resize(300, 300);
    const KeyWheelGeometry geometry(300);
    wheel.setKey(key("10B"), {});
    const QImage image = wheel.grab().toImage();
    const auto isLit = [&](const char* code) { // beside the label
        const QPointF place = geometry.labelCentre(key(code)) + QPointF(0, 13);
        return image.pixelColor((place * image.devicePixelRatio()).toPoint()).lightness() > 150;
    };
    for (const char* lit : {"10B", "9B", "11B", "10A"})
        EXPECT_TRUE(isLit(lit)) << lit;
    for (const char* dimmed : {"9A", "11A", "12B", "8B", "4B"})
        EXPECT_FALSE(isLit(dimmed)) << dimmed;
}
