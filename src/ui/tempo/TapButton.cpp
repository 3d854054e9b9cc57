#include "ui/tempo/TapButton.h"

#include "core/library/LibraryStore.h"
#include "core/library/status/StatusLine.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/text/Texts.h"
#include "ui/theme/Metrics.h"

#include <QMouseEvent>

TapButton::TapButton(const WindowContext& context, QWidget* parent)
    : ThemeButton(context.theme, Kind::Plain, parent)
    , m_context(context)
{
    // A beat is where the finger comes down; the keyboard clicks.
    connect(this, &QAbstractButton::clicked, this, &TapButton::tap);
    setTrack(std::nullopt);
    retranslate();
}

void TapButton::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && isEnabled())
        tap();
    event->accept();
}

void TapButton::setTrack(const std::optional<Track>& track)
{
    const std::optional<TrackID> id = track ? std::optional(track->id()) : std::nullopt;
    if (id != m_trackID) {
        m_finish.cancel();
        m_taps.clear();
    }
    m_trackID = id;
    setEnabled(id.has_value());
    show();
}

void TapButton::retranslate()
{
    setToolTip(Texts::localized(QStringLiteral("Нажимайте в такт, чтобы задать темп")) + QStringLiteral(" (T)"));
    show();
}

void TapButton::tap()
{
    if (!m_trackID)
        return;
    m_taps.tap(m_context.clock.now());
    show();
    if (isHidden())
        tell();
    m_finish.start([this](std::stop_token stop) { return finishLater(std::move(stop)); });
}

/// A narrow window has no room for the button, but its key works.
void TapButton::tell() const
{
    const std::optional<int> bpm = m_taps.bpm();
    const QString text = bpm ? VelmoraLocalization::format(QStringLiteral("Темп нажатий: %d BPM"), {*bpm})
                             : VelmoraLocalization::format(QStringLiteral("Нажатий в такт: %d"), {m_taps.count()});
    m_context.store.status().showText(text, StatusIcon::Tempo, WorkspaceStatus::Tone::Neutral);
}

async::Task<> TapButton::finishLater(std::stop_token stop)
{
    co_await m_context.clock.sleep(TapTempo::kPause, stop);
    const std::optional<int> bpm = m_taps.bpm();
    m_taps.clear();
    show();
    if (bpm)
        m_context.actions.commands().perform(CommandID::SetTempo,
                                             {.ids = {*m_trackID}, .of = CommandTarget::Of::Player, .number = *bpm});
}

void TapButton::show()
{
    const std::optional<int> bpm = m_taps.bpm();
    const QString waiting = m_taps.count() > 0 ? QString(m_taps.count(), u'•') : QStringLiteral("TAP");
    setContent(bpm ? QString::number(*bpm) : waiting);
    setAccessibleName(Texts::localized(QStringLiteral("Задать темп нажатиями")));
    setAccessibleDescription(bpm ? QString::number(*bpm) : QString());
}

QSize TapButton::sizeHint() const
{
    const QSize size = ThemeButton::sizeHint();
    return {Metrics::kTapWidth, size.height()};
}
