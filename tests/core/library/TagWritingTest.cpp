#include "support/StoreFixture.h"

#include <QSignalSpy>

class TagWritingTest : public StoreFixture {
protected:
    ~TagWritingTest() override { clock.advance(async::seconds(60)); }

    static Track read(Track track)
    {
        track.setTagSource(Track::TagSource::Read);
        return track;
    }
    static Track withTag(Track track, QString AudioTags::*field, const QString& value)
    {
        AudioTags tags = track.tags();
        tags.*field = value;
        track.replaceTags(tags);
        return track;
    }
    TagWriting& writing() { return store->tagWriting(); }
    /// What has been written until now.
    QList<TagWrite> written()
    {
        settle();
        QList<TagWrite> writes;
        for (const FakeTagFiles::Call& call : std::as_const(files.calls))
            writes.append(call.write);
        return writes;
    }

    const Track one = read(favorite(QStringLiteral("one.mp3")));
    const Track two = withTag(read(favorite(QStringLiteral("two.mp3"))), &AudioTags::genre, QStringLiteral("House"));
    const Track plain = read(track(QStringLiteral("plain.mp3")));
};

TEST_F(TagWritingTest, AssignsTheTrimmedValueToFavorites)
{
    fill({one, two, plain});
    QSignalSpy changes(&workspace(), &Workspace::tracksChanged);
    QSignalSpy told(&notifications, &Notifications::velmoraTrackMetadataDidChange);
    writing().assignGenre(QStringLiteral("  House\n"), ids({one, two, plain}));

    EXPECT_EQ(now(one).tags().genre, QStringLiteral("House"));
    EXPECT_TRUE(now(plain).tags().genre.isEmpty()) << "no favourite";
    EXPECT_NE(now(one).metadataVersion().tags, one.metadataVersion().tags);
    EXPECT_EQ(now(two).metadataVersion().tags, two.metadataVersion().tags) << "had the value already";
    EXPECT_EQ(changes.size(), 1);
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.first().first().toString(), QStringLiteral("genre"));
    ASSERT_EQ(written().size(), 1);
    EXPECT_EQ(written().first().url, one.url());
    EXPECT_EQ(written().first().tags.genre, QStringLiteral("House"));
    EXPECT_EQ(statusText(), QStringLiteral("Жанр «House» присвоен: 2"));
    EXPECT_EQ(preferences.recentGenres.get(), QStringLiteral("House"));

    EXPECT_EQ(history().undoActionName(), QStringLiteral("Присвоить жанр"));
    history().undo();
    EXPECT_TRUE(now(one).tags().genre.isEmpty());
    EXPECT_EQ(now(two).tags().genre, QStringLiteral("House"));
    EXPECT_TRUE(written().last().tags.genre.isEmpty()) << "the old value reaches the file again";
    history().redo();
    EXPECT_EQ(now(one).tags().genre, QStringLiteral("House"));
    settle();
}

TEST_F(TagWritingTest, SaysWhatItDid)
{
    struct Case {
        const char* name;
        std::function<void(TagWriting&, const QSet<TrackID>&)> act;
        QList<Track> targets;
        QString status;
        WorkspaceStatus::Tone tone;
        QString undoName;
    };
    using Tone = WorkspaceStatus::Tone;
    const Case cases[] = {
        {"comment",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.assignComment(QStringLiteral("prime"), t); },
         {one},
         QStringLiteral("Комментарий «prime» присвоен: 1"),
         Tone::Success,
         QStringLiteral("Присвоить комментарий")},
        {"album",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.assignAlbum(QStringLiteral("#WARM UP"), t); },
         {one, two},
         QStringLiteral("Альбом «#WARM UP» присвоен: 2"),
         Tone::Success,
         QStringLiteral("Изменить альбом")},
        {"album away",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.assignAlbum(QStringLiteral(" "), t); },
         {one},
         QStringLiteral("Альбом очищен: 1"),
         Tone::Success,
         QString()},
        {"no favourite",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.assignGenre(QStringLiteral("Pop"), t); },
         {plain},
         QStringLiteral("Выберите трек в «Избранном»"),
         Tone::Warning,
         QString()},
        {"genre away",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.clearGenres(t); },
         {one, two},
         QStringLiteral("Жанр очищен: 1"),
         Tone::Success,
         QStringLiteral("Очистить жанр")},
        {"genre empty",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.clearGenres(t); },
         {one},
         QStringLiteral("У выбранных треков жанр уже пуст"),
         Tone::Warning,
         QString()},
        {"comment empty",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.clearComments(t); },
         {one},
         QStringLiteral("У выбранных треков комментарий уже пуст"),
         Tone::Warning,
         QString()},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        fill({});
        fill({one, two, plain});
        history().clear();
        files.calls.clear();
        test.act(writing(), ids(test.targets));
        const bool isWritten = !test.undoName.isEmpty();
        EXPECT_EQ(statusText() == test.status, !isWritten) << "no success before the files hold it";
        EXPECT_EQ(written().isEmpty(), !isWritten) << "nothing changed, nothing written";
        EXPECT_EQ(statusText(), test.status);
        EXPECT_EQ(workspace().workspaceStatus()->tone, test.tone);
        EXPECT_EQ(history().undoActionName(), test.undoName);
    }
}

// A full disk, a file that another program holds: what the user gave stays in the row, and goes with the next try.
TEST_F(TagWritingTest, AnEditThatFailedIsWrittenWhenItIsGivenAgain)
{
    fill({one, two, plain});
    files.before = [&](const FakeTagFiles::Call& call) {
        if (call.write.url == one.url())
            throw TagFileError(QStringLiteral("disk full"), false);
    };
    writing().assignGenre(QStringLiteral("Pop"), ids({one, two}));
    EXPECT_EQ(statusText(), QStringLiteral("Записываем жанр «Pop»: 2"));
    EXPECT_EQ(written().size(), 2);
    EXPECT_EQ(statusText(), QStringLiteral("Жанр «Pop» присвоен: 1"));
    EXPECT_EQ(now(one).tags().genre, QStringLiteral("Pop"));
    EXPECT_EQ(now(one).editedFields(), TagFields(TagField::Genre)) << "the row says that its file does not hold it";
    EXPECT_FALSE(now(two).editedFields());

    writing().assignGenre(QStringLiteral("Pop"), ids({one}));
    EXPECT_EQ(written().size(), 3) << "the same value is written again";
    EXPECT_EQ(statusText(), QStringLiteral("В файлы не записано: 1"));
    files.before = {};
    writing().saveFields(now(one).tags(), TagField::Genre, ids({one}));
    EXPECT_EQ(written().size(), 4);
    EXPECT_EQ(statusText(), QStringLiteral("Теги изменены: 1"));
    EXPECT_FALSE(now(one).editedFields());
    writing().assignGenre(QStringLiteral("Pop"), ids({one}));
    EXPECT_EQ(written().size(), 4) << "the file holds it";
    history().undo(); // a second try is no step of its own
    EXPECT_TRUE(now(one).tags().genre.isEmpty());
    EXPECT_FALSE(history().canUndo());
    settle();
}

TEST_F(TagWritingTest, AStoppedEditIsTakenBackWithoutAWriteWhereNothingWasWritten)
{
    const QList<Track> rows{one, two, read(favorite(QStringLiteral("three.mp3")))};
    fill(rows);
    files.before = [&](const FakeTagFiles::Call&) { writing().saver().cancelBatches(); };
    writing().assignComment(QStringLiteral("prime"), ids(rows));
    EXPECT_EQ(written().size(), 1);
    EXPECT_EQ(statusText(), QStringLiteral("Запись остановлена, в файлы не записано: 2"));
    files.before = {};
    history().undo();
    for (const TagWrite& write : written().sliced(1))
        EXPECT_TRUE(write.tags.comment.isEmpty());
    for (const Track& row : rows) {
        EXPECT_TRUE(now(row).tags().comment.isEmpty());
        EXPECT_FALSE(now(row).editedFields());
    }
}

TEST_F(TagWritingTest, AnAlbumLeavesAllElseInTheFileAlone)
{
    Track unread = favorite(QStringLiteral("Guess - Name.mp3"));
    reader = [](const QUrl&, const AudioTags& fallback) {
        LoadedTrackMetadata metadata;
        metadata.tags = fallback;
        metadata.tags.album = QStringLiteral("Old");
        return std::optional(metadata);
    };
    files.held.hasPicture = true;
    fill({one, unread});
    writing().assignAlbum(QStringLiteral("Set"), ids({one, unread}));
    settle();
    EXPECT_FALSE(workspace().isAskingWhatSavesKeep()) << "nothing is taken away";
    history().undo();
    settle();
    QStringList albums;
    for (const FakeTagFiles::Call& call : std::as_const(files.calls)) {
        EXPECT_EQ(call.name, QStringLiteral("clean"));
        EXPECT_EQ(call.fields, CleanerFields(CleanerField::Album));
        albums.append(call.album.value_or(QStringLiteral("none")));
    }
    EXPECT_EQ(albums, QStringList({QStringLiteral("Set"), QStringLiteral("Set"), QString(), QStringLiteral("Old")}));
    EXPECT_EQ(now(unread).tags().album, QStringLiteral("Old"));
}

TEST_F(TagWritingTest, SavesChosenFieldsOfAnySelectionAsOneStep)
{
    fill({one, two, plain});
    AudioTags typed;
    typed.album = QStringLiteral(" Set ");
    typed.genre = QStringLiteral("House");
    writing().saveFields(typed, TagField::Album | TagField::Genre, ids({one, two, plain}));
    EXPECT_EQ(now(plain).tags().album, QStringLiteral("Set")) << "trimmed, and no favourite is needed";
    EXPECT_EQ(now(plain).tags().title, plain.tags().title) << "not among the fields";
    EXPECT_EQ(written().size(), 3);
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Изменить теги"));
    history().undo();
    EXPECT_TRUE(now(one).tags().genre.isEmpty());
    EXPECT_EQ(now(two).tags().genre, QStringLiteral("House"));
    EXPECT_EQ(written().size(), 6);

    history().clear();
    writing().saveFields(two.tags(), TagField::Genre, ids({two}));
    EXPECT_FALSE(history().canUndo()) << "nothing differs";
    AudioTags none;
    preferences.keepsOtherTagEntriesAsked.set(true);
    files.held.isUnknown = true;
    writing().saveFields(none, TagField::Year, ids({two}));
    EXPECT_TRUE(history().canUndo()) << "a year that was never read may stand in the file";
    EXPECT_TRUE(written().last().fields.testFlag(TagField::Year));
}

TEST_F(TagWritingTest, AnUndoLeavesLaterEditsOfOtherFieldsAlone)
{
    fill({one});
    AudioTags typed;
    typed.album = QStringLiteral("Set");
    writing().saveFields(typed, TagField::Album, ids({one}));
    AudioTags later = now(one).tags();
    later.genre = QStringLiteral("Pop");
    writing().save(later, one.id());
    history().undo();
    EXPECT_TRUE(now(one).tags().album.isEmpty());
    EXPECT_EQ(now(one).tags().genre, QStringLiteral("Pop"));
    settle();
}

TEST_F(TagWritingTest, SetsTheKeyOfRowsByTheirFile)
{
    QList<Track> rows{one, two};
    TagWriting::synchronizeMusicalKeyTags({{QStringLiteral("/music/two.mp3"), QStringLiteral("8A")}}, rows);
    EXPECT_TRUE(rows.at(0).isSameValueAs(one));
    EXPECT_EQ(rows.at(1).tags().musicalKey, QStringLiteral("8A"));
    EXPECT_NE(rows.at(1).metadataVersion().tags, two.metadataVersion().tags);
}

TEST_F(TagWritingTest, PutsOriginalTagsBackWhereTheyAreKept)
{
    fill({one, two, plain});
    files.originals = {one.url(), plain.url()};
    EXPECT_TRUE(store->originalTags().canRestore(ids({one, two})));
    EXPECT_FALSE(store->originalTags().canRestore(ids({two})));
    reader = [](const QUrl&, const AudioTags& fallback) {
        LoadedTrackMetadata metadata;
        metadata.tags = fallback;
        metadata.tags.artist = QStringLiteral("as before");
        return std::optional(metadata);
    };
    files.before = [&](const FakeTagFiles::Call& call) {
        if (call.write.url == plain.url())
            throw TagFileError(QStringLiteral("changed by another program"), false);
    };
    store->originalTags().restore(ids({one, two, plain}));
    settle();
    EXPECT_EQ(now(one).tags().artist, QStringLiteral("as before"));
    EXPECT_EQ(now(plain).tags(), plain.tags());
    EXPECT_EQ(files.calls.size(), 2);
    EXPECT_EQ(statusText(), QStringLiteral("Исходные теги возвращены: 1"));
    EXPECT_EQ(workspace().lastError(), QStringLiteral("changed by another program"));

    files.calls.clear();
    history().clear();
    store->originalTags().restore(ids({two}));
    settle();
    EXPECT_TRUE(files.calls.isEmpty());
    EXPECT_EQ(statusText(), QStringLiteral("Исходных тегов этих файлов нет: Velmora их не меняла"));
    EXPECT_FALSE(history().canUndo());
}

TEST_F(TagWritingTest, TakesARestoreBack)
{
    for (const bool isKept : {true, false}) {
        SCOPED_TRACE(isKept ? "byte for byte" : "by fields");
        const Track inKeys = Track(freshID(), two.url());
        fill({});
        fill({two});
        workspace().setList(Track::MetadataDestination::MusicalKey, {inKeys});
        files = {};
        history().clear();
        files.originals = {two.url()};
        if (isKept)
            files.presentTags = {{two.url(), "former"}};
        QString artist = QStringLiteral("original");
        reader = [&artist](const QUrl&, const AudioTags& fallback) {
            LoadedTrackMetadata metadata;
            metadata.tags = fallback;
            metadata.tags.artist = artist;
            return std::optional(metadata);
        };
        store->originalTags().restore({inKeys.id()}); // as the key section offers it
        settle();
        EXPECT_EQ(now(two).tags().artist, QStringLiteral("original"));
        EXPECT_EQ(workspace().keyAnalysisTracks().at(0).tags().artist, QStringLiteral("original"));
        EXPECT_EQ(history().undoActionName(), QStringLiteral("Вернуть исходные теги"));
        artist.clear();
        history().undo();
        settle();
        EXPECT_EQ(files.calls.last().name, isKept ? QStringLiteral("put back") : QStringLiteral("write"));
        EXPECT_EQ(files.calls.last().artwork, isKept ? QByteArray("former") : QByteArray());
        EXPECT_TRUE(now(two).tags().artist.isEmpty());
        artist = QStringLiteral("original");
        history().redo();
        settle();
        EXPECT_EQ(now(two).tags().artist, QStringLiteral("original"));
    }
}

// What others wrote, and what no undo takes back, is no less the user's than what a restore took away.
TEST_F(TagWritingTest, AnUndoOfARestoreLeavesLaterChangesAlone)
{
    const auto append = [](const QUrl& url) {
        QFile changed(url.toLocalFile());
        ASSERT_TRUE(changed.open(QIODevice::Append));
        changed.write("more");
    };
    AudioTags house;
    house.genre = QStringLiteral("House");
    struct Case {
        const char* name;
        std::function<void(const Track&)> change;
        bool isLeftAlone;
    };
    const Case cases[] = {
        {"nothing", [](const Track&) {}, false},
        {"by another program", [&](const Track& row) { append(row.url()); }, true},
        {"no step", [&](const Track& row) { writing().save(house, row.id()); }, true},
        {"a step that was taken back",
         [&](const Track& row) {
             writing().saveFields(house, TagField::Genre, {row.id()});
             settle();
             history().undo();
         },
         false},
    };
    int number = 0;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        Track row = read(track(file(QStringLiteral("%1.mp3").arg(++number)).toLocalFile()));
        fill({row});
        files = {};
        history().clear();
        files.originals = {row.url()};
        files.presentTags = {{row.url(), "former"}};
        AudioTags inFile = row.tags();
        files.before = [&](const FakeTagFiles::Call& call) {
            append(call.write.url);
            if (call.name == QLatin1StringView("write"))
                inFile = call.write.tags;
        };
        reader = [&](const QUrl&, const AudioTags&) {
            LoadedTrackMetadata metadata;
            metadata.tags = inFile;
            return std::optional(metadata);
        };
        store->originalTags().restore({row.id()});
        settle();
        test.change(row);
        settle();
        history().undo();
        EXPECT_EQ(statusText(), QStringLiteral("Отменяем: Вернуть исходные теги"));
        settle();
        EXPECT_EQ(files.calls.last().name == QLatin1StringView("put back"), !test.isLeftAlone);
        EXPECT_EQ(statusText(),
                  test.isLeftAlone
                      ? QStringLiteral("Отменено: Вернуть исходные теги · изменены с тех пор и не тронуты: 1")
                      : QStringLiteral("Отменено: Вернуть исходные теги"));
        EXPECT_EQ(history().canRedo(), !test.isLeftAlone);
        EXPECT_FALSE(history().canUndo());
    }
}

TEST_F(TagWritingTest, ARestoreGivesUpAnEditThatNeverCameToTheFile)
{
    fill({one});
    files.originals = {one.url()};
    files.before = [](const FakeTagFiles::Call& call) {
        if (call.name == QLatin1StringView("write"))
            throw TagFileError(QStringLiteral("busy"), false);
    };
    writing().assignGenre(QStringLiteral("Pop"), ids({one}));
    settle();
    reader = [](const QUrl&, const AudioTags& fallback) {
        LoadedTrackMetadata metadata;
        metadata.tags = fallback;
        return std::optional(metadata);
    };
    store->originalTags().restore(ids({one}));
    settle();
    EXPECT_TRUE(now(one).tags().genre.isEmpty());
    EXPECT_FALSE(now(one).editedFields());
}

// What a row does not know, its edit covers unseen: undo brings back what the file held.
TEST_F(TagWritingTest, UndoBringsBackWhatTheFileHeld)
{
    preferences.keepsOtherTagEntries.set(true);
    Track unread = favorite(QStringLiteral("Guess - Name.mp3"));
    const auto inFile = [](const QUrl&, const AudioTags& fallback) {
        LoadedTrackMetadata metadata;
        metadata.tags = fallback;
        metadata.tags.title = QStringLiteral("Real");
        metadata.tags.genre = QStringLiteral("Old");
        return std::optional(metadata);
    };
    files.held.unread.year = QStringLiteral("1999");
    AudioTags typed;
    typed.year = QStringLiteral("2020");
    typed.title = QStringLiteral("Typed");
    for (const bool isWrittenBefore : {true, false}) {
        SCOPED_TRACE(isWrittenBefore);
        reader = inFile;
        fill({});
        fill({unread});
        files.calls.clear();
        history().clear();
        writing().assignGenre(QStringLiteral("House"), ids({unread}));
        if (isWrittenBefore)
            settle();
        writing().saveFields(typed, TagField::Year | TagField::Title, ids({unread}));
        if (isWrittenBefore)
            settle();
        history().undo();
        history().undo();
        settle();
        const Track after = now(unread);
        EXPECT_EQ(after.tags().genre, QStringLiteral("Old"));
        EXPECT_EQ(after.tags().title, QStringLiteral("Real"));
        EXPECT_FALSE(after.editedFields());
        ASSERT_EQ(files.calls.isEmpty(), !isWrittenBefore);
        if (files.calls.isEmpty())
            continue; // taken back before the file was touched
        const TagWrite& last = files.calls.last().write;
        EXPECT_EQ(last.tags.genre, QStringLiteral("Old"));
        EXPECT_EQ(last.tags.title, QStringLiteral("Real"));
        EXPECT_TRUE(last.tags.year == QStringLiteral("1999") || !last.fields.testFlag(TagField::Year));
    }
}

TEST_F(TagWritingTest, ClearsAGenreThatTheRowDoesNotKnowOf)
{
    const Track unread = favorite(QStringLiteral("Guess - Name.mp3"));
    reader = [](const QUrl&, const AudioTags& fallback) {
        LoadedTrackMetadata metadata;
        metadata.tags = fallback;
        metadata.tags.genre = QStringLiteral("Old");
        return std::optional(metadata);
    };
    fill({unread});
    writing().clearGenres(ids({unread}));
    ASSERT_EQ(written().size(), 1);
    EXPECT_TRUE(written().first().tags.genre.isEmpty());
}

TEST_F(TagWritingTest, WritesInTheOrderOfTheList)
{
    QList<Track> rows;
    QStringList names;
    for (int number = 0; number < 30; ++number) {
        rows.append(read(favorite(QStringLiteral("%1.mp3").arg(number))));
        names.append(rows.last().url().toString());
    }
    fill(rows);
    writing().assignGenre(QStringLiteral("House"), ids(rows));
    QStringList order;
    for (const TagWrite& write : written())
        order.append(write.url.toString());
    EXPECT_EQ(order, names);
}

TEST_F(TagWritingTest, AnEditDuringARestoreStays)
{
    fill({one});
    files.originals = {one.url()};
    reader = [](const QUrl&, const AudioTags& fallback) {
        LoadedTrackMetadata metadata;
        metadata.tags = fallback;
        metadata.tags.artist = QStringLiteral("original");
        return std::optional(metadata);
    };
    files.before = [&](const FakeTagFiles::Call& call) {
        if (call.name == QLatin1StringView("restore"))
            writing().assignGenre(QStringLiteral("Edit"), ids({one}));
    };
    store->originalTags().restore(ids({one}));
    EXPECT_EQ(written().last().tags.genre, QStringLiteral("Edit"));
    EXPECT_EQ(now(one).tags(), written().last().tags) << "row and file say the same";
}

// What stood there before is as it was.
TEST_F(TagWritingTest, ATextThatFailedLeavesAnEarlierEditMarked)
{
    const auto writeTempo = [&](const QString& tempo, const QList<Track>& rows) {
        TagWriting::FieldTexts edit{TagField::Tempo, QStringLiteral("Записать темп"), {}, {}, {}, {}};
        edit.ended = [](const QSet<TrackID>&, const QSet<TrackID>&) {};
        for (const Track& row : rows)
            edit.texts.insert(row.id(), tempo);
        writing().saveTexts(edit);
        settle();
    };
    fill({two});
    AudioTags tags = two.tags();
    files.before = [](const FakeTagFiles::Call&) { throw TagFileError(QStringLiteral("disk full"), false); };
    tags.bpm = QStringLiteral("120");
    writing().saveFields(tags, TagField::Tempo, ids({two}));
    settle();
    writeTempo(QStringLiteral("128"), {two});
    EXPECT_EQ(now(two).tags().bpm, QStringLiteral("120"));
    EXPECT_EQ(now(two).editedFields(), TagFields(TagField::Tempo)) << "its file does not hold that either";
}
