#pragma once

#include "async/MainQueue.h"
#include "core/library/LibraryServices.h"
#include "core/library/LibraryStore.h"
#include "core/library/artwork/Artwork.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/files/FileEvents.h"
#include "core/library/imports/Imports.h"
#include "core/library/keys/Keys.h"
#include "core/library/order/Order.h"
#include "core/library/playback/Playback.h"
#include "core/library/quicklists/QuickLists.h"
#include "core/library/removal/Removal.h"
#include "core/library/selection/Selection.h"
#include "core/library/sending/Sending.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/OriginalTags.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/tempo/TempoChoices.h"
#include "core/library/undo/History.h"
#include "core/library/waveforms/Waveforms.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "support/FakeTagFiles.h"
#include "support/FakeTrashCan.h"
#include "support/ManualClock.h"
#include "support/ManualExecutor.h"
#include "support/TagTexts.h"
#include "work/Scheduler.h"
#include "work/WorkBoard.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>

/// Remembers what it was asked to play.
class RecordingPlayer final : public PlayerControl {
public:
    std::optional<TrackID> currentID() const override { return current; }
    void play(const Track& track) override
    {
        current = track.id();
        played.append(track.id());
    }
    void stopAndClear() override
    {
        current.reset();
        ++stops;
    }
    std::optional<TrackID> current;
    QList<TrackID> played;
    int stops = 0;
};

class StoreFixture;

/// What the store hears and reads, as its fixture says.
class FixtureServices final : public TagReader, public AudioAnalyser, public Envelopes {
public:
    explicit FixtureServices(StoreFixture& fixture)
        : m_fixture(fixture)
    {
    }
    std::optional<LoadedTrackMetadata> read(const QUrl& url, const AudioTags& fallbackTags) override;
    BPMAnalysisOutcome tempo(const QUrl& url, const BPMAnalysisMode& mode, std::stop_token stop) override;
    std::optional<MusicalKeyAnalysis> musicalKey(const QUrl& url, std::stop_token stop) override;
    async::Task<bool> prepare(QUrl url, std::stop_token stop) override;

private:
    StoreFixture& m_fixture;
};

/// A store on the manual clock and executor, with made-up reads.
class StoreFixture : public testing::Test {
protected:
    StoreFixture();
    ~StoreFixture() override;

    friend class FixtureServices;

    /// What the store stands on.
    LibraryServices services(WorkspaceSessionStorage& storage = WorkspaceSessionStorage::none());
    /// Builds the store anew upon another Trash, which outlives it.
    void useTrashCan(TrashCan& can);

    /// A track that is in the list already. \param path absolute, or a name that is put into /music.
    static Track track(const QString& path);
    static Track favorite(const QString& path);
    /// A favourite whose tags have been read.
    static Track read(const QString& path);
    /// Tracks "0.mp3", "1.mp3" … that are in the list already.
    static QList<Track> numbered(int count);
    void fill(const QList<Track>& tracks) { workspace().setTracks(tracks); }
    static QSet<TrackID> ids(const QList<Track>& tracks);
    /// Gives a row other texts in its tags, all else as it is.
    void replace(const Track& track, TagTexts::Texts texts);
    /// Present value of a track.
    Track now(const Track& track) { return *workspace().tracks().find(track.id()); }

    /// Lets every file be read, with these tags and its row's others.
    void filesHold(TagTexts::Texts texts = {});
    /// Edits a row as the inspector does.
    void type(const Track& track, TagTexts::Texts texts);
    /// Edits the fields that are told, of several rows, as the inspector does.
    void typeForAll(const QList<Track>& tracks, TagTexts::Texts texts);

    /// Makes an empty file below the temporary folder. \return its URL.
    QUrl file(const QString& relativePath);
    /// Changes a file as another program does.
    static void append(const QUrl& url, const QByteArray& bytes);
    /// Runs all background jobs and pauses until nothing is left.
    void settle();
    void undo();
    void redo();

    Workspace& workspace() { return store->workspace(); }
    History& history() { return store->history(); }
    QString statusText() const;
    QStringList titles(const QList<Track>& tracks) const;

    const Track a = track(QStringLiteral("a.mp3")); ///< with b and c: rows that may stand for any
    const Track b = track(QStringLiteral("b.mp3"));
    const Track c = track(QStringLiteral("c.mp3"));

    ManualClock clock;
    ManualExecutor executor;
    Preferences preferences{std::make_unique<MemoryPreferenceStore>()};
    Notifications notifications;
    FakeTagFiles files;
    FakeTrashCan trashCan;
    QTemporaryDir folder;

    // What left the store.
    QList<QUrl> readURLs;
    QSet<TrackID> tempoAsked; ///< tracks whose analysis ran
    int tempoCalls = 0;       ///< analyses that ran
    QList<QUrl> waveformURLs;
    QSet<TrackID> qualityAsked;
    QList<QUrl> keyURLs;
    RecordingPlayer player;

    /// What a read gives; nothing for files that cannot be read.
    std::function<std::optional<LoadedTrackMetadata>(const QUrl&, const AudioTags&)> reader;
    /// What an analysis of tempo gives; a failure for good where it is empty.
    std::function<BPMAnalysisOutcome(const QUrl&, const BPMAnalysisMode&, const std::stop_token&)> analyzer;
    /// What the analysis of a key gives; nothing for files without a key.
    std::function<std::optional<MusicalKeyAnalysis>(const QUrl&)> keyOf;
    FixtureServices fakes{*this};
    std::unique_ptr<LibraryStore> store;

private:
    TrashCan* m_trashCan = nullptr;
};
