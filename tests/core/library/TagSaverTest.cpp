#include "core/library/files/FileLocks.h"
#include "support/Pictures.h"
#include "support/StoreFixture.h"

/// Saves on their way into files, on files that are made up.
class TagSaverTest : public StoreFixture {
protected:
    TagSaver& saver() { return store->tagWriting().saver(); }
    /// Fills the list with tracks as if each had just been edited.
    void fillEdited(QList<Track> tracks)
    {
        for (Track& track : tracks)
            track.edit(track.tags(), TagField::Genre);
        fill({});
        fill(tracks);
    }
    static QList<TagSaver::Item> items(const QList<Track>& tracks)
    {
        QList<TagSaver::Item> result;
        for (const Track& track : tracks)
            result.append({track});
        return result;
    }

    const Track a = read(QStringLiteral("a.mp3"));
    const Track b = read(QStringLiteral("b.mp3"));
    const Track c = read(QStringLiteral("c.mp3"));
    const Track d = read(QStringLiteral("d.mp3"));
};

TEST_F(TagSaverTest, AFailureStopsNoOtherFileAndOnlyTheFirstIsTold)
{
    for (const bool isMissing : {false, true}) {
        SCOPED_TRACE(isMissing);
        fillEdited({a, b, c});
        files.calls.clear();
        files.before = [&](const FakeTagFiles::Call& call) {
            if (call.write.url != a.url())
                throw TagFileError(QStringLiteral("disk full: ") + call.write.url.fileName(), isMissing);
        };
        saver().writeBatch(items({a, b, c}));
        settle();
        EXPECT_EQ(files.names(), QStringLiteral("a.mp3 b.mp3 c.mp3"));
        EXPECT_EQ(workspace().lastError(),
                  isMissing ? std::nullopt : std::optional(QStringLiteral("disk full: b.mp3")));
        workspace().setLastError(std::nullopt);
    }
}

TEST_F(TagSaverTest, AStoppedBatchEndsBeforeItsNextFile)
{
    for (const bool fails : {false, true}) {
        fillEdited({a, b, c, d});
        files.calls.clear();
        QSignalSpy stopped(&saver(), &TagSaver::stopped);
        files.before = [&](const FakeTagFiles::Call&) {
            saver().cancelBatches();
            if (fails)
                throw TagFileError(QStringLiteral("disk full"), false);
        };
        saver().writeBatch(items({a, b}));
        saver().writeBatch(items({c, d}));
        EXPECT_EQ(saver().progress().total, 4);
        settle();
        EXPECT_EQ(files.names(), QStringLiteral("a.mp3 c.mp3")) << "the files in progress are finished";
        ASSERT_EQ(stopped.size(), 1) << "told once for both";
        EXPECT_EQ(stopped.first().first().toInt(), fails ? 4 : 2);
        EXPECT_EQ(saver().progress().total, 0);
        EXPECT_TRUE(statusText().startsWith(QStringLiteral("Запись остановлена, в файлы не записано: ")));
        EXPECT_EQ(workspace().lastError().has_value(), fails);
    }
}

TEST_F(TagSaverTest, AFileHoldsWhatItsRowSaysHoweverManySavesWait)
{
    fill({a, b});
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({a, b}));
    type(b, {{&AudioTags::title, "Later"}}); // overtakes the batch
    settle();
    QStringList titles;
    for (const FakeTagFiles::Call& call : std::as_const(files.calls)) {
        EXPECT_EQ(call.write.tags.genre, QStringLiteral("House"));
        if (call.write.url == b.url())
            titles.append(call.write.tags.title);
    }
    EXPECT_EQ(titles, QStringList({QStringLiteral("Later")})) << "the batch finds its work done";
}

TEST_F(TagSaverTest, ABatchDoesNotTakeALaterPictureOutAgain)
{
    preferences.keepsOtherTagEntriesAsked.set(true);
    fill({a, b});
    const QByteArray png = Pictures::plain({4, 4}, 0xFFFF0000, "PNG");
    files.before = [&](const FakeTagFiles::Call& call) {
        if (call.name == QLatin1StringView("write") && call.write.url == a.url())
            store->artwork().assignArtwork(png, ids({b}));
    };
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({a, b}));
    settle();
    ASSERT_EQ(files.calls.last().name, QStringLiteral("artwork")) << "no plain save comes behind the picture";
    EXPECT_EQ(files.calls.last().write.tags.genre, QStringLiteral("House"));
    EXPECT_FALSE(now(b).artworkData().isNull());
}

TEST_F(TagSaverTest, ARowThatLeavesTheListBeforeItsTurnIsNotSaved)
{
    fill({a});
    store->fileLocks().acquire(a.url().path(), {});
    type(a, {{&AudioTags::title, "New"}});
    fill({});
    store->fileLocks().release(a.url().path());
    settle();
    EXPECT_TRUE(files.calls.isEmpty());
}

// What was guessed from a file's name never takes the place of what stands in it.
TEST_F(TagSaverTest, ARowThatWasNeverReadIsReadFirst)
{
    const Track unread = favorite(QStringLiteral("Guessed - Name.mp3"));
    ASSERT_EQ(unread.tags().artist, QStringLiteral("Guessed"));
    fill({unread});
    filesHold({{&AudioTags::artist, "Real"}, {&AudioTags::genre, "Old"}, {&AudioTags::comment, "Kept"}});
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({unread}));
    store->tagWriting().assignComment(QStringLiteral("prime"), ids({unread}));
    settle();
    ASSERT_EQ(files.calls.size(), 1) << "the second save finds its work done";
    EXPECT_EQ(files.calls.first().write.tags.artist, QStringLiteral("Real"));
    EXPECT_EQ(files.calls.first().write.tags.genre, QStringLiteral("House"));
    EXPECT_EQ(files.calls.last().write.tags.comment, QStringLiteral("prime"));
    const Track after = now(unread);
    EXPECT_TRUE(after.isRead());
    EXPECT_EQ(after.tags().artist, QStringLiteral("Real"));
    EXPECT_EQ(after.tags().genre, QStringLiteral("House"));
    EXPECT_EQ(after.tags().comment, QStringLiteral("prime"));
    EXPECT_EQ(readURLs.size(), 1);
}

TEST_F(TagSaverTest, AFileThatCannotBeReadIsNotOverwritten)
{
    const Track there = favorite(file(QStringLiteral("Guessed - Name.mp3")).path());
    const Track gone = favorite(QStringLiteral("Gone - Name.mp3"));
    for (const Track& unread : {there, gone}) {
        fill({unread});
        store->tagWriting().assignGenre(QStringLiteral("House"), ids({unread}));
        settle();
        EXPECT_TRUE(files.calls.isEmpty());
        EXPECT_EQ(workspace().lastError().value_or(QString()).contains(QStringLiteral("Guessed - Name.mp3")),
                  unread.id() == there.id())
            << "that a file has gone shows in the list";
        workspace().setLastError(std::nullopt);
    }
}

TEST_F(TagSaverTest, OtherRowsOfAFileFollowItsWrite)
{
    Track copy = a.withID(freshID());
    copy.replaceTags(TagTexts::of({{&AudioTags::genre, "Old"}}, copy.tags()));
    workspace().setList(Track::MetadataDestination::Analysis, {copy});
    fill({a});
    type(a, {{&AudioTags::genre, "New"}});
    settle();
    EXPECT_EQ(workspace().analysisTracks().at(0).tags().genre, QStringLiteral("New"));
}

TEST_F(TagSaverTest, AsksOnceBeforeTheFirstSaveThatWouldDropSomething)
{
    TagInventory picture, entries, year, unwritable;
    picture.hasPicture = true;
    entries.otherEntries = 1;
    year.unread.year = QStringLiteral("1999");
    unwritable.unwritable = TagField::MusicalKey;
    const struct {
        const char* name;
        TagInventory held;
        bool isAsked;
        bool fails = false;
    } cases[] = {{"nothing to lose", {}, false},
                 {"a picture", picture, true},
                 {"other entries", entries, true},
                 {"a year that no row shows", year, true},
                 {"a field that the container's save leaves out", unwritable, true},
                 {"an inventory that fails", {}, true, true}};
    for (const auto& test : cases) {
        files.inventoryFails = test.fails;
        for (const bool keeps : {false, true}) {
            SCOPED_TRACE(test.name);
            preferences.keepsOtherTagEntries.remove();
            preferences.keepsOtherTagEntriesAsked.remove();
            fillEdited({a, b});
            files.calls.clear();
            files.held = test.held;
            saver().writeBatch(items({a, b}));
            settle();
            EXPECT_EQ(workspace().isAskingWhatSavesKeep(), test.isAsked);
            if (!test.isAsked) {
                EXPECT_EQ(files.calls.size(), 2);
                continue;
            }
            EXPECT_TRUE(files.calls.isEmpty()) << "the write waits";
            saver().answerWhatSavesKeep(keeps);
            settle();
            EXPECT_FALSE(workspace().isAskingWhatSavesKeep());
            ASSERT_EQ(files.calls.size(), 2);
            EXPECT_EQ(files.calls.first().write.keepsOthers, keeps);
            EXPECT_EQ(files.calls.last().write.keepsOthers, keeps) << "asked once";
            EXPECT_EQ(preferences.keepsOtherTagEntries.get(), keeps);
            EXPECT_EQ(saver().progress().total, 0);
        }
    }
}

TEST_F(TagSaverTest, SettingThePreferenceAnswersTheQuestion)
{
    fillEdited({a});
    files.held.hasPicture = true;
    saver().writeBatch(items({a}));
    settle();
    ASSERT_TRUE(workspace().isAskingWhatSavesKeep());
    preferences.keepsOtherTagEntries.set(true);
    settle();
    EXPECT_FALSE(workspace().isAskingWhatSavesKeep());
    ASSERT_EQ(files.calls.size(), 1);
    EXPECT_TRUE(files.calls.first().write.keepsOthers);
}

TEST_F(TagSaverTest, AKeepingSaveLeavesFieldsThatWereNeverReadAndNeverEdited)
{
    preferences.keepsOtherTagEntries.set(true);
    fill({a});
    type(a, {{&AudioTags::year, "2020"}});
    settle();
    files.held.unread.track = QStringLiteral("7");
    typeForAll({a}, {{&AudioTags::track, ""}}); // cleared by the user
    settle();
    ASSERT_EQ(files.calls.size(), 2);
    const TagFields first = files.calls.first().write.fields;
    EXPECT_TRUE(first.testFlag(TagField::Year) && first.testFlag(TagField::Title));
    EXPECT_FALSE(first & (TagField::Track | TagField::Tempo | TagField::AlbumArtist));
    EXPECT_TRUE(files.calls.last().write.fields.testFlag(TagField::Track));
}

TEST_F(TagSaverTest, ARowShowsThatAPlainSaveTookThePictureAway)
{
    Track covered = read(QStringLiteral("covered.mp3"));
    covered.replaceArtwork(ArtworkData::intern("picture"), QImage());
    for (const bool keeps : {false, true}) {
        preferences.keepsOtherTagEntriesAsked.set(true);
        preferences.keepsOtherTagEntries.set(keeps);
        fillEdited({covered});
        saver().writeBatch(items({covered}));
        executor.runOne(); // the file is written; a read that began before brings the old picture
        const LoadedTrackMetadata late = TagTexts::read(covered.tags(), covered.artworkData());
        settle();
        Track shown = now(covered);
        shown.apply(late, covered.url(), covered.metadataVersion());
        fill({shown});
        EXPECT_EQ(now(covered).artworkData().isNull(), !keeps);
    }
}

TEST_F(TagSaverTest, AKeepingSaveLeavesFieldsAsTheFileHasThem)
{
    preferences.keepsOtherTagEntries.set(true);
    reader = [this](const QUrl&, const AudioTags&) { // the last of several artists, as a read gives it
        return TagTexts::read(TagTexts::of({{&AudioTags::comment, "written by somebody else"}}, a.tags()));
    };
    fill({a});
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({a}));
    settle();
    ASSERT_EQ(files.calls.size(), 1);
    EXPECT_EQ(files.calls.first().write.fields, TagField::Genre | TagFields(TagField::Comment))
        << "what was edited, and what the row has otherwise";
}

TEST_F(TagSaverTest, EditsOfAFailedSaveGoWithTheNext)
{
    preferences.keepsOtherTagEntries.set(true);
    reader = [this](const QUrl&, const AudioTags&) { return TagTexts::read(a.tags()); };
    fill({a});
    files.fail();
    files.held.unread.year = QStringLiteral("1999");
    typeForAll({a}, {{&AudioTags::year, ""}});
    settle();
    files.before = {};
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({a}));
    settle();
    EXPECT_EQ(files.calls.last().write.fields, TagField::Genre | TagFields(TagField::Year));
}

TEST_F(TagSaverTest, AStopGivesUpWhatWaitsForTheAnswer)
{
    for (const QList<Track>& tracks : {QList<Track>{a}, QList<Track>{a, b}}) {
        fillEdited(tracks);
        files.held.hasPicture = true;
        saver().writeBatch(items(tracks));
        settle();
        ASSERT_TRUE(workspace().isAskingWhatSavesKeep());
        ASSERT_TRUE(store->board().first()) << "even where it is one file alone";
        store->board().first()->stop();
        settle();
        EXPECT_FALSE(workspace().isAskingWhatSavesKeep());
        EXPECT_TRUE(files.calls.isEmpty());
        EXPECT_EQ(statusText(), QStringLiteral("Запись остановлена, в файлы не записано: %1").arg(tracks.size()));
        EXPECT_TRUE(now(a).editedFields()) << "the row says that its file lacks the edit";
        EXPECT_FALSE(store->board().first());
    }
    saver().writeBatch(items({a}));
    settle();
    EXPECT_TRUE(workspace().isAskingWhatSavesKeep()) << "nobody has answered yet";
    saver().answerWhatSavesKeep(true);
    settle();
    EXPECT_EQ(files.calls.size(), 1);
}

// A session may hold guesses of a run that ended in the middle of an import, and fields that no read supplies.
TEST_F(TagSaverTest, ARowOfAnEarlierRunIsReadFirstAndKeepsWhatOnlyItKnows)
{
    const AudioTags kept = TagTexts::of({{&AudioTags::artist, "Guessed"}, {&AudioTags::year, "2020"}});
    Track row = Track::restored(a.id(), a.url(), kept);
    row.setIsFavorite(true);
    row.setIsInCoverWorkspace(true);
    filesHold({{&AudioTags::artist, "Real"}});
    fill({row});
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({row}));
    settle();
    ASSERT_EQ(files.calls.size(), 1);
    EXPECT_EQ(files.calls.first().write.tags.artist, QStringLiteral("Real"));
    EXPECT_EQ(files.calls.first().write.tags.year, QStringLiteral("2020"));
    EXPECT_EQ(files.calls.first().write.tags.genre, QStringLiteral("House"));
}

TEST_F(TagSaverTest, AnOlderValueOfARowThatLeftDoesNotFollowANewerOne)
{
    fill({a, b});
    files.before = [&](const FakeTagFiles::Call& call) {
        if (call.write.url == a.url())
            store->tagWriting().assignGenre(QStringLiteral("Techno"), ids({b})); // overtakes the batch
        else
            fill({now(a)});
    };
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({a, b}));
    settle();
    ASSERT_GE(files.calls.size(), 2);
    for (const FakeTagFiles::Call& call : std::as_const(files.calls).sliced(1))
        EXPECT_EQ(call.write.tags.genre, QStringLiteral("Techno"));
}

TEST_F(TagSaverTest, AReadThatBeganBeforeTheWriteBringsNothingOldBack)
{
    fill({a});
    store->tagWriting().assignGenre(QStringLiteral("House"), ids({a}));
    const Track::MetadataVersion began = now(a).metadataVersion();
    settle();
    Track row = now(a);
    EXPECT_FALSE(row.editedFields());
    row.apply(TagTexts::read(a.tags()), a.url(), began);
    EXPECT_EQ(row.tags().genre, QStringLiteral("House"));
}
