#include "ui/keys/KeyFacts.h"

#include "ui/cells/KeyCells.h"
#include "ui/cells/KeyTexts.h"
#include "ui/text/Texts.h"
#include "ui/theme/KeyColours.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"

#include <QPainter>

namespace {

constexpr int kRow = 28;
constexpr int kRows = 3;
constexpr int kLabelWidth = 112;
constexpr int kFigureWidth = 44;

QString tuningLabel()
{
    return Texts::localized(QStringLiteral("Настройка"));
}

QString confidenceLabel()
{
    return Texts::localized(QStringLiteral("Уверенность"));
}

QString mixesLabel()
{
    return Texts::localized(QStringLiteral("Сводится с"));
}

} // namespace

KeyFacts::KeyFacts(const Theme& theme, QWidget* parent)
    : QWidget(parent)
    , m_theme(theme)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void KeyFacts::setState(const KeyState& state)
{
    m_state = state;
    retranslate();
    update();
}

void KeyFacts::retranslate()
{
    if (!m_state.analysis) {
        setAccessibleName(KeyTexts::step(m_state.step));
        return;
    }
    const MusicalKeyAnalysis& analysis = *m_state.analysis;
    QStringList codes;
    for (const MusicalKey& key : KeyTexts::compatible(analysis.key))
        codes.append(key.camelot());
    setAccessibleName(Texts::facts({tuningLabel() + u' ' + KeyTexts::tuning(analysis.tuningCents),
                                    confidenceLabel() + u' ' + KeyTexts::confidence(analysis.confidence),
                                    mixesLabel() + u' ' + codes.join(QStringLiteral(", "))}));
}

QSize KeyFacts::sizeHint() const
{
    return {kLabelWidth + 160, kRow * kRows};
}

QRect KeyFacts::valueRect(int row) const
{
    return {kLabelWidth, row * kRow, width() - kLabelWidth, kRow};
}

void KeyFacts::paintLabel(QPainter& painter, int row, const QString& text) const
{
    Paint::line(painter, {0, row * kRow, kLabelWidth - Metrics::kSpace2, kRow}, text, m_theme.font(TextRole::Body),
                m_theme.colours().text2);
}

void KeyFacts::paintEvent(QPaintEvent*)
{
    if (!m_state.analysis)
        return;
    QPainter painter(this);
    const ThemeColours& c = m_theme.colours();
    const MusicalKeyAnalysis& analysis = *m_state.analysis;
    const QFont& font = m_theme.font(TextRole::Body);
    paintLabel(painter, 0, tuningLabel());
    Paint::line(painter, valueRect(0), KeyTexts::tuning(analysis.tuningCents), font, c.text);
    paintLabel(painter, 1, confidenceLabel());
    const QRect value = valueRect(1);
    Paint::line(painter, {value.left(), value.top(), kFigureWidth, kRow}, KeyTexts::confidence(analysis.confidence),
                font, c.text);
    KeyCells::paintConfidence(painter, value.adjusted(kFigureWidth, 0, 0, 0), c, analysis.confidence);
    paintLabel(painter, 2, mixesLabel());
    QPoint place(kLabelWidth, valueRect(2).top() + kRow / 2);
    for (const MusicalKey& key : KeyTexts::compatible(analysis.key))
        place.rx() += Paint::chip(painter, place, key.camelot(), m_theme.font(TextRole::Chip), KeyColours::colour(key),
                                  KeyColours::chipText()) +
                      Metrics::kStep + 2;
}
