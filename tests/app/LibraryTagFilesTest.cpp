#include "app/LibraryTagFiles.h"
#include "app/LibraryTagReader.h"

#include "WaveformScrubber/WaveformCache.h"
#include "app/EnvelopeUpkeep.h"
#include "async/TaskGroup.h"
#include "async/ThreadExecutor.h"
#include "support/StoreFixture.h"
#include "tags/AudioMetadataLoader.h"

#include <QBuffer>
#include <QImage>
#include <QProcess>

#include <future>

namespace {

/// The real Trash below a folder.
class FolderTrashCan final : public TrashCan {
public:
    explicit FolderTrashCan(const QString& folder)
        : m_trash(folder.toUtf8())
    {
    }
    TrashedItem moveToTrash(const QUrl& url) override { return m_trash.moveToTrash(url.toLocalFile()); }
    void restore(const TrashedItem& item) override { Trash::restore(item); }

private:
    Trash m_trash;
};

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
class LibraryTagFilesTest : public testing::Test {
protected:
    LibraryTagFilesTest()
    {
        VelmoraLocalization::setLanguage(AppLanguage::Russian);
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
    ~LibraryTagFilesTest() override
    {
        settle();
        store.reset();
        executor.dropAll();
        async::MainQueue::drain();
    }

    /// A file with a title and a cover. \return its row, which has not been read.
    Track add(const QString& name)
    {
        const QString path = folder.filePath(name);
        const QString command = QStringLiteral(
            "-v error -f lavfi -i sine=duration=1 -f lavfi -i color=size=64x64:duration=0.04 -map 0 -map 1 -frames:v 1 "
            "-c:v mjpeg -disposition:v attached_pic -metadata title=Настоящее -metadata composer=Kept");
        const int status = QProcess::execute(QStringLiteral("ffmpeg"), command.split(u' ') + QStringList{path});
        EXPECT_EQ(status, 0) << "the encoder is needed";
        Track track = Track::unread(FileURL::fromPath(path));
        track.setIsFavorite(true);
        track.setIsInCoverWorkspace(true);
        store->workspace().setTracks(store->workspace().tracks().rows() + QList<Track>{track});
        return track;
    }
    void settle()
    {
        executor.runAll();
        clock.advance(async::seconds(10));
        executor.runAll();
    }
    static LoadedTrackMetadata onDisk(const Track& track)
    {
        return AudioMetadataLoader::loadIfReadable(track.url(), {}).value_or(LoadedTrackMetadata());
    }
    QByteArray bytesOf(const Track& track) const
    {
        QFile file(track.url().toLocalFile());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    QTemporaryDir folder;
    ManualClock clock;
    ManualExecutor executor;
    Preferences preferences{std::make_unique<MemoryPreferenceStore>()};
    Notifications notifications;
    LibraryTagFiles files{folder.filePath(QStringLiteral("vault"))};
    LibraryTagReader reader{preferences};
    CountingAnalyser analyser;
    FolderTrashCan trashCan{folder.filePath(QStringLiteral("Trash"))};
    std::unique_ptr<LibraryStore> store;
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
        store->history().undo();
        settle();
        EXPECT_TRUE(onDisk(track).tags.genre.isEmpty());
        EXPECT_FALSE(store->workspace().lastError());
        store->history().clear();
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
        AudioTags typed;
        typed.artist = QStringLiteral("Artist");
        store->tagWriting().saveFields(typed, TagField::Artist, {track.id()});
        settle();
        EXPECT_EQ(onDisk(track).tags.artist, QStringLiteral("Artist"));
        EXPECT_EQ(!onDisk(track).artworkData.isNull(), keeps);
        EXPECT_EQ(!store->workspace().tracks().find(track.id())->artworkData().isNull(), keeps)
            << "the row shows what the file has";
        EXPECT_EQ(bytesOf(track).contains("TCOM"), keeps);

        ASSERT_TRUE(store->originalTags().canRestore({track.id()}));
        const QByteArray edited = bytesOf(track);
        store->originalTags().restore({track.id()});
        settle();
        EXPECT_TRUE(bytesOf(track) == original);
        store->history().undo();
        settle();
        EXPECT_TRUE(bytesOf(track) == edited);
        store->history().redo();
        settle();
        EXPECT_TRUE(bytesOf(track) == original);
        store->history().clear();
        EXPECT_TRUE(store->workspace().tracks().find(track.id())->tags().artist != QStringLiteral("Artist"));
        EXPECT_FALSE(store->workspace().tracks().find(track.id())->artworkData().isNull());
    }
}

// Whatever changes a file first: what it was is kept before.
TEST_F(LibraryTagFilesTest, EveryChangeCanBeTakenBackByteForByte)
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    ASSERT_TRUE(image.save(&buffer, "PNG"));
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

TEST_F(LibraryTagFilesTest, FailuresSpeakToTheUser)
{
    struct Case {
        const char* name;
        QByteArray bytes; ///< null: no such file
        bool isMissing;
        QString word;
    };
    const Case cases[] = {{"gone.mp3", QByteArray(), true, QStringLiteral("gone.mp3")},
                          {"broken.flac", "fLaC\x84\xff\xff\xff", false, QStringLiteral("broken.flac")},
                          {"no writer.ogg", "OggS", false, QStringLiteral("ogg")}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const QString path = folder.filePath(QString::fromLatin1(test.name));
        if (!test.bytes.isNull()) {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(test.bytes) == test.bytes.size());
        }
        try {
            files.write({FileURL::fromPath(path), AudioTags(), TagFieldSet::kAll, false});
            ADD_FAILURE() << "nothing thrown";
        } catch (const TagFileError& error) {
            EXPECT_EQ(error.isMissing(), test.isMissing);
            EXPECT_TRUE(error.message().contains(test.word)) << qPrintable(error.message());
        }
    }
}

// A vault that fails must not be told as a file that has gone.
TEST_F(LibraryTagFilesTest, TheVaultSpeaksForItself)
{
    const QString path = folder.filePath(QStringLiteral("a.mp3"));
    const auto put = [&](const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    };
    put("sound");
    const TagWrite write{FileURL::fromPath(path), AudioTags(), TagFieldSet::kAll, false};
    files.write(write);
    put("other sound");
    LibraryTagFiles unwritable(path + QStringLiteral("/vault"));
    const std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { files.restoreOriginal(write.url); },
         "Исходные теги не подходят к файлу a.mp3: его звук с тех пор изменился."},
        {[&] { unwritable.write(write); },
         "Исходные теги файла a.mp3 не удалось сохранить в копию, поэтому файл не изменён."},
    };
    for (const auto& [call, message] : cases) {
        try {
            call();
            ADD_FAILURE() << "nothing thrown";
        } catch (const TagFileError& error) {
            EXPECT_FALSE(error.isMissing());
            EXPECT_EQ(error.message(), QString::fromUtf8(message));
        }
    }
}

// The end of the program waits for the file that is being written, and for no other.
TEST(TerminationTest, FinishesTheFileInProgress)
{
    Preferences preferences(std::make_unique<MemoryPreferenceStore>());
    preferences.keepsOtherTagEntriesAsked.set(true);
    Notifications notifications;
    ManualClock clock;
    FakeTagFiles files;
    std::promise<void> begun;
    std::promise<void> mayEnd;
    std::atomic<int> finished = 0;
    files.before = [&](const FakeTagFiles::Call&) {
        begun.set_value();
        mayEnd.get_future().wait();
        ++finished;
    };
    {
        auto executor = std::make_unique<async::ThreadExecutor>();
        auto store =
            std::make_unique<LibraryStore>(LibraryServices{clock, *executor, preferences, notifications, files});
        QList<Track> rows;
        for (int number = 0; number < 3; ++number) {
            rows.append(Track::unread(FileURL::fromPath(QStringLiteral("/music/%1.mp3").arg(number))));
            rows.last().setIsFavorite(true);
            rows.last().setIsInCoverWorkspace(true);
            rows.last().setTagSource(Track::TagSource::Read);
        }
        store->workspace().setTracks(rows);
        store->tagWriting().assignGenre(QStringLiteral("House"), {rows[0].id(), rows[1].id(), rows[2].id()});
        begun.get_future().wait();
        store.reset();
        async::MainQueue::drain();
        EXPECT_EQ(finished, 0) << "closing the library does not wait";
        mayEnd.set_value();
        executor.reset();
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
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    store->artwork().assignArtwork(png, {track.id()});
    settle();
    store->removal().trashTracks({track.id()});
    settle();
    EXPECT_TRUE(store->workspace().tracks().isEmpty());
    store->history().undo();
    settle();
    ASSERT_EQ(store->workspace().tracks().size(), 1);

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
