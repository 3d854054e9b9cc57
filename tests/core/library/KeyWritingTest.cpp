#include "core/library/tagwriting/ClosingQuestion.h"
#include "support/StoreFixture.h"

#include <QSignalSpy>

namespace {

using List = Track::MetadataDestination;

/// Rows of files "a" and "b" in the key section, of "a" in the playlist and the analysis list too.
class KeyWritingTest : public StoreFixture {
protected:
    KeyWritingTest()
    {
        reader = [this](const QUrl&, const AudioTags& fallback) {
            LoadedTrackMetadata metadata;
            metadata.tags = TagFieldSet::merged(inFile, fallback, TagFieldSet::kNeverRead);
            return unreadable ? std::nullopt : std::optional(metadata);
        };
        inFile.title = QStringLiteral("In the file");
        inFile.comment = QStringLiteral("Kept");
        put(List::Library, {read(QStringLiteral("a.mp3"))});
        put(List::Analysis, {read(QStringLiteral("a.mp3"))});
        put(List::MusicalKey, {read(QStringLiteral("a.mp3")), read(QStringLiteral("b.mp3"))});
        store->keys().setMusicalKeyAnalyses({{row(0).id(), {{2, MusicalKeyMode::Major}, 0.7, 0, {}}},
                                             {row(1).id(), {{9, MusicalKeyMode::Minor}, 0.4, 0, {}}}});
    }

    static Track read(const QString& path)
    {
        return TagTexts::on(StoreFixture::read(path), {{&AudioTags::title, "Older"}});
    }
    void put(List list, const QList<Track>& rows) { workspace().setList(list, rows); }
    Track row(int place) { return workspace().keyAnalysisTracks().at(place); }
    QString keyIn(List list, int place = 0) { return workspace().list(list).at(place).tags().musicalKey; }
    void write()
    {
        store->keys().writeAnalyzedMusicalKeys(ids(workspace().keyAnalysisTracks().rows()));
        settle();
    }

    AudioTags inFile;
    bool unreadable = false;
};

TEST_F(KeyWritingTest, changesTheKeyAloneInEveryRowOfTheFile)
{
    write();
    ASSERT_EQ(files.calls.size(), 2);
    AudioTags expected = inFile; // not the older values of the rows
    expected.musicalKey = QStringLiteral("10B");
    EXPECT_EQ(files.calls[0].write.tags, expected);
    EXPECT_TRUE(files.calls[0].write.keepsOthers);
    EXPECT_FALSE(workspace().isAskingWhatSavesKeep());
    EXPECT_EQ(files.calls[1].write.tags.musicalKey, QStringLiteral("8A"));
    for (const List list : {List::Library, List::Analysis, List::MusicalKey})
        EXPECT_EQ(keyIn(list), QStringLiteral("10B")) << static_cast<int>(list);
    EXPECT_EQ(workspace().tracks().at(0).tags().title, QStringLiteral("Older"));
    EXPECT_EQ(statusText(), QStringLiteral("Тональность сохранена: 2"));
}

TEST_F(KeyWritingTest, tellsWhatWasLeftOut)
{
    files.fail("full", row(0).url());
    write();
    EXPECT_EQ(statusText(), QStringLiteral("Тональность сохранена: 1 · пропущено: 1"));
    for (const List list : {List::Library, List::Analysis, List::MusicalKey})
        EXPECT_EQ(keyIn(list), QString()) << "what is not in the file does not stand in the tag";
    EXPECT_EQ(keyIn(List::MusicalKey, 1), QStringLiteral("8A"));
    EXPECT_TRUE(store->keys().musicalKeyAnalyses().contains(row(0).id())) << "it is determined still";
    files.before = {};
    unreadable = true; // its other tags are not known, so it is left alone
    write();
    EXPECT_EQ(statusText(), QStringLiteral("Тональность сохранена: 0 · пропущено: 2"));
}

TEST_F(KeyWritingTest, aKeyTypedInTheMainListStays)
{
    const auto typeKey = [this](const char* key) { type(workspace().tracks().at(0), {{&AudioTags::musicalKey, key}}); };
    files.fail("full");
    typeKey("1A");
    settle();
    write();
    EXPECT_EQ(keyIn(List::Library), QStringLiteral("1A"));
    EXPECT_EQ(workspace().tracks().at(0).editedFields(), TagFields(TagField::MusicalKey))
        << "it did not come to its file before either";

    put(List::Library, {read(QStringLiteral("b.mp3"))});
    files.calls.clear();
    bool isTyped = false;
    files.before = [&](const FakeTagFiles::Call&) {
        if (!std::exchange(isTyped, true))
            typeKey("7B"); // while the first of the two files is written
    };
    write();
    EXPECT_EQ(keyIn(List::Library), QStringLiteral("7B"));
    EXPECT_EQ(files.calls.last().write.url, row(1).url());
    EXPECT_EQ(files.calls.last().write.tags.musicalKey, QStringLiteral("7B")) << "the older value does not follow";
}

TEST_F(KeyWritingTest, isOneStepThatLeavesKeysAloneThatWereChangedSince)
{
    inFile.musicalKey = QStringLiteral("Am"); // which no row knows of
    write();
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Записать тональность"));
    inFile.musicalKey = QStringLiteral("8A"); // of b
    type(workspace().tracks().at(0), {{&AudioTags::musicalKey, "1A"}});
    settle();
    files.calls.clear();
    history().undo();
    EXPECT_EQ(statusText(), QStringLiteral("Отменяем: Записать тональность"));
    settle();
    EXPECT_EQ(statusText(), QStringLiteral("Отменено: Записать тональность · изменены с тех пор и не тронуты: 1"));
    ASSERT_EQ(files.calls.size(), 1);
    EXPECT_EQ(files.calls[0].write.url, row(1).url());
    EXPECT_EQ(files.calls[0].write.tags.musicalKey, QStringLiteral("Am"));
    EXPECT_EQ(files.calls[0].write.fields, TagFields(TagField::MusicalKey));
    EXPECT_EQ(keyIn(List::Library), QStringLiteral("1A"));
    EXPECT_EQ(keyIn(List::MusicalKey, 1), QStringLiteral("Am"));
    inFile.musicalKey = QStringLiteral("Am");
    redo();
    EXPECT_EQ(files.calls.last().write.tags.musicalKey, QStringLiteral("8A"));
    EXPECT_EQ(keyIn(List::MusicalKey, 1), QStringLiteral("8A"));
}

TEST_F(KeyWritingTest, takenBackBeforeItsEndWaitsForThat)
{
    store->favorites().removeFromFavorites(ids(workspace().tracks().rows()), false);
    async::MainQueue::drain();
    files.before = [&](const FakeTagFiles::Call& call) {
        inFile.musicalKey = call.write.tags.musicalKey;
        if (files.calls.size() == 1)
            history().undo();
    };
    write();
    ASSERT_EQ(files.calls.size(), 4);
    for (const List list : {List::Library, List::MusicalKey})
        EXPECT_EQ(keyIn(list), QString());
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Изменить избранное"));
}

TEST_F(KeyWritingTest, aKeyThatIsLostHoldsTheEndBack)
{
    files.fail();
    QSignalSpy wanted(&store->closingQuestion(), &ClosingQuestion::closeWanted);
    store->keys().writeAnalyzedMusicalKeys(ids({row(0)}));
    ASSERT_FALSE(store->closingQuestion().mayClose());
    store->closingQuestion().answer(ClosingQuestion::Answer::Finish);
    settle();
    EXPECT_TRUE(wanted.isEmpty());
}

TEST_F(KeyWritingTest, saysWhenThereIsNothingToWrite)
{
    store->keys().setMusicalKeyAnalyses({});
    write();
    EXPECT_EQ(statusText(), QStringLiteral("Нет результатов для записи"));
    EXPECT_TRUE(files.calls.isEmpty());
}

TEST_F(KeyWritingTest, rowsThatWereNeverReadLearnTheirOwnTags)
{
    const Track session = TagTexts::on(
        track(QStringLiteral("a.mp3")),
        {{&AudioTags::title, ""}, {&AudioTags::year, "1999"}, {&AudioTags::albumArtist, "From an earlier run"}});
    put(List::Library, {session});
    Track unread = row(1);
    unread.setTagSource(Track::TagSource::Guessed);
    put(List::MusicalKey, {row(0), unread});
    write();
    EXPECT_EQ(keyIn(List::Library), QStringLiteral("10B"));
    EXPECT_EQ(workspace().tracks().at(0).tags().title, inFile.title);
    // Its read, which is on its way, shall not find a newer stamp.
    EXPECT_EQ(row(1).metadataVersion().tags, unread.metadataVersion().tags);
    ASSERT_EQ(files.calls.size(), 2);
    EXPECT_EQ(files.calls[1].write.tags.title, inFile.title);
    for (const FakeTagFiles::Call& call : files.calls) {
        EXPECT_TRUE(call.write.keepsOthers);
        EXPECT_EQ(call.write.fields, TagFields(TagField::MusicalKey)) << "what a session remembers is no edit";
    }

    // A later edit of the row is written in full.
    type(session, {{&AudioTags::genre, "House"}});
    settle();
    ASSERT_EQ(files.calls.size(), 3);
    EXPECT_TRUE(files.calls[2].write.fields.testFlag(TagField::Year));
}

} // namespace
