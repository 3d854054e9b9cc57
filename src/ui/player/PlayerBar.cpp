#include "ui/player/PlayerBar.h"

#include "core/library/LibraryStore.h"
#include "core/library/selection/Selection.h"
#include "core/library/workspace/Workspace.h"
#include "playback/AudioPlayer.h"
#include "ui/controls/ThemeButton.h"
#include "ui/player/EnvelopeArea.h"
#include "ui/player/NowPlaying.h"
#include "ui/player/OutputMenu.h"
#include "ui/player/PositionBar.h"
#include "ui/player/TransportControls.h"
#include "ui/player/VolumeControl.h"
#include "ui/tempo/TapButton.h"
#include "ui/text/Texts.h"

namespace {
constexpr int kLeft = Metrics::kSpace4 + Metrics::kStep;
constexpr int kRight = Metrics::kSpace4;
constexpr int kGap = Metrics::kSpace4;
constexpr int kTimeGap = Metrics::kStep; // beside the times, whose columns have room to spare
constexpr int kLeastWords = 120;
constexpr int kMostWords = 320;
constexpr double kWordsShare = 0.18;      // of the bar
constexpr int kComfortableEnvelope = 240; // below it, what can be missed makes room
} // namespace

PlayerBar::PlayerBar(const WindowContext& context, QWidget* parent)
    : Panel(context.theme, &ThemeColours::surface, Qt::TopEdge, parent)
    , m_context(context)
    , m_nowPlaying(new NowPlaying(context, this))
    , m_transport(new TransportControls(context, this))
    , m_position(new PositionBar(context, this))
    , m_tap(new TapButton(context, this))
    , m_volume(new VolumeControl(context, this))
    , m_output(new ThemeButton(context.theme, ThemeButton::Kind::Quiet, this))
{
    setFixedHeight(Metrics::kPlayerHeight);
    connect(&context.player, &AudioPlayer::currentTrackChanged, this, &PlayerBar::refresh);
    connect(&context.player, &AudioPlayer::isPlayingChanged, this, &PlayerBar::refresh);
    connect(&context.player, &AudioPlayer::isOpeningSlowlyChanged, this, &PlayerBar::refresh);
    connect(m_output, &QAbstractButton::clicked, this, &PlayerBar::openOutputs);
    retranslate();
}

std::optional<Track> PlayerBar::shownTrack() const
{
    const std::optional<Track>& current = m_context.player.currentTrack();
    if (!current)
        return m_context.store.selection().selectedTrack();
    // The player keeps the track as it was at its start; the list knows what became of it.
    const Track* listed = m_context.store.workspace().tracks().find(current->id());
    return listed ? *listed : current;
}

void PlayerBar::refresh()
{
    const std::optional<Track> track = shownTrack();
    m_nowPlaying->setTrack(track);
    m_transport->refresh(track.has_value());
    m_position->setAwaitedLength(track ? track->duration() : 0);
    m_tap->setTrack(tappedTrack());
    showWaveform(track);
    setAccessibleName(m_nowPlaying->accessibleName());
}

/// Taps are for what is heard, where the main list has it.
std::optional<Track> PlayerBar::tappedTrack() const
{
    const std::optional<Track> track = shownTrack();
    const bool isListed = track && m_context.store.workspace().tracks().find(track->id());
    return isListed ? track : std::nullopt;
}

void PlayerBar::showWaveform(const std::optional<Track>& track)
{
    const bool isPlayed = m_context.player.requestedTrack().has_value();
    const auto url = track ? std::optional(track->url()) : std::nullopt;
    m_position->envelope().waveform().source().setFile(url, isPlayed ? BarEnvelope::Interest::Played
                                                                     : BarEnvelope::Interest::Focused);
}

void PlayerBar::retranslate()
{
    m_nowPlaying->retranslate();
    m_position->retranslate();
    m_tap->retranslate();
    m_volume->retranslate();
    m_output->setIconOnly(QStringLiteral("output"), Texts::localized(QStringLiteral("Устройство вывода")));
    refresh();
}

void PlayerBar::setOnTop(bool onTop)
{
    setLines(onTop ? Qt::BottomEdge : Qt::TopEdge);
}

void PlayerBar::openOutputs()
{
    auto* menu = new OutputMenu(m_context, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QSize size = menu->sizeHint();
    const QPoint corner = m_output->mapToGlobal(QPoint(m_output->width(), 0));
    const bool isAbove = m_output->mapTo(window(), QPoint()).y() > size.height();
    menu->popup({corner.x() - size.width(), isAbove ? corner.y() - size.height() - Metrics::kStep
                                                    : corner.y() + m_output->height() + Metrics::kStep});
}

void PlayerBar::resizeEvent(QResizeEvent* event)
{
    Panel::resizeEvent(event);
    place();
}

void PlayerBar::place()
{
    const int words = std::clamp(static_cast<int>(width() * kWordsShare), kLeastWords, kMostWords);
    const int left = kLeft + NowPlaying::widthFor(words) + kGap + m_transport->sizeHint().width() + kTimeGap;
    const int outputWidth = Metrics::kStep + m_output->sizeHint().width();
    const int tapWidth = m_tap->sizeHint().width() + Metrics::kSpace2;
    const auto envelope = [&](bool isWide, bool hasOutput, bool hasTap) {
        return width() - left - m_position->timesWidth() - kTimeGap - VolumeControl::widthFor(isWide) -
               (hasOutput ? outputWidth : 0) - (hasTap ? tapWidth : 0) - kRight;
    };
    const bool hasTap = envelope(true, true, true) >= kComfortableEnvelope;
    const bool hasOutput = envelope(true, true, hasTap) >= kComfortableEnvelope;
    const bool isWide = envelope(true, hasOutput, hasTap) >= kComfortableEnvelope;

    int x = kLeft;
    const auto put = [&](QWidget& widget, int breadth) {
        widget.setGeometry(x, Metrics::kHairline, breadth, height() - 2 * Metrics::kHairline);
        x += breadth;
    };
    put(*m_nowPlaying, NowPlaying::widthFor(words));
    x += kGap;
    put(*m_transport, m_transport->sizeHint().width());
    x += kTimeGap;
    put(*m_position, std::max(0, envelope(isWide, hasOutput, hasTap)) + m_position->timesWidth());
    x += kTimeGap;
    const QSize tapSize = m_tap->sizeHint();
    m_tap->setGeometry(x, (height() - tapSize.height()) / 2, tapSize.width(), tapSize.height());
    m_tap->setVisible(hasTap);
    x += hasTap ? tapWidth : 0;
    m_volume->setWide(isWide);
    put(*m_volume, VolumeControl::widthFor(isWide));
    m_output->setVisible(hasOutput);
    const QSize size = m_output->sizeHint();
    m_output->setGeometry(x + Metrics::kStep, (height() - size.height()) / 2, size.width(), size.height());
}
