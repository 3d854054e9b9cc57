#include "ui/cells/KeyCells.h"

#include "ui/cells/KeyTexts.h"
#include "ui/text/Texts.h"
#include "ui/theme/KeyColours.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kBarWidth = 120;
constexpr double kWeakestShare = 0.35; // of a variant's colour: still told apart
constexpr int kCodeLine = 18;
constexpr int kOriginLine = 17;

const QString kNothing = QStringLiteral("—");

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

/// Relative luminance and contrast as the accessibility guidelines define them.
double luminance(const QColor& colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& left, const QColor& right)
{
    const double a = luminance(left) + 0.05;
    const double b = luminance(right) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

int chipAt(QPainter& painter, const QRect& rect, int left, const Theme& theme, const MusicalKey& key, double share)
{
    const ThemeColours& c = theme.colours();
    const QColor fill = KeyCells::mixed(KeyColours::colour(key), c.background, share);
    return Paint::chip(painter, {left, rect.top() + rect.height() / 2}, key.camelot(), theme.font(TextRole::Chip), fill,
                       KeyCells::textOn(fill, c));
}

void paintInTag(QPainter& painter, const QRect& rect, const Theme& theme, const Track& track)
{
    const ThemeColours& c = theme.colours();
    const KeyTexts::InTag tag = KeyTexts::inTag(track);
    const QFont& font = theme.font(TextRole::Body);
    if (!tag.isFromName) {
        Paint::line(painter, rect, tag.text.isEmpty() ? kNothing : tag.text, font,
                    tag.text.isEmpty() ? c.text3 : c.text2);
        return;
    }
    const int top = rect.top() + (rect.height() - kCodeLine - kOriginLine) / 2;
    Paint::line(painter, {rect.left(), top, rect.width(), kCodeLine}, tag.text, font, c.text2);
    Paint::line(painter, {rect.left(), top + kCodeLine, rect.width(), kOriginLine},
                Texts::localized(QStringLiteral("из имени")), theme.font(TextRole::Secondary), c.text3);
}

void paintFound(QPainter& painter, const QRect& rect, const Theme& theme, const KeyState& state)
{
    const ThemeColours& c = theme.colours();
    const QFont& font = theme.font(TextRole::BodyStrong);
    switch (state.step) {
    case KeyState::Step::New:
        break;
    case KeyState::Step::Queued:
        Paint::line(painter, rect, QStringLiteral("…"), font, c.text3);
        break;
    case KeyState::Step::Running:
        Paint::line(painter, rect, QStringLiteral("…"), font, c.accent);
        break;
    case KeyState::Step::Undetermined:
        Paint::line(painter, rect, kNothing, font, c.warning);
        break;
    case KeyState::Step::Determined:
        chipAt(painter, rect, rect.left(), theme, state.analysis->key, 1);
        break;
    }
}

void paintVariants(QPainter& painter, const QRect& rect, const Theme& theme, const MusicalKeyAnalysis& analysis)
{
    const QFontMetrics metrics(theme.font(TextRole::Chip));
    int left = rect.left();
    for (const MusicalKeyAnalysis::Alternative& each : KeyTexts::variants(analysis)) {
        const int needed = std::max(30, metrics.horizontalAdvance(each.key.camelot()) + 14);
        if (left + needed > rect.right())
            break;
        const double strength = std::clamp(each.relativeStrength, 0.0, 1.0);
        left += chipAt(painter, rect, left, theme, each.key, kWeakestShare + strength * (1 - kWeakestShare)) +
                Metrics::kStep + 2;
    }
}

} // namespace

namespace KeyCells {

QColor mixed(const QColor& colour, const QColor& ground, double share)
{
    const auto channel = [&](double over, double under) {
        return static_cast<float>(over * share + under * (1 - share));
    };
    return QColor::fromRgbF(channel(colour.redF(), ground.redF()), channel(colour.greenF(), ground.greenF()),
                            channel(colour.blueF(), ground.blueF()));
}

QColor textOn(const QColor& fill, const ThemeColours& colours)
{
    const QColor dark = KeyColours::chipText();
    return contrast(dark, fill) >= contrast(colours.text, fill) ? dark : colours.text;
}

void paintConfidence(QPainter& painter, const QRect& rect, const ThemeColours& colours, double confidence)
{
    constexpr int kThick = Metrics::kProgressThickness;
    QRectF bar(rect.left(), rect.top() + (rect.height() - kThick) / 2, std::min(rect.width(), kBarWidth), kThick);
    Paint::roundedFill(painter, bar, kThick / 2.0, colours.groove);
    bar.setWidth(std::max<double>(kThick, bar.width() * std::clamp(confidence, 0.0, 1.0)));
    Paint::roundedFill(painter, bar, kThick / 2.0, confidence >= kSafeConfidence ? colours.ok : colours.warning);
}

void paint(QPainter& painter, const QRect& rect, const Theme& theme, TrackColumn column, const Track& track,
           const KeyState& state)
{
    if (column == TrackColumn::KeyInTag)
        paintInTag(painter, rect, theme, track);
    else if (column == TrackColumn::FoundKey)
        paintFound(painter, rect, theme, state);
    else if (column == TrackColumn::KeyVariants && state.analysis)
        paintVariants(painter, rect, theme, *state.analysis);
    else if (column == TrackColumn::KeyConfidence && state.analysis)
        paintConfidence(painter, rect, theme.colours(), state.analysis->confidence);
    else if (column == TrackColumn::KeyConfidence)
        Paint::line(painter, rect, KeyTexts::step(state.step), theme.font(TextRole::Secondary), theme.colours().text2);
}

} // namespace KeyCells
