#include "ui/player/PositionBar.h"

#include "playback/AudioPlayer.h"
#include "ui/player/EnvelopeArea.h"
#include "ui/player/TimeLabel.h"
#include "ui/text/Texts.h"

#include <QHBoxLayout>

namespace {
constexpr int kGap = Metrics::kSpace2;
}

PositionBar::PositionBar(const WindowContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_elapsed(new TimeLabel(context.theme, Qt::AlignRight, this))
    , m_envelope(new EnvelopeArea(context, this))
    , m_remaining(new TimeLabel(context.theme, Qt::AlignLeft, this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kGap);
    layout->addWidget(m_elapsed, 0, Qt::AlignVCenter);
    layout->addWidget(m_envelope, 1);
    layout->addWidget(m_remaining, 0, Qt::AlignVCenter);
    AudioPlaybackProgress& progress = context.player.progress();
    connect(&progress, &AudioPlaybackProgress::currentTimeChanged, this, &PositionBar::refreshTimes);
    connect(&progress, &AudioPlaybackProgress::durationChanged, this, &PositionBar::refreshTimes);
    connect(&context.player, &AudioPlayer::currentTrackChanged, this, &PositionBar::refreshTimes);
    connect(m_envelope, &EnvelopeArea::heldChanged, this, &PositionBar::refreshTimes);
    retranslate();
}

void PositionBar::setAwaitedLength(double seconds)
{
    m_awaitedLength = seconds;
    refreshTimes();
}

void PositionBar::retranslate()
{
    m_envelope->setAccessibleName(Texts::localized(QStringLiteral("Позиция в треке")));
    m_elapsed->setAccessibleName(Texts::localized(QStringLiteral("Прошло")));
    m_remaining->setAccessibleName(Texts::localized(QStringLiteral("Осталось")));
    refreshTimes();
}

void PositionBar::refreshTimes()
{
    const bool isLoaded = m_context.player.currentID().has_value();
    const double duration = isLoaded ? m_context.player.progress().duration() : m_awaitedLength;
    const double time = isLoaded ? m_envelope->shownTime() : 0;
    m_elapsed->setEnabled(isLoaded);
    m_remaining->setEnabled(isLoaded);
    m_elapsed->setText(Texts::position(time, duration));
    m_remaining->setText(Texts::remaining(time, duration));
    m_elapsed->setAccessibleDescription(m_elapsed->text());
    m_remaining->setAccessibleDescription(m_remaining->text());
}

QString PositionBar::elapsedText() const
{
    return m_elapsed->text();
}

QString PositionBar::remainingText() const
{
    return m_remaining->text();
}

int PositionBar::timesWidth() const
{
    return m_elapsed->sizeHint().width() + m_remaining->sizeHint().width() + 2 * kGap;
}
