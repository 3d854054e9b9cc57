#include "ui/tracks/TrackTable.h"

#include "core/library/LibraryStore.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"
#include "ui/theme/Metrics.h"
#include "ui/tracks/TrackListModel.h"
#include "ui/waveform/RowWaveforms.h"

#include <cmath>

// The column of waveforms: which rows ask for theirs, and what is repainted when one changes or plays.

void TrackTable::connectWaveforms()
{
    m_waveformColumn = m_model.columnOf(TrackColumn::Waveform);
    if (!m_waveformColumn)
        return;
    connect(&m_context.rowWaveforms, &RowWaveforms::changed, this, &TrackTable::updateWaveforms);
    connect(&m_context.rowWaveforms, &RowWaveforms::reset, viewport(), qOverload<>(&QWidget::update));
    connect(&m_context.store.preferences(), &Preferences::changed, this, [this](const QString& key) {
        if (WaveformColours::isKey(m_context.store.preferences(), key))
            viewport()->update();
    });
    connect(&m_context.player.progress(), &AudioPlaybackProgress::currentTimeChanged, this, &TrackTable::movePlayed);
}

bool TrackTable::showsWaveforms() const
{
    return m_waveformColumn && !isColumnHidden(*m_waveformColumn) && isVisible();
}

TrackTable::RowRange TrackTable::rowsInView() const
{
    const int first = std::max(0, m_layout.nearestRow(verticalOffset()));
    const int last = m_layout.nearestRow(verticalOffset() + viewport()->height());
    return {first, std::min(last + 1, m_model.rowCount())};
}

/// The rest of the road: a row asks for its waveform when it is painted.
void TrackTable::dropWaveformsOutOfView()
{
    if (!m_waveformColumn)
        return;
    QSet<QUrl> urls;
    const RowRange range = showsWaveforms() ? rowsInView() : RowRange{};
    for (int row = range.first; row < range.end; ++row)
        urls.insert(m_model.track(row).url());
    m_context.rowWaveforms.keepOnly(urls);
}

void TrackTable::updateWaveforms(const QUrl& url)
{
    if (!showsWaveforms())
        return;
    const RowRange range = rowsInView();
    for (int row = range.first; row < range.end; ++row) {
        if (m_model.track(row).url() == url)
            viewport()->update(visualRect(m_model.index(row, *m_waveformColumn)));
    }
}

double TrackTable::playedOf(const Track& track) const
{
    if (m_mark.of(track) == PlayingMark::State::None)
        return 0;
    return m_context.player.isOpening() ? m_playedPlace / Metrics::kRowWaveformWidth
                                        : m_context.player.synchronizedWaveformProgress();
}

/// Ten times a second at most, and only as often as the played part grows by a pixel.
void TrackTable::movePlayed()
{
    if (!showsWaveforms() || m_context.player.isOpening())
        return;
    const double place = m_context.player.synchronizedWaveformProgress() * Metrics::kRowWaveformWidth;
    const double ratio = viewport()->devicePixelRatioF();
    if (std::lround(place * ratio) == std::lround(m_playedPlace * ratio))
        return;
    const int left = static_cast<int>(std::floor(std::min(place, m_playedPlace))) - 1;
    const int right = static_cast<int>(std::ceil(std::max(place, m_playedPlace))) + 1;
    m_playedPlace = place;
    const RowRange range = rowsInView();
    for (int row = range.first; row < range.end; ++row) {
        if (m_mark.of(m_model.track(row)) == PlayingMark::State::None)
            continue;
        const QRect waveform = TrackDelegate::waveformRect(visualRect(m_model.index(row, *m_waveformColumn)));
        viewport()->update(waveform.left() + left, waveform.top(), right - left, waveform.height());
    }
}
