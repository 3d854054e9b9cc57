#include "ui/player/TransportControls.h"

#include "playback/AudioPlayer.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/text/Texts.h"
#include "ui/theme/Theme.h"

#include <QHBoxLayout>

TransportControls::TransportControls(const WindowContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_previous(new ThemeButton(context.theme, ThemeButton::Kind::Quiet, this))
    , m_play(new ThemeButton(context.theme, ThemeButton::Kind::Round, this))
    , m_next(new ThemeButton(context.theme, ThemeButton::Kind::Quiet, this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Metrics::kSpace2);
    for (ThemeButton* each : {m_previous, m_play, m_next})
        layout->addWidget(each);
    connect(m_previous, &QAbstractButton::clicked, this, [this] { perform(CommandID::PreviousTrack); });
    connect(m_play, &QAbstractButton::clicked, this, &TransportControls::playOrPause);
    connect(m_next, &QAbstractButton::clicked, this, [this] { perform(CommandID::NextTrack); });
}

/// The button belongs to the track that the bar shows, the play key to the focused row.
void TransportControls::playOrPause()
{
    if (const std::optional<Track> requested = m_context.player.requestedTrack())
        m_context.actions.commands().perform(CommandID::PlayRow, {.track = requested});
    else
        perform(CommandID::PlayPause);
}

void TransportControls::perform(CommandID id) const
{
    m_context.actions.commands().perform(id);
}

void TransportControls::refresh(bool hasTrack)
{
    const bool isPlaying = m_context.player.isPlaying();
    m_previous->setIconOnly(QStringLiteral("previous"), Commands::text(CommandID::PreviousTrack),
                            QStringLiteral("Ctrl+←"));
    m_play->setIconOnly(isPlaying ? QStringLiteral("pause") : QStringLiteral("play"),
                        Texts::localized(isPlaying ? QStringLiteral("Пауза") : QStringLiteral("Воспроизвести")),
                        Commands::keys(CommandID::PlayPause));
    const bool isOpening = m_context.player.isOpeningSlowly();
    m_play->setBusy(isOpening);
    m_play->setAccessibleDescription(isOpening ? Texts::localized(QStringLiteral("Файл открывается…")) : QString());
    m_next->setIconOnly(QStringLiteral("next"), Commands::text(CommandID::NextTrack), QStringLiteral("Ctrl+→"));
    for (ThemeButton* each : {m_previous, m_play, m_next})
        each->setEnabled(hasTrack);
}
