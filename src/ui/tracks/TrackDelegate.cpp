#include "ui/tracks/TrackDelegate.h"

#include "core/library/LibraryStore.h"
#include "ui/cells/EditMark.h"
#include "ui/cells/KeyCells.h"
#include "ui/cells/KeyTexts.h"
#include "ui/cells/TempoText.h"
#include "ui/text/Texts.h"
#include "ui/theme/Icons.h"
#include "ui/theme/KeyColours.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"
#include "ui/thumbnails/CoverPaint.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/waveform/RowWaveforms.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int kTitleLine = 18;
constexpr int kArtistLine = 17;
constexpr int kCellGap = Metrics::kSpace3; // between the text of a cell and the next cell
constexpr int kHeartSize = 16;

QRect textRect(const QRect& cell)
{
    return cell.adjusted(0, 0, -kCellGap, 0);
}

bool fits(const QString& text, const QFont& font, int width)
{
    return QFontMetrics(font).horizontalAdvance(text) <= width;
}

TextRole roleOf(TrackColumn column)
{
    return column == TrackColumn::BPM || column == TrackColumn::Title ? TextRole::BodyStrong : TextRole::Body;
}

} // namespace

TrackDelegate::TrackDelegate(const WindowContext& context, StateOf stateOf, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_context(context)
    , m_stateOf(std::move(stateOf))
{
}

void TrackDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const RowState state = m_stateOf(index);
    paintRow(*painter, option, state);
    paintCell(*painter, option.rect, index, state);
}

void TrackDelegate::paintRow(QPainter& painter, const QStyleOptionViewItem& option, const RowState& state) const
{
    const ThemeColours& c = m_context.theme.colours();
    const QRect rect = option.rect;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    if (isSelected)
        painter.fillRect(rect, c.selection);
    else if (state.isHovered)
        painter.fillRect(rect, c.hover);
    painter.fillRect(rect.left(), rect.bottom(), rect.width(), Metrics::kHairline, c.line);
    if (isSelected && state.isFirstColumn)
        painter.fillRect(rect.left(), rect.top(), Metrics::kSelectionBar, rect.height(), c.accent);
    if (!state.hasFocusRing)
        return;
    painter.fillRect(rect.left(), rect.top(), rect.width(), Metrics::kHairline, c.accent);
    painter.fillRect(rect.left(), rect.bottom(), rect.width(), Metrics::kHairline, c.accent);
    if (state.isFirstColumn)
        painter.fillRect(rect.left(), rect.top(), Metrics::kHairline, rect.height(), c.accent);
    if (state.isLastColumn)
        painter.fillRect(rect.right(), rect.top(), Metrics::kHairline, rect.height(), c.accent);
}

void TrackDelegate::paintCell(QPainter& painter, const QRect& rect, const QModelIndex& index,
                              const RowState& state) const
{
    const auto& model = static_cast<const TrackListModel&>(*index.model());
    const Track& track = model.track(index.row());
    const TrackColumn column = model.columnAt(index.column());
    const ThemeColours& c = m_context.theme.colours();
    const QFont& font = m_context.theme.font(roleOf(column));
    const QRect text = textRect(rect);
    switch (column) {
    case TrackColumn::Cover:
        paintCover(painter, rect, track, state);
        break;
    case TrackColumn::Title:
        paintTitle(painter, text, track);
        break;
    case TrackColumn::Waveform:
        paintWaveform(painter, rect, track, state.played);
        break;
    case TrackColumn::Album:
    case TrackColumn::Genre:
        Paint::line(painter, text, TrackColumns::text(column, track), font, c.text2);
        break;
    case TrackColumn::Format:
        Paint::line(painter, text, TrackColumns::text(column, track), font, c.text3);
        break;
    case TrackColumn::Status:
        Paint::line(painter, text, model.statusText(track.id()), font, c.text2);
        break;
    case TrackColumn::BPM:
        paintTempo(painter, text, TempoText::bpmDisplayText(track, model.bpmState(track.id())));
        break;
    case TrackColumn::BitRate:
        Paint::number(painter, text, TrackColumns::text(column, track), font, c.text3);
        break;
    case TrackColumn::Length:
        Paint::number(painter, text, TrackColumns::text(column, track), font, c.text2);
        break;
    case TrackColumn::Key:
        paintKey(painter, text, TrackColumns::text(column, track));
        break;
    case TrackColumn::KeyInTag:
    case TrackColumn::FoundKey:
    case TrackColumn::KeyConfidence:
    case TrackColumn::KeyVariants:
        KeyCells::paint(painter, text, m_context.theme, column, track, model.keyState(track.id()));
        break;
    case TrackColumn::Heart:
        paintHeart(painter, rect, track.isFavorite());
        break;
    }
}

QRect TrackDelegate::coverRect(const QRect& cell)
{
    return {cell.left() + Metrics::kRowGutter, cell.top() + (cell.height() - Metrics::kThumbnail) / 2,
            Metrics::kThumbnail, Metrics::kThumbnail};
}

void TrackDelegate::paintCover(QPainter& painter, const QRect& rect, const Track& track, const RowState& state) const
{
    const QRect square = coverRect(rect);
    CoverPaint::paint(painter, m_context, square, Metrics::kRadiusSmall, &track);
    if (state.isHovered)
        PlayingMark::paintButton(painter, square, Metrics::kRadiusSmall, state.mark, m_context.theme);
    // Its middle stands a little right of the gutter's, below the icons of the folder headers.
    const int left = rect.left() + Metrics::kSpace2;
    PlayingMark::paint(painter, {left, rect.top(), square.left() - left, rect.height()}, state.mark, m_context.theme);
}

void TrackDelegate::paintTitle(QPainter& painter, const QRect& rect, const Track& track) const
{
    const ThemeColours& c = m_context.theme.colours();
    const QFont& strong = m_context.theme.font(TextRole::BodyStrong);
    const bool isAlone = track.tags().artist.isEmpty();
    const int top = rect.top() + (rect.height() - kTitleLine - kArtistLine) / 2;
    QRect title = isAlone ? rect : QRect(rect.left(), top, rect.width(), kTitleLine);
    if (track.editedFields())
        title = EditMark::paint(painter, title, c);
    Paint::line(painter, title, track.displayTitle(), strong, c.text);
    if (isAlone)
        return;
    Paint::line(painter, {rect.left(), top + kTitleLine, rect.width(), kArtistLine}, track.tags().artist,
                m_context.theme.font(TextRole::Secondary), c.text2);
}

QRect TrackDelegate::waveformRect(const QRect& cell)
{
    return {cell.left(), cell.top() + (cell.height() - Metrics::kRowWaveformHeight) / 2, Metrics::kRowWaveformWidth,
            Metrics::kRowWaveformHeight};
}

/// Always bars: other shapes cannot be told apart at this size.
void TrackDelegate::paintWaveform(QPainter& painter, const QRect& rect, const Track& track, double played) const
{
    const QRect place = waveformRect(rect);
    const Theme& theme = m_context.theme;
    // Asked for the one row that has such a part: preferences are texts in a table.
    const QColor playedColour = played > 0
                                    ? WaveformColours::of(m_context.store.preferences(), theme.appearance()).played
                                    : theme.colours().accent;
    const WaveformPicture::Look look{WaveformDrawer::Bars,
                                     place.size(),
                                     painter.device()->devicePixelRatioF(),
                                     {playedColour, theme.colours().text3}};
    m_context.rowWaveforms.paint(painter, place.topLeft(), track.url(), look, played * place.width());
}

/// A number, with the mark of an estimate as a hint in front of it; other signs are hints as a whole.
void TrackDelegate::paintTempo(QPainter& painter, const QRect& rect, const QString& text) const
{
    const ThemeColours& c = m_context.theme.colours();
    const QFont& font = m_context.theme.font(roleOf(TrackColumn::BPM));
    const bool isEstimate = text.startsWith(TempoText::kEstimateMark);
    const QString number = isEstimate ? text.sliced(TempoText::kEstimateMark.size()) : text;
    if (!number.at(0).isDigit() || Paint::numberWidth(number, font) > rect.width()) {
        Paint::line(painter, rect, number, font, number.at(0).isDigit() ? c.text : c.text3, Qt::AlignRight);
        return;
    }
    const int left = Paint::number(painter, rect, number, font, c.text);
    if (isEstimate)
        Paint::number(painter, {rect.left(), rect.top(), left - rect.left(), rect.height()}, TempoText::kEstimateMark,
                      m_context.theme.font(TextRole::Secondary), c.text3);
}

void TrackDelegate::paintKey(QPainter& painter, const QRect& rect, const QString& text) const
{
    if (const auto key = KeyTexts::keyOf(text)) {
        Paint::chip(painter, {rect.left(), rect.top() + rect.height() / 2}, key->camelot(),
                    m_context.theme.font(TextRole::Chip), KeyColours::colour(*key), KeyColours::chipText());
        return;
    }
    Paint::line(painter, rect, text, m_context.theme.font(TextRole::Body), m_context.theme.colours().text2);
}

void TrackDelegate::paintHeart(QPainter& painter, const QRect& rect, bool isFavorite) const
{
    const ThemeColours& c = m_context.theme.colours();
    const QRect square(rect.center().x() - kHeartSize / 2, rect.top() + (rect.height() - kHeartSize) / 2, kHeartSize,
                       kHeartSize);
    Icons::paint(painter, square, isFavorite ? QStringLiteral("heart-filled") : QStringLiteral("heart"),
                 isFavorite ? c.heart : c.text3);
}

QString TrackDelegate::tooltip(const QModelIndex& index, const QRect& cell) const
{
    const auto& model = static_cast<const TrackListModel&>(*index.model());
    const Track& track = model.track(index.row());
    const TrackColumn column = model.columnAt(index.column());
    const int width = textRect(cell).width();
    if (column == TrackColumn::Heart)
        return Texts::localized(track.isFavorite() ? QStringLiteral("Убрать из избранного")
                                                   : QStringLiteral("Добавить в избранное")) +
               QStringLiteral(" (F)");
    if (KeyTexts::isKeyColumn(column))
        return KeyTexts::tooltip(column, track, model.keyState(track.id()));
    if (column == TrackColumn::Title) {
        const bool titleFits = fits(track.displayTitle(), m_context.theme.font(TextRole::BodyStrong), width);
        const bool artistFits = fits(track.tags().artist, m_context.theme.font(TextRole::Secondary), width);
        QStringList lines;
        if (!titleFits || !artistFits)
            lines.append(Texts::spoken(track));
        if (track.editedFields())
            lines.append(EditMark::text(track));
        return lines.join(u'\n');
    }
    if (column == TrackColumn::BPM) {
        if (const QString told = TempoText::toolTip(m_context.store.tempo(), track.id()); !told.isEmpty())
            return told;
    }
    const QString text = index.data(Qt::DisplayRole).toString();
    if (column == TrackColumn::Key) {
        const auto key = KeyTexts::keyOf(text);
        return key && key->camelot() != text ? text : QString();
    }
    return fits(text, m_context.theme.font(roleOf(column)), width) ? QString() : text;
}

bool TrackDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                              const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const QString text = tooltip(index, option.rect);
    QToolTip::showText(event->globalPos(), text, view->viewport(), option.rect);
    return true;
}
