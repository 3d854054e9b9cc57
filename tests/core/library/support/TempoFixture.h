#pragma once

#include "support/StoreFixture.h"

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
    static BPMAnalysisOutcome success(double bpm, double confidence)
    {
        return {Case::Success, {bpm, confidence, {{bpm * 2, 0.5}}}};
    }

    Tempo& tempo() { return store->tempo(); }
    std::optional<QString> estimate(const Track& track) { return tempo().playlistBPMState(track.id()).estimatedBPM; }
    bool isAnalyzing(const Track& track) { return tempo().playlistBPMState(track.id()).isAnalyzing; }

    /// Fresh rows of the list, "a.mp3" and so on, whose files exist and of which nothing is known.
    QList<Track> make(int count, Track::TagSource source = Track::TagSource::Guessed)
    {
        QList<Track> tracks;
        for (int i = 0; i < count; ++i) {
            tracks.append(track(file(QStringLiteral("%1.mp3").arg(QChar('a' + i))).toLocalFile()));
            tracks.last().setTagSource(source);
        }
        fill(tracks);
        tempo().restoreTempoTables({});
        return tracks;
    }
    static Track withTempo(const Track& track, const char* text)
    {
        return TagTexts::on(track, {{&AudioTags::bpm, text}});
    }
    /// Puts estimates into the tables, and nothing else.
    void estimates(const QHash<TrackID, QString>& texts, const QHash<TrackID, double>& confidences = {})
    {
        TempoTables tables;
        tables.estimatedBPMByTrackID = texts;
        tables.estimatedBPMConfidenceByTrackID = confidences;
        tempo().restoreTempoTables(tables);
    }
    /// What is kept for a row's file.
    CachedBPMEstimate kept(const Track& track)
    {
        return tempo().tempoTables().estimatedBPMByFile.value(FileURL::standardizedPath(track.url()));
    }
    /// The files that were analysed since the last look, in order, by their first letter.
    std::string heard()
    {
        QString text;
        for (const QString& name : std::exchange(analysed, {}))
            text += name.first(1);
        return text.toStdString();
    }

    QHash<QString, QList<BPMAnalysisOutcome>> outcomes; ///< still to come, by file name; then successes
    QStringList analysed;                               ///< file names
    QList<BPMAnalysisMode> modes;
};
