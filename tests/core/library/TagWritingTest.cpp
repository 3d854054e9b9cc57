#include "support/StoreFixture.h"

class TagWritingTest : public StoreFixture {
protected:
    static Track plainRow()
    {
        Track row = track(QStringLiteral("plain.mp3"));
        row.setTagSource(Track::TagSource::Read);
        return row;
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

    const Track one = read(QStringLiteral("one.mp3"));
    const Track two = TagTexts::on(read(QStringLiteral("two.mp3")), {{&AudioTags::genre, "House"}});
    const Track plain = plainRow();
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
    EXPECT_EQ(statusText(), QStringLiteral("Отменяем: Присвоить жанр"));
    EXPECT_TRUE(now(one).tags().genre.isEmpty());
    EXPECT_EQ(now(two).tags().genre, QStringLiteral("House"));
    EXPECT_TRUE(written().last().tags.genre.isEmpty()) << "the old value reaches the file again";
    history().redo();
    EXPECT_EQ(now(one).tags().genre, QStringLiteral("House"));
    settle();
}

TEST_F(TagWritingTest, SaysWhatItDid)
{
    using Tone = WorkspaceStatus::Tone;
    constexpr auto kGenre = &TagWriting::assignGenre;
    constexpr auto kComment = &TagWriting::assignComment;
    constexpr auto kAlbum = &TagWriting::assignAlbum;
    const struct {
        decltype(kGenre) assign;
        const char* value; ///< empty: a command of its own clears the field
        QList<Track> targets;
        const char* status;
        Tone tone;
        const char* undoName;
    } cases[] = {
        {kComment, "prime", {one}, "Комментарий «prime» присвоен: 1", Tone::Success, "Присвоить комментарий"},
        {kAlbum, "#WARM UP", {one, two}, "Альбом «#WARM UP» присвоен: 2", Tone::Success, "Изменить альбом"},
        {kAlbum, " ", {one}, "Альбом очищен: 1", Tone::Success, ""},
        {kGenre, "Pop", {plain}, "Выберите трек в «Избранном»", Tone::Warning, ""},
        {kGenre, "", {one, two}, "Жанр очищен: 1", Tone::Success, "Очистить жанр"},
        {kGenre, "", {one}, "У выбранных треков жанр уже пуст", Tone::Warning, ""},
        {kComment, "", {one}, "У выбранных треков комментарий уже пуст", Tone::Warning, ""},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.status);
        fill({});
        fill({one, two, plain});
        history().clear();
        files.calls.clear();
        if (*test.value)
            (writing().*test.assign)(QString::fromUtf8(test.value), ids(test.targets));
        else
            (writing().*
             (test.assign == kGenre ? &TagWriting::clearGenres : &TagWriting::clearComments))(ids(test.targets));
        const QString status = QString::fromUtf8(test.status);
        const bool isWritten = *test.undoName;
        EXPECT_EQ(statusText() == status, !isWritten) << "no success before the files hold it";
        EXPECT_EQ(written().isEmpty(), !isWritten) << "nothing changed, nothing written";
        EXPECT_EQ(statusText(), status);
        EXPECT_EQ(workspace().workspaceStatus()->tone, test.tone);
        EXPECT_EQ(history().undoActionName(), QString::fromUtf8(test.undoName));
    }
}

// A full disk, a file that another program holds: what the user gave stays in the row, and goes with the next try.
TEST_F(TagWritingTest, AnEditThatFailedIsWrittenWhenItIsGivenAgain)
{
    fill({one, two, plain});
    files.fail("disk full", one.url());
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
    const QList<Track> rows{one, two, read(QStringLiteral("three.mp3"))};
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

TEST_F(TagWritingTest, WhatCameToNoFileIsTakenBackWithoutAWrite)
{
    Track row = one;
    row.replaceTags(TagTexts::of({{&AudioTags::genre, "Old"}}, row.tags()));
    filesHold({{&AudioTags::genre, "Old"}});
    fill({row});
    files.fail();
    writing().assignGenre(QStringLiteral("House"), ids({row}));
    settle();
    EXPECT_EQ(now(row).editedFields(), TagFields(TagField::Genre));
    files.before = {};
    files.calls.clear();
    undo();
    EXPECT_TRUE(files.calls.isEmpty()) << "the file never held anything else";
    EXPECT_EQ(now(row).tags().genre, QStringLiteral("Old"));
    EXPECT_FALSE(now(row).editedFields());
}

TEST_F(TagWritingTest, AnAlbumLeavesAllElseInTheFileAlone)
{
    Track unread = favorite(QStringLiteral("Guess - Name.mp3"));
    filesHold({{&AudioTags::album, "Old"}});
    files.held.hasPicture = true;
    fill({one, unread});
    writing().assignAlbum(QStringLiteral("Set"), ids({one, unread}));
    settle();
    EXPECT_FALSE(workspace().isAskingWhatSavesKeep()) << "nothing is taken away";
    filesHold({{&AudioTags::album, "Set"}});
    undo();
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
    typeForAll({one, two, plain}, {{&AudioTags::album, " Set "}, {&AudioTags::genre, "House"}});
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
    preferences.keepsOtherTagEntriesAsked.set(true);
    files.held.isUnknown = true;
    typeForAll({two}, {{&AudioTags::year, ""}});
    EXPECT_TRUE(history().canUndo()) << "a year that was never read may stand in the file";
    EXPECT_TRUE(written().last().fields.testFlag(TagField::Year));
}

TEST_F(TagWritingTest, AnUndoLeavesLaterEditsOfOtherFieldsAlone)
{
    fill({one});
    typeForAll({one}, {{&AudioTags::album, "Set"}});
    type(one, {{&AudioTags::genre, "Pop"}});
    history().undo();
    EXPECT_TRUE(now(one).tags().album.isEmpty());
    EXPECT_EQ(now(one).tags().genre, QStringLiteral("Pop"));
    settle();
}

TEST_F(TagWritingTest, PutsOriginalTagsBackWhereTheyAreKept)
{
    fill({one, two, plain});
    files.originals = {one.url(), plain.url()};
    EXPECT_TRUE(store->originalTags().canRestore(ids({one, two})));
    EXPECT_FALSE(store->originalTags().canRestore(ids({two})));
    filesHold({{&AudioTags::artist, "as before"}});
    files.fail("changed by another program", plain.url());
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
        filesHold({{&AudioTags::artist, "original"}});
        store->originalTags().restore({inKeys.id()}); // as the key section offers it
        settle();
        EXPECT_EQ(now(two).tags().artist, QStringLiteral("original"));
        EXPECT_EQ(workspace().keyAnalysisTracks().at(0).tags().artist, QStringLiteral("original"));
        EXPECT_EQ(history().undoActionName(), QStringLiteral("Вернуть исходные теги"));
        reader = [](const QUrl&, const AudioTags&) { return LoadedTrackMetadata(); };
        undo();
        EXPECT_EQ(files.calls.last().name, isKept ? QStringLiteral("put back") : QStringLiteral("write"));
        EXPECT_EQ(files.calls.last().artwork, isKept ? QByteArray("former") : QByteArray());
        EXPECT_TRUE(now(two).tags().artist.isEmpty());
        filesHold({{&AudioTags::artist, "original"}});
        redo();
        EXPECT_EQ(now(two).tags().artist, QStringLiteral("original"));
    }
}

// What others wrote, and what no undo takes back, is no less the user's than what a restore took away.
TEST_F(TagWritingTest, AnUndoOfARestoreLeavesLaterChangesAlone)
{
    const struct {
        const char* name;
        std::function<void(const Track&)> change;
        bool isLeftAlone;
    } cases[] = {
        {"nothing", [](const Track&) {}, false},
        {"by another program", [&](const Track& row) { append(row.url(), "more"); }, true},
        {"no step",
         [&](const Track& row) {
             type(row, {{&AudioTags::genre, "House"}});
         },
         true},
        {"a step that was taken back",
         [&](const Track& row) {
             typeForAll({row}, {{&AudioTags::genre, "House"}});
             settle();
             history().undo();
         },
         false},
    };
    int number = 0;
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const Track row = read(file(QStringLiteral("%1.mp3").arg(++number)).toLocalFile());
        fill({row});
        files = {};
        history().clear();
        files.originals = {row.url()};
        files.presentTags = {{row.url(), "former"}};
        AudioTags inFile = row.tags();
        files.before = [&](const FakeTagFiles::Call& call) {
            append(call.write.url, "more");
            if (call.name == QLatin1StringView("write"))
                inFile = call.write.tags;
        };
        reader = [&](const QUrl&, const AudioTags&) { return TagTexts::read(inFile); };
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
    filesHold();
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
    filesHold({{&AudioTags::title, "Real"}, {&AudioTags::genre, "Old"}});
    files.held.unread.year = QStringLiteral("1999");
    for (const bool isWrittenBefore : {true, false}) {
        SCOPED_TRACE(isWrittenBefore);
        fill({});
        fill({unread});
        files.calls.clear();
        history().clear();
        writing().assignGenre(QStringLiteral("House"), ids({unread}));
        if (isWrittenBefore)
            settle();
        typeForAll({unread}, {{&AudioTags::year, "2020"}, {&AudioTags::title, "Typed"}});
        if (isWrittenBefore)
            settle();
        history().undo();
        undo();
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
    filesHold({{&AudioTags::genre, "Old"}});
    fill({unread});
    writing().clearGenres(ids({unread}));
    ASSERT_EQ(written().size(), 1);
    EXPECT_TRUE(written().first().tags.genre.isEmpty());
}

TEST_F(TagWritingTest, WritesInTheOrderOfTheList)
{
    QList<Track> rows;
    for (int number = 0; number < 30; ++number)
        rows.append(read(QStringLiteral("%1.mp3").arg(number)));
    fill(rows);
    writing().assignGenre(QStringLiteral("House"), ids(rows));
    settle();
    ASSERT_EQ(files.calls.size(), 30);
    for (int row = 0; row < 30; ++row)
        EXPECT_EQ(files.calls[row].write.url, rows[row].url());
}

TEST_F(TagWritingTest, AnEditDuringARestoreStays)
{
    fill({one});
    files.originals = {one.url()};
    filesHold({{&AudioTags::artist, "original"}});
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
    fill({two});
    files.fail();
    typeForAll({two}, {{&AudioTags::bpm, "120"}});
    settle();
    TagWriting::FieldTexts edit{TagField::Tempo, QStringLiteral("Записать темп"), {}, {}, {}, {}};
    edit.ended = [](const QSet<TrackID>&, const QSet<TrackID>&) {};
    edit.texts.insert(two.id(), QStringLiteral("128"));
    writing().saveTexts(edit);
    settle();
    EXPECT_EQ(now(two).tags().bpm, QStringLiteral("120"));
    EXPECT_EQ(now(two).editedFields(), TagFields(TagField::Tempo)) << "its file does not hold that either";
}
