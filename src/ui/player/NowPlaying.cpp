#include "ui/player/NowPlaying.h"

#include "core/library/LibraryStore.h"
#include "core/library/workspace/Workspace.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/text/Texts.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"
#include "ui/thumbnails/CoverPaint.h"
#include "ui/thumbnails/ThumbnailCache.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace {
constexpr int kWordsLeft = Metrics::kPlayerCover + Metrics::kSpace3;
constexpr int kHeartWidth = Metrics::kSpace2 + Metrics::kButtonHeight; // with the gap before it
constexpr int kLine = 18;
} // namespace

NowPlaying::NowPlaying(const WindowContext& context, QWidget* parent)
    : QWidget(parent)
    , m_context(context)
    , m_heart(new ThemeButton(context.theme, ThemeButton::Kind::Quiet, this))
{
    connect(m_heart, &QAbstractButton::clicked, this, [this] {
        if (m_track)
            m_context.actions.commands().perform(CommandID::Favorite,
                                                 {.ids = {m_track->id()}, .of = CommandTarget::Of::Player});
    });
    connect(&context.thumbnails, &ThumbnailCache::ready, this, qOverload<>(&QWidget::update));
    connect(&context.theme, &Theme::changed, this, &NowPlaying::retranslate);
    retranslate();
}

void NowPlaying::setTrack(const std::optional<Track>& track)
{
    if (track && m_track && track->isSameValueAs(*m_track))
        return;
    m_track = track;
    retranslate();
}

void NowPlaying::retranslate()
{
    const bool isFavorite = m_track && m_track->isFavorite();
    const ThemeColours& c = m_context.theme.colours();
    m_heart->setVisible(m_track && m_context.store.workspace().tracks().contains(m_track->id()));
    m_heart->setIconOnly(
        isFavorite ? QStringLiteral("heart-filled") : QStringLiteral("heart"),
        Texts::localized(isFavorite ? QStringLiteral("Убрать из избранного") : QStringLiteral("Добавить в избранное")),
        QStringLiteral("F"));
    m_heart->setIconColour(isFavorite ? c.heart : c.text3);
    setAccessibleName(m_track ? Texts::spoken(*m_track) : Texts::localized(QStringLiteral("Трек не выбран")));
    update();
}

int NowPlaying::widthFor(int words)
{
    return kWordsLeft + words + kHeartWidth;
}

QRect NowPlaying::coverRect() const
{
    return {0, (height() - Metrics::kPlayerCover) / 2, Metrics::kPlayerCover, Metrics::kPlayerCover};
}

QRect NowPlaying::wordsRect() const
{
    return {kWordsLeft, 0, std::max(0, width() - kWordsLeft - kHeartWidth), height()};
}

void NowPlaying::place()
{
    const QSize size = m_heart->sizeHint();
    m_heart->setGeometry(width() - size.width(), (height() - size.height()) / 2, size.width(), size.height());
}

void NowPlaying::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    place();
}

void NowPlaying::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ThemeColours& c = m_context.theme.colours();
    CoverPaint::paint(painter, m_context, coverRect(), Metrics::kRadiusSmall, m_track ? &*m_track : nullptr);
    const QRect words = wordsRect();
    if (!m_track) {
        Paint::line(painter, words, Texts::localized(QStringLiteral("Трек не выбран")),
                    m_context.theme.font(TextRole::Body), c.text3);
        return;
    }
    const QString& artist = m_track->tags().artist;
    const int top = artist.isEmpty() ? (height() - kLine) / 2 : height() / 2 - kLine;
    Paint::line(painter, {words.left(), top, words.width(), kLine}, m_track->displayTitle(),
                m_context.theme.font(TextRole::BodyStrong), c.text);
    Paint::line(painter, {words.left(), top + kLine, words.width(), kLine}, artist,
                m_context.theme.font(TextRole::Secondary), c.text2);
}

bool NowPlaying::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    QString text;
    const QRect words = wordsRect();
    if (m_track && words.contains(static_cast<QHelpEvent*>(event)->pos())) {
        const QFontMetrics title(m_context.theme.font(TextRole::BodyStrong));
        const QFontMetrics artist(m_context.theme.font(TextRole::Secondary));
        if (title.horizontalAdvance(m_track->displayTitle()) > words.width() ||
            artist.horizontalAdvance(m_track->tags().artist) > words.width())
            text = Texts::spoken(*m_track);
    }
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text, this);
    return true;
}
