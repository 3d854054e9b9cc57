#include "support/WindowFixture.h"

#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/KeyColours.h"
#include "ui/theme/Paint.h"
#include "ui/waveform/WaveformColours.h"

#include <cmath>

TEST(ThemeTest, TextIsReadableOnEveryGround)
{
    for (Appearance appearance : {Appearance::Dark, Appearance::Light}) {
        const ThemeColours& c = ThemeColours::of(appearance);
        for (const QColor& ground : {c.background, c.side, c.surface, c.raised}) {
            EXPECT_GE(contrast(c.text, ground), 4.5) << qPrintable(ground.name());
            EXPECT_GE(contrast(c.text2, ground), 4.5) << qPrintable(ground.name());
        }
    }
    for (int number = 1; number <= 12; ++number)
        EXPECT_GE(contrast(KeyColours::chipText(),
                           KeyColours::colour(*MusicalKey::fromCamelotCode(QString::number(number) + u'A'))),
                  4.5)
            << number;
}

TEST(ThemeTest, EveryIconDrawsInItsColour)
{
    const QStringList files = QDir(QStringLiteral(":/icons")).entryList({QStringLiteral("*.svg")});
    ASSERT_GT(files.size(), 20);
    for (const QString& file : files) {
        const QString name = file.chopped(4);
        QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        Icons::paint(painter, image.rect(), name, QColor(10, 200, 30));
        painter.end();
        int drawn = 0;
        for (int y = 0; y < 48; ++y) {
            for (int x = 0; x < 48; ++x)
                drawn += image.pixelColor(x, y).alpha() > 200 && image.pixelColor(x, y).green() > 150 ? 1 : 0;
        }
        const bool isTinted = name != QLatin1StringView("velmora");
        EXPECT_TRUE(!isTinted || drawn > 20) << qPrintable(name);
    }
    for (int icon = 0; icon < kStatusIconCount; ++icon)
        EXPECT_TRUE(files.contains(Icons::of(static_cast<StatusIcon>(icon)) + QStringLiteral(".svg"))) << icon;
}

TEST(ThemeTest, DigitsStandUnderDigits)
{
    const Theme theme(Appearance::Dark);
    const QFont& font = theme.font(TextRole::Body);
    EXPECT_EQ(Paint::numberWidth(QStringLiteral("111"), font), Paint::numberWidth(QStringLiteral("888"), font));
    EXPECT_LT(Paint::numberWidth(QStringLiteral("1:1"), font), Paint::numberWidth(QStringLiteral("111"), font));
}

TEST(TextsTest, LengthsAndCounts)
{
    const std::pair<double, QString> kLengths[] = {
        {0, QStringLiteral("—")},           {-3, QStringLiteral("—")},     {59.4, QStringLiteral("0:59")},
        {59.6, QStringLiteral("1:00")},     {427, QStringLiteral("7:07")}, {3727, QStringLiteral("1:02:07")},
        {std::nan(""), QStringLiteral("—")}};
    for (const auto& [seconds, text] : kLengths)
        EXPECT_EQ(Texts::length(seconds), text);

    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    EXPECT_EQ(Texts::totalLength(96 * 3600 + 12 * 60), QStringLiteral("96 ч 12 мин"));
    EXPECT_EQ(Texts::totalLength(31 * 3600 + 8 * 60), QStringLiteral("31 ч 08 мин"));
    EXPECT_EQ(Texts::totalLength(20), QStringLiteral("1 мин"));
    EXPECT_EQ(Texts::totalLength(0), QString());
    EXPECT_EQ(Texts::trackCount(21), QStringLiteral("21 трек"));
    EXPECT_EQ(Texts::trackCount(1248), QStringLiteral("1\u00A0248 треков"));
    VelmoraLocalization::setLanguage(AppLanguage::English);
    EXPECT_EQ(Texts::trackCount(1), QStringLiteral("1 track"));
    EXPECT_EQ(Texts::totalLength(5 * 3600 + 720), QStringLiteral("5 h 12 min"));
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
}
