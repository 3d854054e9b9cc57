#include "support/FileTimes.h"
#include "support/Machine.h"
#include "support/StoreFixture.h"

#include <sys/stat.h>

class ImportsTest : public StoreFixture {
protected:
    Imports& imports() { return store->imports(); }
    QUrl root() const { return FileURL::fromPath(folder.path()); }
    QStringList names(const TrackList& list) const
    {
        QStringList result;
        for (const Track& track : list)
            result.append(FileURL::lastPathComponent(track.url()));
        return result;
    }
};

TEST_F(ImportsTest, FilesBecomeRowsAtOnceInTheOrderOfTheirPaths)
{
    file(QStringLiteral("b/10.mp3"));
    file(QStringLiteral("b/2.FLAC"));
    file(QStringLiteral("a/.hidden.wav"));
    file(QStringLiteral("a/cover.jpg"));
    file(QStringLiteral("a/deep/er/124 - 8A - Artist - Title.m4a"));
    QList<TrackID> answered;
    imports().importURLs({root()}, [&](const Imports::Outcome& outcome) { answered = outcome.ids; });
    EXPECT_TRUE(workspace().tracks().isEmpty()) << "folders are walked in the background";
    executor.runOne();

    EXPECT_EQ(names(workspace().tracks()),
              QStringList({QStringLiteral(".hidden.wav"), QStringLiteral("124 - 8A - Artist - Title.m4a"),
                           QStringLiteral("2.FLAC"), QStringLiteral("10.mp3")}));
    const Track titled = workspace().tracks().at(1);
    EXPECT_EQ(titled.tags().artist, QStringLiteral("Artist"));
    EXPECT_EQ(titled.tags().title, QStringLiteral("Title"));
    EXPECT_EQ(titled.format(), QStringLiteral("M4A"));
    EXPECT_TRUE(titled.isInPlaylist());
    EXPECT_FALSE(titled.isInCoverWorkspace());
    EXPECT_EQ(statusText(), QStringLiteral("Добавлено в плейлист: 4"));
    EXPECT_EQ(answered.size(), 4);
    EXPECT_EQ(waveformURLs.size(), 4);
    settle();
    EXPECT_EQ(readURLs.size(), 4);
}

TEST_F(ImportsTest, AFileThatComesFromElsewhereBetweenTheSlicesGetsNoSecondRow)
{
    for (int number = 0; number < 250; ++number)
        file(QStringLiteral("%1.mp3").arg(number, 3, 10, QLatin1Char('0')));
    const Track late = track(folder.filePath(QStringLiteral("249.mp3")));
    fill({late});
    store->removal().removeTracksFromPlaylist(ids({late}));
    QList<TrackID> answered;
    imports().importURLs({root()}, [&](const Imports::Outcome& outcome) { answered = outcome.ids; });
    executor.runOne();
    ASSERT_EQ(workspace().tracks().size(), 200);
    undo();
    EXPECT_EQ(workspace().tracks().size(), 250);
    EXPECT_EQ(answered.size(), 250);
    EXPECT_TRUE(workspace().tracks().contains(late.id()));
    EXPECT_EQ(statusText(), QStringLiteral("Добавлено в плейлист: 249"));

    imports().importForAnalysis({root()});
    executor.runOne();
    ASSERT_EQ(workspace().analysisTracks().size(), 200);
    store->sending().addTracksToAnalysis(ids({late}));
    settle();
    EXPECT_EQ(workspace().analysisTracks().size(), 250);
    EXPECT_TRUE(tempoAsked.contains(late.id()));
}

TEST_F(ImportsTest, AKnownFileNeverGetsASecondRow)
{
    file(QStringLiteral("a.mp3"));
    const QUrl b = file(QStringLiteral("b.mp3"));
    imports().importURLs({b, root(), b});
    settle();
    ASSERT_EQ(workspace().tracks().size(), 2);
    workspace().setWorkspaceStatus(std::nullopt);
    tempoAsked.clear();
    QList<TrackID> answered;
    imports().importURLs({root()}, [&](const Imports::Outcome& outcome) { answered = outcome.ids; });
    settle();
    EXPECT_EQ(workspace().tracks().size(), 2);
    EXPECT_FALSE(workspace().workspaceStatus()) << "nothing was added, nothing is said";
    EXPECT_EQ(answered.size(), 2);
    EXPECT_EQ(tempoAsked.size(), 2) << "tempo is asked for again";

    Track out = workspace().tracks().at(0);
    out.setIsInPlaylist(false);
    fill({out, workspace().tracks().at(1)});
    file(QStringLiteral("c.mp3"));
    imports().importURLs({root()}, [&](const Imports::Outcome& outcome) { answered = outcome.ids; });
    settle();
    EXPECT_TRUE(now(out).isInPlaylist());
    ASSERT_EQ(answered.size(), 3);
    EXPECT_EQ(answered.first(), out.id()) << "known ones first";
}

TEST_F(ImportsTest, ManyFilesJoinInSlicesAndImportsNeverOverlap)
{
    for (int i = 0; i < 450; ++i)
        file(QStringLiteral("many/%1.mp3").arg(i));
    const QUrl late = file(QStringLiteral("late/x.mp3"));
    QStringList order;
    imports().importURLs(
        {FileURL::fromPath(folder.filePath(QStringLiteral("many")))},
        [&](const Imports::Outcome& outcome) { order.append(QStringLiteral("many %1").arg(outcome.ids.size())); });
    imports().importURLs({late}, [&](const Imports::Outcome& outcome) {
        order.append(QStringLiteral("late %1").arg(outcome.ids.size()));
    });
    QList<int> sizes;
    QObject::connect(&workspace(), &Workspace::tracksChanged, &workspace(), [&](const ListChange& change) {
        if (change.kind == ListChange::Kind::Appended)
            sizes.append(workspace().tracks().size());
    });
    executor.runOne();
    executor.runOne();
    EXPECT_EQ(sizes, QList<int>({200}));
    clock.advance(async::seconds(0.015));
    EXPECT_EQ(sizes, QList<int>({200}));
    settle();
    EXPECT_EQ(sizes, QList<int>({200, 400, 450, 451}));
    EXPECT_EQ(order, QStringList({QStringLiteral("many 450"), QStringLiteral("late 1")}));
}

TEST_F(ImportsTest, WhatCannotBeTakenIsCounted)
{
    file(QStringLiteral("good.mp3"));
    ASSERT_EQ(mkfifo(QFile::encodeName(folder.filePath(QStringLiteral("pipe.mp3"))).constData(), 0600), 0);
    writeFile(folder.filePath(QStringLiteral("._good.mp3")), QByteArray::fromHex("0005160700020000"));
    imports().importURLs({root()});
    settle();
    EXPECT_EQ(workspace().tracks().size(), 1);
    EXPECT_EQ(statusText(), QStringLiteral("Добавлено в плейлист: 1 · Не удалось взять: 1"))
        << "the pipe; a companion of another system is no music that anybody misses";
    fill({});
    imports().importForFavorites({root()});
    settle();
    EXPECT_EQ(statusText(), QStringLiteral("Добавлено в избранное: 1 · Не удалось взять: 1"));
    imports().importForFavorites({root()});
    settle();
    EXPECT_EQ(statusText(), QStringLiteral("Не удалось взять: 1")) << "none joined the second time";
}

TEST_F(ImportsTest, WhatInterruptedWritesLeftIsCountedAndNeverTaken)
{
    const QUrl good = file(QStringLiteral("good.mp3"));
    const QUrl young = file(QStringLiteral("young/.velmora-01234567-89ab-cdef-0123-456789abcdef.mp3"));
    const QUrl stray = file(QStringLiteral("old/.velmora-01234567-89ab-cdef-0123-456789abcdef.mp3"));
    setModified(stray.toLocalFile(), QDateTime::currentDateTime().addSecs(-3700));
    EXPECT_EQ(AudioFileList::expand({root(), stray, young}, AudioFileList::isPlayable, {}).strayTemporaries,
              QList<QUrl>{stray})
        << "each once, and none that may be written at this moment";

    const QString strays = QStringLiteral("Найдены незавершённые временные файлы: 1");
    const struct {
        const char* section;
        std::function<void()> import;
        QString status;
    } rows[] = {
        {"playlist", [&] { imports().importURLs({root()}); }, QStringLiteral("Добавлено в плейлист: 1 · ") + strays},
        {"again", [&] { imports().importURLs({root()}); }, strays},
        {"favorites", [&] { imports().importForFavorites({root()}); },
         QStringLiteral("Добавлено в избранное: 1 · ") + strays},
        {"covers", [&] { imports().importForCovers({stray}); }, strays},
        {"analysis", [&] { imports().importForAnalysis({root()}); },
         QStringLiteral("Добавлено в анализ: 1 · ") + strays},
        {"keys", [&] { imports().importForMusicalKeyAnalysis({root()}); },
         QStringLiteral("Добавлено в тональность: 1 · ") + strays},
        {"duplicates", [&] { imports().importDuplicateSearchURLs({root()}); }, strays},
        {"converter", [&] { imports().importForConversion({root()}); }, strays},
    };
    for (const auto& row : rows) {
        workspace().setWorkspaceStatus(std::nullopt);
        row.import();
        settle();
        EXPECT_EQ(statusText(), row.status) << row.section;
    }
    EXPECT_EQ(names(workspace().tracks()), QStringList{QStringLiteral("good.mp3")});
}

TEST_F(ImportsTest, AnEmptyPlaylistForgetsTheScrollPosition)
{
    preferences.playlistScrollOffset.set(120);
    preferences.playlistScrollAnchorTrackID.set(QStringLiteral("x"));
    imports().importURLs({file(QStringLiteral("a.mp3"))});
    settle();
    EXPECT_FALSE(preferences.playlistScrollOffset.isSet());
    EXPECT_FALSE(preferences.playlistScrollAnchorTrackID.isSet());
    preferences.playlistScrollOffset.set(120);
    imports().importURLs({file(QStringLiteral("b.mp3"))});
    settle();
    EXPECT_TRUE(preferences.playlistScrollOffset.isSet()) << "a filled playlist keeps it";
}

TEST_F(ImportsTest, EverySectionTakesFilesIn)
{
    file(QStringLiteral("a.mp3"));
    file(QStringLiteral("b.ogg"));
    file(QStringLiteral("c.flac"));
    using Destination = Track::MetadataDestination;

    imports().importForFavorites({root()});
    settle();
    EXPECT_EQ(store->order().favoriteTracks().size(), 2);
    EXPECT_EQ(store->order().playlistTracks().size(), 2);
    EXPECT_TRUE(history().canUndo());

    fill({});
    imports().importForCovers({root()});
    settle();
    EXPECT_EQ(store->order().coverTracks().size(), 2);
    EXPECT_TRUE(store->order().playlistTracks().isEmpty());
    EXPECT_EQ(statusText(), QStringLiteral("Добавлено в обложки: 2"));

    for (const int round : {1, 2}) {
        imports().importForAnalysis({root()});
        imports().importForMusicalKeyAnalysis({root()});
        imports().importDuplicateSearchURLs({root()});
        imports().importForConversion({root()});
        settle();
        for (const Destination list : {Destination::Analysis, Destination::MusicalKey, Destination::Duplicates})
            EXPECT_EQ(workspace().list(list).size(), 2) << round << ": no file twice in one list";
        EXPECT_EQ(workspace().conversionItems().size(), 3) << "Ogg as well";
        EXPECT_EQ(qualityAsked.size(), 2);
    }
    EXPECT_EQ(names(workspace().analysisTracks()), QStringList({QStringLiteral("a.mp3"), QStringLiteral("c.flac")}));
    EXPECT_EQ(workspace().duplicateSearchRoots(), QList<QUrl>({root()}));
}

TEST_F(ImportsTest, OneFileDroppedOnTwoSectionsAtOnceIsOneRow)
{
    for (int i = 0; i < 250; ++i)
        file(QStringLiteral("%1.mp3").arg(i));
    imports().importURLs({root()});
    imports().importForCovers({root()});
    settle();
    EXPECT_EQ(workspace().tracks().size(), 250);
    EXPECT_EQ(store->order().coverTracks().size(), 250);
    EXPECT_EQ(store->order().playlistTracks().size(), 250);
}
