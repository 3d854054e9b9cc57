#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "async/TaskGroup.h"
#include "async/TaskQueue.h"
#include "core/library/imports/AudioFileList.h"
#include "core/library/imports/ImportPlan.h"
#include "core/library/reading/MetadataLoads.h"
#include "core/model/Track.h"

#include <QList>
#include <QObject>

#include <functional>

enum class StatusIcon;
class Favorites;
class Preferences;
class Sending;
class StrayTemporaries;
class Tempo;
class Waveforms;
class StatusLine;
class Workspace;

/// Files and folders become rows: at once with tags guessed from the names, then filled in by background reads. Thread:
/// main.
class Imports : public QObject {
    Q_OBJECT

public:
    /// What an import came to.
    struct Outcome {
        QList<TrackID> ids; ///< all tracks of the request, known ones first
        AudioFileList::LeftOut leftOut;
    };
    using Completion = std::function<void(const Outcome& outcome)>;

    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Preferences& preferences;
        Favorites& favorites;
        Sending& sending;
        async::Clock& clock;
        async::Executor& executor;
        MetadataLoads& loads;
        Tempo& tempo;
        Waveforms& waveforms;
        StrayTemporaries& strayTemporaries;
    };

    explicit Imports(const Dependencies& dependencies);
    ~Imports() override;

    /// Into the playlist. Up to four requests are walked at the same time, in the background; their rows join one
    /// request after another, 200 at a time. Says how many were added.
    /// \param completion called at the end; may be empty
    void importURLs(const QList<QUrl>& urls, Completion completion = {});
    /// Into the playlist and Favorites.
    void importForFavorites(const QList<QUrl>& urls);
    /// Into Covers, without the playlist; queues up with the imports into the playlist.
    void importForCovers(const QList<QUrl>& urls, Completion completion = {});
    /// Into the analysis list, as rows of their own.
    void importForAnalysis(const QList<QUrl>& urls);
    /// Into the key list, as rows of their own.
    void importForMusicalKeyAnalysis(const QList<QUrl>& urls);
    /// Into the converter's queue; takes Ogg files as well. Says nothing.
    void importForConversion(const QList<QUrl>& urls);
    /// Adds places for the duplicate search to look through, and lists the files in them. A place that is known is
    /// walked again.
    void importDuplicateSearchURLs(const QList<QUrl>& urls);

    /// Says how many files were added and how many were left out; nothing if neither. \param message counted text.
    void announceAdded(const QString& message, qsizetype added, AudioFileList::LeftOut leftOut, StatusIcon icon);

    /// Reads the files of these tracks in the background, like MetadataLoads::schedule(); results reach the given
    /// list in batches.
    void scheduleMetadataLoads(const QList<Track>& tracks, Track::MetadataDestination destination);
    /// Starts the trickle of results that were held back while the playlist scrolled.
    void scheduleDeferredMetadataFlush();

    /// Loads of metadata that have not ended: one for each call that asked for rows to be read.
    int metadataLoadOperationCount() const;
    /// Whether a batch is being applied at this moment.
    bool isApplyingMetadataBatch() const;

Q_SIGNALS:
    /// The quality of new rows of the analysis list is wanted.
    void qualityWanted(const QSet<TrackID>& ids);

private:
    struct SectionImport;
    /// What the slices of an import came to.
    struct Appended {
        QList<TrackID> ids; ///< all, those of files that came to the list meanwhile among them
        QSet<TrackID> added;
        QSet<TrackID> found; ///< of the files that came meanwhile
        QList<QUrl> addedURLs;
    };
    using Expanded = std::function<void(const AudioFileList::Expansion&)>;

    void expandThen(const QList<QUrl>& urls, bool (*isWanted)(QStringView), Expanded then);
    async::Task<> expandTask(QList<QUrl> urls, bool (*isWanted)(QStringView), Expanded then, std::stop_token stop);
    void enqueuePlaylistImport(const AudioFileList::Expansion& expansion, Completion completion);
    async::Task<> completePlaylistImport(AudioFileList::Expansion expansion, Completion completion,
                                         std::stop_token stop);
    async::Task<> completeCoverImport(AudioFileList::Expansion expansion, Completion completion, std::stop_token stop);
    async::Task<> completeSectionImport(const SectionImport* section, AudioFileList::Expansion expansion,
                                        std::stop_token stop);
    async::Task<Appended> appendInSlices(Track::MetadataDestination destination, QList<QUrl> urls,
                                         ImportPlan::Membership membership, std::stop_token stop);
    void forgetScrollPositionIfEmpty();

    Dependencies m_dependencies;
    async::TaskGroup m_expansions;
    async::TaskQueue m_libraryImports; ///< into the main list, one at a time, in order of their arrival
    async::TaskQueue m_sectionImports;
};
