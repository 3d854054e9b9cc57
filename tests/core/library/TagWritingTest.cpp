#include "support/StoreFixture.h"

#include <QSignalSpy>

class TagWritingTest : public StoreFixture {
protected:
    ~TagWritingTest() override { clock.advance(async::seconds(60)); }

    static Track withTag(Track track, QString AudioTags::*field, const QString& value)
    {
        AudioTags tags = track.tags();
        tags.*field = value;
        track.replaceTags(tags);
        return track;
    }
    TagWriting& writing() { return store->tagWriting(); }

    const Track one = favorite(QStringLiteral("one.mp3"));
    const Track two = withTag(favorite(QStringLiteral("two.mp3")), &AudioTags::genre, QStringLiteral("House"));
    const Track plain = track(QStringLiteral("plain.mp3"));
};

TEST_F(TagWritingTest, AssignsTheTrimmedValueToFavorites)
{
    fill({one, two, plain});
    QSignalSpy changes(&workspace(), &Workspace::tracksChanged);
    QSignalSpy told(&notifications, &Notifications::velmoraTrackMetadataDidChange);
    writing().assignGenre(QStringLiteral("  House\n"), ids({one, two, plain}), &undo);

    EXPECT_EQ(now(one).tags().genre, QStringLiteral("House"));
    EXPECT_TRUE(now(plain).tags().genre.isEmpty()) << "no favourite";
    EXPECT_NE(now(one).metadataVersion().tags, one.metadataVersion().tags);
    EXPECT_EQ(now(two).metadataVersion().tags, two.metadataVersion().tags) << "had the value already";
    EXPECT_EQ(changes.size(), 1);
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.first().first().toString(), QStringLiteral("genre"));
    ASSERT_EQ(writer.batches.size(), 1);
    ASSERT_EQ(writer.batches.first().size(), 1);
    EXPECT_EQ(writer.batches.first().first().url, one.url());
    EXPECT_EQ(writer.batches.first().first().tags.genre, QStringLiteral("House"));
    EXPECT_EQ(statusText(), QStringLiteral("Жанр «House» присвоен: 2"));
    EXPECT_EQ(preferences.recentGenres.get(), QStringLiteral("House"));

    EXPECT_EQ(undo.undoActionName(), QStringLiteral("Присвоить жанр"));
    undo.undo();
    EXPECT_TRUE(now(one).tags().genre.isEmpty());
    EXPECT_EQ(now(two).tags().genre, QStringLiteral("House"));
    EXPECT_TRUE(writer.batches.last().first().tags.genre.isEmpty()) << "the old value reaches the file again";
    undo.redo();
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
         [&](TagWriting& w, const QSet<TrackID>& t) { w.assignComment(QStringLiteral("prime"), t, &undo); },
         {one},
         QStringLiteral("Комментарий «prime» присвоен: 1"),
         Tone::Success,
         QStringLiteral("Присвоить комментарий")},
        {"album",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.assignAlbum(QStringLiteral("#WARM UP"), t, &undo); },
         {one, two},
         QStringLiteral("Альбом «#WARM UP» присвоен: 2"),
         Tone::Success,
         QStringLiteral("Изменить альбом")},
        {"album away",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.assignAlbum(QStringLiteral(" "), t, &undo); },
         {one},
         QStringLiteral("Альбом очищен: 1"),
         Tone::Success,
         QString()},
        {"no favourite",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.assignGenre(QStringLiteral("Pop"), t, &undo); },
         {plain},
         QStringLiteral("Выберите трек в «Избранном»"),
         Tone::Warning,
         QString()},
        {"genre away",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.clearGenres(t, &undo); },
         {one, two},
         QStringLiteral("Жанр очищен: 1"),
         Tone::Success,
         QStringLiteral("Очистить жанр")},
        {"genre empty",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.clearGenres(t, &undo); },
         {one},
         QStringLiteral("У выбранных треков жанр уже пуст"),
         Tone::Warning,
         QString()},
        {"comment empty",
         [&](TagWriting& w, const QSet<TrackID>& t) { w.clearComments(t, &undo); },
         {one},
         QStringLiteral("У выбранных треков комментарий уже пуст"),
         Tone::Warning,
         QString()},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        fill({});
        fill({one, two, plain});
        undo.clear();
        writer.batches.clear();
        test.act(writing(), ids(test.targets));
        EXPECT_EQ(statusText(), test.status);
        EXPECT_EQ(workspace().workspaceStatus()->tone, test.tone);
        EXPECT_EQ(undo.undoActionName(), test.undoName);
        EXPECT_EQ(writer.batches.isEmpty(), test.undoName.isEmpty()) << "nothing changed, nothing written";
        settle();
    }
}

TEST_F(TagWritingTest, SaysSoWhileEditsStayInTheList)
{
    NoTagWriter none;
    LibraryServices services{clock, executor, preferences, notifications, none, {}, {}, {}, {}, {}};
    services.readMetadata = [](const QUrl&, const AudioTags&) { return std::nullopt; };
    LibraryStore listOnly(services);
    listOnly.workspace().setTracks({one});
    listOnly.tagWriting().assignGenre(QStringLiteral("Pop"), ids({one}), nullptr);
    EXPECT_EQ(listOnly.workspace().tracks().find(one.id())->tags().genre, QStringLiteral("Pop"));
    EXPECT_TRUE(listOnly.workspace().workspaceStatus()->message.contains(QStringLiteral("только в списке")));
    EXPECT_EQ(listOnly.workspace().workspaceStatus()->tone, WorkspaceStatus::Tone::Warning);
}
