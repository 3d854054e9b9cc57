#include "app/LibraryTagFiles.h"
#include "app/LibraryTagReader.h"

#include "WaveformScrubber/WaveformCache.h"
#include "app/EnvelopeUpkeep.h"
#include "async/TaskGroup.h"
#include "async/ThreadExecutor.h"
#include "support/Encoder.h"
#include "support/FolderTrashCan.h"
#include "support/Machine.h"
#include "support/Pictures.h"
#include "support/StoreFixture.h"
#include "support/Thrown.h"
#include "tags/AudioMetadataLoader.h"

#include <future>

namespace {

/// Hears the same tempo everywhere.
class CountingAnalyser final : public AudioAnalyser {
public:
    int tempos = 0; ///< analyses that ran

    BPMAnalysisOutcome tempo(const QUrl&, const BPMAnalysisMode&, std::stop_token) override
    {
        ++tempos;
        return {BPMAnalysisOutcome::Case::Success, {.bpm = 124, .confidence = 0.8, .alternatives = {}}};
    }
};

async::Task<> askFor(WaveformCache& cache, QUrl url, std::stop_token stop)
{
    co_await cache.samples(url, LowImpact::No, stop);
}

} // namespace

/// The store on files of the disk: what is edited stands in them.
class LibraryTagFilesTest : public StoreFixture {
protected:
    LibraryTagFilesTest()
    {
        preferences.keepsOtherTagEntriesAsked.set(true);
        store = std::make_unique<LibraryStore>(LibraryServices{.clock = clock,
                                                               .executor = executor,
                                                               .preferences = preferences,
                                                               .notifications = notifications,
                                                               .tagFiles = files,
                                                               .tagReader = reader,
                                                               .analyser = analyser,
                                                               .trashCan = trashCan});
    }
    ~LibraryTagFilesTest() override { store.reset(); }

    /// A file with a title and a cover. \return its row, which has not been read.
    Track add(const QString& name)
    {
        const QString path = folder.filePath(name);
        const QString arguments =
            QStringLiteral("sine=duration=1 -f lavfi -i color=size=64x64:duration=0.04 -map 0 -map 1 -frames:v 1 "
                           "-c:v mjpeg -disposition:v attached_pic -metadata title=Настоящее -metadata composer=Kept");
        EXPECT_TRUE(Encoder::encode(arguments, path)) << "the encoder is needed";
        const Track added = favorite(path);
        fill(workspace().tracks().rows() + QList<Track>{added});
        return added;
    }
    void settle()
    {
        executor.runAll();
        clock.advance(async::seconds(10));
        executor.runAll();
    }
    void undo()
    {
        history().undo();
        settle();
    }
    static LoadedTrackMetadata onDisk(const Track& track)
    {
        return AudioMetadataLoader::loadIfReadable(track.url(), {}).value_or(LoadedTrackMetadata());
    }
    static QByteArray bytesOf(const Track& track) { return readFile(track.url().toLocalFile()); }

    LibraryTagFiles files{folder.filePath(QStringLiteral("vault"))};
    LibraryTagReader reader{preferences};
    CountingAnalyser analyser;
    FolderTrashCan trashCan{folder.filePath(QStringLiteral("Trash"))};
};

TEST_F(LibraryTagFilesTest, AnEditReachesTheFileAndUndoTakesItBack)
{
    for (const char* extension : {"mp3", "flac", "m4a"}) {
        SCOPED_TRACE(extension);
        const Track track = add(QStringLiteral("Guess - Name 🎧.") + QLatin1StringView(extension));
        store->tagWriting().assignGenre(QStringLiteral("Deep House"), {track.id()});
        settle();
        EXPECT_EQ(onDisk(track).tags.genre, QStringLiteral("Deep House"));
        EXPECT_EQ(onDisk(track).tags.title, QStringLiteral("Настоящее")) << "not what the name suggests";
        undo();
        EXPECT_TRUE(onDisk(track).tags.genre.isEmpty());
        EXPECT_FALSE(workspace().lastError());
        history().clear();
    }
}

TEST_F(LibraryTagFilesTest, WhatSavesKeepAndTheOriginalComesBack)
{
    for (const bool keeps : {true, false}) {
        SCOPED_TRACE(keeps);
        preferences.keepsOtherTagEntries.set(keeps);
        const Track track = add(keeps ? QStringLiteral("kept.mp3") : QStringLiteral("plain.mp3"));
        const QByteArray original = bytesOf(track);
        EXPECT_FALSE(store->originalTags().canRestore({track.id()}));
        typeForAll({track}, {{&AudioTags::artist, "Artist"}});
        settle();
        EXPECT_EQ(onDisk(track).tags.artist, QStringLiteral("Artist"));
        EXPECT_EQ(!onDisk(track).artworkData.isNull(), keeps);
        EXPECT_EQ(!workspace().tracks().find(track.id())->artworkData().isNull(), keeps)
            << "the row shows what the file has";
        EXPECT_EQ(bytesOf(track).contains("TCOM"), keeps);

        ASSERT_TRUE(store->originalTags().canRestore({track.id()}));
        const QByteArray edited = bytesOf(track);
        store->originalTags().restore({track.id()});
        settle();
        EXPECT_TRUE(bytesOf(track) == original);
        undo();
        EXPECT_TRUE(bytesOf(track) == edited);
        history().redo();
        settle();
        EXPECT_TRUE(bytesOf(track) == original);
        history().clear();
        EXPECT_TRUE(workspace().tracks().find(track.id())->tags().artist != QStringLiteral("Artist"));
        EXPECT_FALSE(workspace().tracks().find(track.id())->artworkData().isNull());
    }
}

// Whatever changes a file first: what it was is kept before.
TEST_F(LibraryTagFilesTest, EveryChangeCanBeTakenBackByteForByte)
{
    const QByteArray png = Pictures::plain({8, 8}, 0xFFFF0000, "PNG");
    const std::pair<const char*, std::function<void(const TagWrite&)>> changes[] = {
        {"save", [&](const TagWrite& write) { files.write(write); }},
        {"cover", [&](const TagWrite& write) { files.assignArtwork(png, write); }},
        {"cleaning", [&](const TagWrite& write) { files.clean(CleanerField::Genre, {}, {}, write.url); }},
        {"album",
         [&](const TagWrite& write) { files.clean(CleanerField::Album, {}, QStringLiteral("Set"), write.url); }},
    };
    for (const auto& [name, change] : changes) {
        for (const bool keeps : {false, true}) {
            SCOPED_TRACE(name);
            const Track track = add(QStringLiteral("%1%2.mp3").arg(QLatin1StringView(name)).arg(keeps));
            const QByteArray original = bytesOf(track);
            const QByteArray present = files.present(track.url());
            const TagWrite write{track.url(), AudioTags(), TagFieldSet::kAll, keeps};
            change(write);
            const QByteArray changed = bytesOf(track);
            const QByteArray presentThen = files.present(track.url());
            files.restoreOriginal(track.url());
            EXPECT_TRUE(bytesOf(track) == original);
            files.putBack(presentThen, track.url());
            EXPECT_TRUE(bytesOf(track) == changed);
            files.putBack(present, track.url());
            EXPECT_TRUE(bytesOf(track) == original);
        }
    }
}

// A vault that fails must not be told as a file that has gone.
TEST_F(LibraryTagFilesTest, FailuresSpeakToTheUser)
{
    const auto at = [&](const char* name) {
        const QUrl url = FileURL::fromPath(folder.filePath(QString::fromLatin1(name)));
        return TagWrite{url, AudioTags(), TagFieldSet::kAll, false};
    };
    const auto put = [&](const char* name, const QByteArray& bytes) {
        writeFile(folder.filePath(QString::fromLatin1(name)), bytes);
        return at(name);
    };
    const TagWrite broken = put("broken.flac", "fLaC\x84\xff\xff\xff");
    const TagWrite unknown = put("no writer.ogg", "OggS");
    const TagWrite gone = at("gone.mp3");
    files.write(put("a.mp3", "sound"));
    const TagWrite other = put("a.mp3", "other sound");
    LibraryTagFiles unwritable(folder.filePath(QStringLiteral("a.mp3/vault")));
    const std::tuple<std::function<void()>, bool, const char*> cases[] = {
        {[&] { files.write(gone); }, true, "gone.mp3"},
        {[&] { files.write(broken); }, false, "broken.flac"},
        {[&] { files.write(unknown); }, false, "ogg"},
        {[&] { files.restoreOriginal(other.url); }, false,
         "Исходные теги не подходят к файлу a.mp3: его звук с тех пор изменился."},
        {[&] { unwritable.write(other); }, false,
         "Исходные теги файла a.mp3 не удалось сохранить в копию, поэтому файл не изменён."},
    };
    for (const auto& [call, isMissing, words] : cases) {
        SCOPED_TRACE(words);
        const auto error = thrown<TagFileError>(call);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->isMissing(), isMissing);
        EXPECT_TRUE(error->message().contains(QString::fromUtf8(words))) << qPrintable(error->message());
    }
}

// The end of the program waits for the file that is being written, and for no other.
TEST_F(StoreFixture, TheEndFinishesTheFileInProgress)
{
    preferences.keepsOtherTagEntriesAsked.set(true);
    std::promise<void> begun;
    std::promise<void> mayEnd;
    std::atomic<int> finished = 0;
    files.before = [&](const FakeTagFiles::Call&) {
        begun.set_value();
        mayEnd.get_future().wait();
        ++finished;
    };
    {
        auto threads = std::make_unique<async::ThreadExecutor>();
        store = std::make_unique<LibraryStore>(LibraryServices{clock, *threads, preferences, notifications, files});
        const QList<Track> rows{read(QStringLiteral("a.mp3")), read(QStringLiteral("b.mp3")),
                                read(QStringLiteral("c.mp3"))};
        fill(rows);
        store->tagWriting().assignGenre(QStringLiteral("House"), ids(rows));
        const std::future<void> write = begun.get_future();
        ASSERT_TRUE(comesTrue([&] {
            async::MainQueue::drain(); // the file is looked at first
            return write.wait_for(std::chrono::milliseconds(1)) == std::future_status::ready;
        }));
        store.reset();
        async::MainQueue::drain();
        EXPECT_EQ(finished, 0) << "closing the library does not wait";
        mayEnd.set_value();
        threads.reset();
        async::MainQueue::drain();
    }
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(files.calls.size(), 1);
}

TEST_F(LibraryTagFilesTest, WhatIsKnownOfTheSoundStandsWhenTheFileIsWrittenOrComesBack)
{
    int decodes = 0;
    const auto extract = [&](const QUrl&, LowImpact, const std::stop_token&) {
        ++decodes;
        return std::vector<float>(kEnvelopeSampleCount, 0.5F);
    };
    const auto makeCache = [&] {
        return std::make_unique<WaveformCache>(clock, executor, folder.filePath(QStringLiteral("cache")), extract);
    };
    auto cache = makeCache();
    QObject context;
    keepEnvelopes(store->fileEvents(), *cache, &context);
    const Track track = add(QStringLiteral("a.mp3"));
    store->imports().scheduleMetadataLoads({track}, Track::MetadataDestination::Library);
    settle();
    async::TaskGroup asking(1);
    const auto ask = [&] {
        asking.add([&cache, url = track.url()](std::stop_token stop) { return askFor(*cache, url, stop); });
        settle();
    };
    ask();
    store->tempo().detectBPM({track.id()});
    settle();
    ASSERT_EQ(decodes, 1);
    ASSERT_EQ(analyser.tempos, 1);

    store->tagWriting().assignGenre(QStringLiteral("House"), {track.id()});
    settle();
    EXPECT_EQ(onDisk(track).tags.genre, QStringLiteral("House"));
    store->artwork().assignArtwork(Pictures::plain({32, 32}, 0xFFFF0000, "PNG"), {track.id()});
    settle();
    store->removal().trashTracks({track.id()});
    settle();
    EXPECT_TRUE(workspace().tracks().isEmpty());
    undo();
    ASSERT_EQ(workspace().tracks().size(), 1);

    EXPECT_TRUE(cache->cached(track.url()));
    ask();
    cache.reset();
    settle();
    cache = makeCache(); // the next start
    ask();
    EXPECT_TRUE(cache->cached(track.url()));
    EXPECT_EQ(decodes, 1);
    const TempoTables& tables = store->tempo().tempoTables();
    EXPECT_TRUE(tables.estimatedBPMByFile.value(FileURL::standardizedPath(track.url())).matches(track.url()));
    EXPECT_EQ(tables.estimatedBPMByTrackID.value(track.id()), QStringLiteral("124"));
    EXPECT_EQ(analyser.tempos, 1);
}
