#include "ui/theme/Theme.h"

#include "ui/theme/VelmoraStyle.h"

#include <QApplication>
#include <QFontDatabase>

namespace {

struct FontSpec {
    int pixels;
    int weight;
    double letterSpacing; // pixels
};

// Weights lie just below the middle between two of a static family, which then gives the lighter one.
constexpr int kBodyWeight = 449;
constexpr int kStrongWeight = 549;
constexpr int kTitleWeight = 650;

FontSpec specOf(TextRole role)
{
    switch (role) {
    case TextRole::Body:
        return {13, kBodyWeight, 0};
    case TextRole::BodyStrong:
        return {13, kStrongWeight, 0};
    case TextRole::Secondary:
        return {12, kBodyWeight, 0};
    case TextRole::SecondaryStrong:
        return {12, kStrongWeight, 0};
    case TextRole::ColumnHead:
        return {11, kStrongWeight, 0.5};
    case TextRole::Title:
        return {20, kTitleWeight, -0.2};
    case TextRole::Brand:
        return {15, kTitleWeight, 0};
    case TextRole::Chip:
        return {11, kTitleWeight, 0.1};
    }
    Q_UNREACHABLE();
}

QFont makeFont(const QString& family, const FontSpec& spec)
{
    QFont font(family);
    font.setPixelSize(spec.pixels);
    font.setWeight(static_cast<QFont::Weight>(spec.weight));
    if (spec.letterSpacing != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, spec.letterSpacing);
    return font;
}

} // namespace

Theme::Theme(Appearance appearance, QObject* parent)
    : QObject(parent)
    , m_appearance(appearance)
{
    const QString inter = QStringLiteral("Inter");
    const QString family = QFontDatabase::families().contains(inter)
                               ? inter
                               : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    for (size_t role = 0; role < kTextRoleCount; ++role)
        m_fonts[role] = makeFont(family, specOf(static_cast<TextRole>(role)));
}

void Theme::setAppearance(Appearance appearance)
{
    if (appearance == m_appearance)
        return;
    m_appearance = appearance;
    install();
    emit changed();
}

QPalette Theme::palette() const
{
    const ThemeColours& c = colours();
    QPalette palette;
    palette.setColor(QPalette::Window, c.background);
    palette.setColor(QPalette::Base, c.background);
    palette.setColor(QPalette::AlternateBase, c.surface);
    palette.setColor(QPalette::Button, c.raised);
    palette.setColor(QPalette::ToolTipBase, c.raised);
    palette.setColor(QPalette::ToolTipText, c.text);
    palette.setColor(QPalette::WindowText, c.text);
    palette.setColor(QPalette::Text, c.text);
    palette.setColor(QPalette::ButtonText, c.text);
    palette.setColor(QPalette::PlaceholderText, c.text3);
    palette.setColor(QPalette::Highlight, c.accent);
    palette.setColor(QPalette::HighlightedText, c.accentText);
    palette.setColor(QPalette::Link, c.accent);
    palette.setColor(QPalette::Mid, c.line);
    palette.setColor(QPalette::Dark, c.line);
    palette.setColor(QPalette::Light, c.raised);
    palette.setColor(QPalette::Midlight, c.raised);
    palette.setColor(QPalette::Shadow, c.shadow);
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, c.text3);
    return palette;
}

void Theme::install()
{
    auto* style = qobject_cast<VelmoraStyle*>(QApplication::style());
    if (!style) {
        style = new VelmoraStyle;
        QApplication::setStyle(style); // takes ownership
    }
    style->setColours(colours());
    QApplication::setFont(font(TextRole::Body));
    QApplication::setPalette(palette());
}
