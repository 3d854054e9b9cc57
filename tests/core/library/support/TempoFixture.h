#pragma once

#include "support/StoreFixture.h"

#include <QFile>

/// A store whose analyses of tempo end as the test says, file by file.
class TempoFixture : public StoreFixture {
protected:
    using Case = BPMAnalysisOutcome::Case;

    TempoFixture()
    {
        analyzer = [this](const QUrl& url, const BPMAnalysisMode& mode, const std::stop_token&) {
            analysed.append(FileURL::lastPathComponent(url));
            modes.append(mode);
            QList<BPMAnalysisOutcome>& planned = outcomes[analysed.last()];
            return planned.isEmpty() ? success(124.4, 0.75) : planned.takeFirst();
        };
    }
    ~TempoFixture() override { clock.advance(async::seconds(60)); }

    static BPMAnalysisOutcome success(double bpm, double confidence)
    {
        return {Case::Success, {bpm, confidence, {{bpm * 2, 0.5}}}};
    }

    Tempo& tempo() { return store->tempo(); }
    std::optional<QString> estimate(const Track& track) { return tempo().playlistBPMState(track.id()).estimatedBPM; }
    bool isAnalyzing(const Track& track) { return tempo().playlistBPMState(track.id()).isAnalyzing; }

    /// Fresh rows of the list, "a.mp3" and so on, whose files exist and of which nothing is known.
    QList<Track> make(int count)
    {
        QList<Track> tracks;
        for (int i = 0; i < count; ++i)
            tracks.append(track(file(QStringLiteral("%1.mp3").arg(QChar('a' + i))).toLocalFile()));
        fill(tracks);
        tempo().restoreTempoTables({});
        return tracks;
    }
    static Track withTempo(Track track, const QString& text)
    {
        AudioTags tags = track.tags();
        tags.bpm = text;
        track.replaceTags(tags);
        return track;
    }
    /// Reads files whose tags are empty.
    static decltype(reader) readsNothing()
    {
        return [](const QUrl&, const AudioTags& fallback) {
            LoadedTrackMetadata read;
            read.tags = fallback;
            return read;
        };
    }
    static void append(const Track& track, const QByteArray& bytes)
    {
        QFile file(track.url().toLocalFile());
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(bytes);
    }

    QHash<QString, QList<BPMAnalysisOutcome>> outcomes; ///< still to come, by file name; then successes
    QStringList analysed;                               ///< file names
    QList<BPMAnalysisMode> modes;
};
