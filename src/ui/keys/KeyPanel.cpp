#include "ui/keys/KeyPanel.h"

#include "ui/cells/KeyTexts.h"
#include "ui/controls/ThemeLabel.h"
#include "ui/keys/KeyFacts.h"
#include "ui/keys/KeyWheel.h"
#include "ui/text/Texts.h"

#include <QVBoxLayout>

KeyPanel::KeyPanel(const Theme& theme, QWidget* parent)
    : Panel(theme, &ThemeColours::surface, Qt::LeftEdge, parent)
    , m_title(new ThemeLabel(theme, TextRole::BodyStrong, &ThemeColours::text, this))
    , m_artist(new ThemeLabel(theme, TextRole::Secondary, &ThemeColours::text2, this))
    , m_wheel(new KeyWheel(theme, this))
    , m_facts(new KeyFacts(theme, this))
{
    setMinimumWidth(kNarrowest);
    setMaximumWidth(kWidest);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::kSpace6, Metrics::kSpace4, Metrics::kSpace6, Metrics::kSpace4);
    layout->setSpacing(0);
    layout->addWidget(m_title);
    layout->addWidget(m_artist);
    layout->addSpacing(Metrics::kSpace4);
    layout->addWidget(m_wheel, 100);
    layout->addSpacing(Metrics::kSpace4);
    layout->addWidget(m_facts);
    layout->addStretch(1);
    retranslate();
}

void KeyPanel::setTrack(const std::optional<Track>& track, const KeyState& state)
{
    m_track = track;
    m_state = state;
    retranslate();
}

/// The wheel is round: it needs no more height than it has width, and the facts follow it.
void KeyPanel::resizeEvent(QResizeEvent* event)
{
    Panel::resizeEvent(event);
    const QMargins margins = layout()->contentsMargins();
    m_wheel->setMaximumHeight(width() - margins.left() - margins.right());
}

void KeyPanel::retranslate()
{
    m_title->setText(m_track ? m_track->displayTitle() : Texts::localized(QStringLiteral("Трек не выбран")));
    m_artist->setText(m_track ? m_track->tags().artist : QString());
    QString words = KeyTexts::step(m_state.step);
    if (m_track && m_state.step == KeyState::Step::New)
        words = Texts::localized(QStringLiteral("ещё не определена"));
    m_wheel->setKey(m_state.analysis ? std::optional(m_state.analysis->key) : std::nullopt, words);
    m_wheel->retranslate(); // a wheel whose key stays speaks the new language too
    m_facts->setState(m_state);
}
