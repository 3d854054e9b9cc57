#include "ui/window/PlayerBar.h"

#include "core/library/LibraryStore.h"
#include "core/library/selection/Selection.h"
#include "ui/DashboardActions.h"
#include "ui/text/Texts.h"
#include "ui/theme/KeyColours.h"
#include "ui/theme/Paint.h"
#include "ui/thumbnails/CoverPaint.h"
#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/tracks/TrackColumns.h"
#include "ui/window/ThemeButton.h"

#include <QPainter>

namespace {
constexpr int kLeft = Metrics::kSpace4 + Metrics::kStep;
constexpr int kWordsLeft = kLeft + Metrics::kPlayerCover + Metrics::kSpace3;
constexpr int kWordsWidth = 220;
constexpr int kLine = 18;
constexpr int kFactGap = 28;
constexpr int kCaption = 16;
} // namespace

PlayerBar::PlayerBar(const WindowContext& context, QWidget* parent)
    : Panel(context.theme, &ThemeColours::surface, Qt::TopEdge, parent)
    , m_context(context)
    , m_heart(new ThemeButton(context.theme, ThemeButton::Kind::Quiet, this))
{
    setFixedHeight(Metrics::kPlayerHeight);
    connect(m_heart, &QAbstractButton::clicked, this, [this] {
        if (m_track)
            m_context.actions.toggleFavorites({m_track->id()});
    });
    connect(&context.thumbnails, &ThumbnailCache::ready, this, qOverload<>(&QWidget::update));
    connect(&context.theme, &Theme::changed, this, &PlayerBar::retranslate);
    refresh();
}

void PlayerBar::refresh()
{
    std::optional<Track> track = m_context.library.selection().selectedTrack();
    if (track && m_track && track->isSameValueAs(*m_track))
        return;
    m_track = std::move(track);
    retranslate();
}

void PlayerBar::retranslate()
{
    const bool isFavorite = m_track && m_track->isFavorite();
    const ThemeColours& c = m_context.theme.colours();
    m_heart->setVisible(m_track.has_value());
    m_heart->setIconOnly(
        isFavorite ? QStringLiteral("heart-filled") : QStringLiteral("heart"),
        Texts::localized(isFavorite ? QStringLiteral("Убрать из избранного") : QStringLiteral("Добавить в избранное")),
        QStringLiteral("F"));
    m_heart->setIconColour(isFavorite ? c.heart : c.text3);
    setAccessibleName(m_track ? Texts::spoken(*m_track) : Texts::localized(QStringLiteral("Трек не выбран")));
    place();
    update();
}

void PlayerBar::setOnTop(bool onTop)
{
    setLines(onTop ? Qt::BottomEdge : Qt::TopEdge);
}

QRect PlayerBar::wordsRect() const
{
    return {kWordsLeft, 0, std::min(kWordsWidth, width() / 3), height()};
}

void PlayerBar::place()
{
    m_heart->move(wordsRect().right() + Metrics::kSpace2, (height() - m_heart->height()) / 2);
    m_heart->resize(m_heart->sizeHint());
}

void PlayerBar::resizeEvent(QResizeEvent* event)
{
    Panel::resizeEvent(event);
    place();
}

void PlayerBar::paintEvent(QPaintEvent* event)
{
    Panel::paintEvent(event);
    QPainter painter(this);
    const QRect cover(kLeft, (height() - Metrics::kPlayerCover) / 2, Metrics::kPlayerCover, Metrics::kPlayerCover);
    CoverPaint::paint(painter, m_context, cover, Metrics::kRadiusSmall, m_track ? &*m_track : nullptr);
    paintWords(painter);
    if (m_track)
        paintFacts(painter);
}

void PlayerBar::paintWords(QPainter& painter) const
{
    const ThemeColours& c = m_context.theme.colours();
    const QRect words = wordsRect();
    if (!m_track) {
        Paint::line(painter, words, Texts::localized(QStringLiteral("Трек не выбран")),
                    m_context.theme.font(TextRole::Body), c.text3);
        return;
    }
    const int top = height() / 2 - kLine;
    const bool hasArtist = !m_track->tags().artist.isEmpty();
    Paint::line(painter, {words.left(), hasArtist ? top : height() / 2 - kLine / 2, words.width(), kLine},
                m_track->displayTitle(), m_context.theme.font(TextRole::BodyStrong), c.text);
    Paint::line(painter, {words.left(), top + kLine, words.width(), kLine}, m_track->tags().artist,
                m_context.theme.font(TextRole::Secondary), c.text2);
}

/// Captioned facts from the right edge leftwards, as many as there is room for.
void PlayerBar::paintFacts(QPainter& painter) const
{
    const ThemeColours& c = m_context.theme.colours();
    const QFont& strong = m_context.theme.font(TextRole::BodyStrong);
    const QFont& caption = m_context.theme.font(TextRole::ColumnHead);
    const int leftLimit = m_heart->geometry().right() + kFactGap;
    int right = width() - Metrics::kSpace6;
    for (TrackColumn column : {TrackColumn::Length, TrackColumn::BitRate, TrackColumn::Format, TrackColumn::Key,
                               TrackColumn::BPM, TrackColumn::Genre}) {
        QString text = TrackColumns::text(column, *m_track);
        if (text.isEmpty())
            continue;
        const auto key = column == TrackColumn::Key ? KeyColours::parse(text) : std::nullopt;
        if (key)
            text = key->code();
        const QString heading = VelmoraLocalization::locale().toUpper(TrackColumns::heading(column));
        const int captionWidth = QFontMetrics(caption).horizontalAdvance(heading);
        const int width = std::max(captionWidth, Paint::numberWidth(text, strong) + (key ? Metrics::kSpace3 : 0)) + 2;
        const int left = right - width;
        if (left < leftLimit)
            return;
        const int top = height() / 2 - kCaption - 2;
        Paint::line(painter, {left, top, width, kCaption}, heading, caption, c.text3);
        const QRect value(left, height() / 2 + 2, width, kLine);
        if (key)
            Paint::chip(painter, {left, value.center().y() + 1}, text, m_context.theme.font(TextRole::Chip),
                        KeyColours::colour(*key), KeyColours::chipText());
        else
            Paint::line(painter, value, text, strong, c.text);
        right = left - kFactGap;
    }
}
