#include "support/Pictures.h"
#include "support/StoreFixture.h"

#include "core/library/artwork/ArtworkImage.h"

class ArtworkTest : public StoreFixture {
protected:
    static QList<Track> tracks(int count)
    {
        QList<Track> result;
        for (int number = 1; number <= count; ++number)
            result.append(read(QStringLiteral("%1.mp3").arg(number)));
        return result;
    }
    static QByteArray picture(const char* format, QSize size = {40, 20})
    {
        return Pictures::plain(size, 0xFF008080, format);
    }
    void assign(const QList<Track>& rows)
    {
        artwork().assignArtwork(png, ids(rows));
        settle();
    }
    Artwork& artwork() { return store->artwork(); }

    const QByteArray png = picture("PNG");
};

TEST_F(ArtworkTest, NormalizesPictures)
{
    EXPECT_EQ(ArtworkImage::normalizedArtworkData(png), png) << "byte for byte";
    QByteArray huge = png;
    huge.resize(ArtworkImage::kMaximumBytes + 1);
    const std::tuple<const char*, QByteArray, bool> cases[] = {
        {"JPEG", picture("JPEG"), true},          {"BMP", picture("BMP"), true},
        {"no picture", "hello", false},           {"nothing", QByteArray(), false},
        {"cut", picture("BMP").first(40), false}, {"larger than any cover", huge, false},
    };
    for (const auto& [name, bytes, isTaken] : cases) {
        SCOPED_TRACE(name);
        const std::optional<QByteArray> result = ArtworkImage::normalizedArtworkData(bytes);
        ASSERT_EQ(result.has_value(), isTaken);
        if (isTaken) {
            EXPECT_TRUE(result->startsWith(QByteArrayView("\xff\xd8\xff"))) << "JPEG";
            EXPECT_EQ(QImage::fromData(*result).size(), QSize(40, 20));
        }
    }
}

// Cameras make pictures of 36 megapixels, which take more memory than the toolkit allows by itself.
TEST_F(ArtworkTest, TakesLargePicturesUpToTheLimit)
{
    ArtworkImage::allowLargePictures();
    const QByteArray photograph = picture("JPEG", {7360, 4912});
    const std::optional<QByteArray> taken = ArtworkImage::normalizedArtworkData(photograph);
    ASSERT_TRUE(taken);
    EXPECT_EQ(QImage::fromData(*taken).size(), QSize(7360, 4912));
    QImage tooLarge(10001, 10000, QImage::Format_Mono); // little memory, many pixels
    tooLarge.fill(0);
    const QByteArray bytes = Pictures::encoded(tooLarge, "PNG");
    ASSERT_LT(bytes.size(), ArtworkImage::kMaximumBytes);
    EXPECT_FALSE(ArtworkImage::normalizedArtworkData(bytes)) << "a PNG is not decoded, but it is measured";
    EXPECT_TRUE(ArtworkImage::decoded(bytes).isNull());
}

TEST_F(ArtworkTest, PutsWhatIsTransparentOnWhite)
{
    const std::optional<QByteArray> jpeg =
        ArtworkImage::normalizedArtworkData(Pictures::plain({8, 8}, 0x00000000, "XPM"));
    ASSERT_TRUE(jpeg);
    EXPECT_GT(qGray(QImage::fromData(*jpeg).pixel(4, 4)), 250);
}

TEST_F(ArtworkTest, WritesThePictureAndShowsIt)
{
    const QList<Track> rows = tracks(2);
    fill(rows);
    QSignalSpy changes(&workspace(), &Workspace::tracksChanged);
    QSignalSpy told(&notifications, &Notifications::velmoraTrackMetadataDidChange);
    artwork().assignArtwork(png, ids(rows));
    executor.runOne(); // the picture is prepared
    async::MainQueue::drain();
    EXPECT_EQ(workspace().artworkWritingIDs(), ids(rows));
    EXPECT_EQ(statusText(), QStringLiteral("Сохраняем обложку: 2"));
    settle();
    ASSERT_EQ(files.calls.size(), 2);
    EXPECT_EQ(files.calls.first().artwork, png);
    EXPECT_EQ(files.calls.first().write.url, rows.first().url()) << "in the list's order";
    EXPECT_EQ(now(rows.first()).artworkData(), ArtworkData::intern(png));
    EXPECT_EQ(now(rows.first()).artwork().size(), QSize(40, 20));
    EXPECT_NE(now(rows.first()).metadataVersion().artwork, rows.first().metadataVersion().artwork);
    EXPECT_EQ(changes.size(), 1);
    EXPECT_EQ(told.last().first().toString(), QStringLiteral("artworkBatch"));
    EXPECT_TRUE(workspace().artworkWritingIDs().isEmpty());
    EXPECT_EQ(statusText(), QStringLiteral("Обложка сохранена: 2"));
}

TEST_F(ArtworkTest, RefusesARequestThatMeetsOneUnderWay)
{
    const QList<Track> rows = tracks(3);
    fill(rows);
    artwork().assignArtwork(png, ids(rows.first(2)));
    executor.runOne();
    async::MainQueue::drain();
    artwork().assignArtwork(png, ids(rows.last(2)));
    settle();
    EXPECT_EQ(files.calls.size(), 2) << "the free track of the second request is refused with it";
    artwork().assignArtwork(QByteArrayLiteral("no picture"), ids(rows));
    settle();
    EXPECT_EQ(statusText(), QStringLiteral("Не удалось подготовить выбранное изображение для обложки."));
    artwork().assignArtwork(png, {Track::unread(rows.first().url()).id()});
    settle();
    EXPECT_EQ(statusText(), QStringLiteral("Обложка уже сохраняется")) << "rows that are gone";
    EXPECT_EQ(files.calls.size(), 2);
}

TEST_F(ArtworkTest, UndoBringsTheOldPicturesBack)
{
    QList<Track> rows = tracks(2);
    fill(rows);
    files.presentTags = {{rows[0].url(), "former"}, {rows[1].url(), "other"}};
    reader = [](const QUrl&, const AudioTags& fallback) {
        return TagTexts::read(fallback, ArtworkData::intern("old picture"));
    };
    assign(rows);
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Присвоить обложку"));
    files.calls.clear();
    undo();
    ASSERT_EQ(files.calls.size(), 2);
    EXPECT_EQ(files.calls[0].name + u' ' + QString::fromLatin1(files.calls[0].artwork),
              QStringLiteral("put back former"));
    EXPECT_EQ(files.calls[1].artwork, QByteArray("other"));
    EXPECT_EQ(now(rows[0]).artworkData(), ArtworkData::intern("old picture"));
    EXPECT_TRUE(now(rows[0]).artwork().isNull());
    files.calls.clear();
    redo();
    EXPECT_EQ(files.calls.size(), 2);
}

TEST_F(ArtworkTest, UndoOfAPictureLeavesWhatWasWrittenAfterIt)
{
    QList<Track> rows = tracks(2);
    fill(rows);
    files.presentTags = {{rows[0].url(), "former"}, {rows[1].url(), "other"}};
    const AudioTags before = rows[0].tags();
    reader = [before](const QUrl&, const AudioTags&) { return TagTexts::read(before); };
    assign({rows[0]});
    type(rows[0], {{&AudioTags::genre, "House"}}); // no step of undo
    settle();
    files.calls.clear();
    undo();
    ASSERT_EQ(files.calls.size(), 2);
    EXPECT_EQ(files.calls[0].name, QStringLiteral("put back"));
    EXPECT_EQ(files.calls[1].write.tags.genre, QStringLiteral("House"));
    EXPECT_EQ(files.calls[1].write.fields, TagFields(TagField::Genre));
    EXPECT_TRUE(files.calls[1].write.keepsOthers) << "the picture that came back stays";
    EXPECT_EQ(now(rows[0]).tags(), TagTexts::of({{&AudioTags::genre, "House"}}, before));
    EXPECT_FALSE(now(rows[0]).editedFields());
}

// What was done before the covers stays, and no more files get the picture.
TEST_F(ArtworkTest, AnUndoDuringTheRunTakesBackItsPicturesAlone)
{
    QList<Track> rows = tracks(3);
    fill(rows);
    store->favorites().removeFromFavorites({rows[0].id()}, false);
    async::MainQueue::drain();
    for (const Track& row : std::as_const(rows))
        files.presentTags.insert(row.url(), "former");
    files.before = [&](const FakeTagFiles::Call& call) {
        if (call.write.url == rows[1].url() && call.name == QLatin1StringView("artwork"))
            history().undo();
    };
    filesHold();
    assign(rows);
    QStringList calls;
    for (const FakeTagFiles::Call& call : std::as_const(files.calls))
        calls.append(call.name);
    EXPECT_EQ(calls.count(QStringLiteral("artwork")), 2);
    EXPECT_EQ(calls.count(QStringLiteral("put back")), 2);
    EXPECT_FALSE(now(rows[0]).isFavorite());
    EXPECT_EQ(history().undoActionName(), QStringLiteral("Изменить избранное"));
    EXPECT_EQ(history().redoActionName(), QStringLiteral("Присвоить обложку"));
}

TEST_F(ArtworkTest, TriesTwiceAndTellsTheFirstFailure)
{
    const QList<Track> rows = tracks(3);
    fill(rows);
    int firstFails = 1;
    files.before = [&](const FakeTagFiles::Call& call) {
        const QString name = call.write.url.fileName();
        if ((name == QLatin1StringView("1.mp3") && firstFails-- > 0) || name == QLatin1StringView("2.mp3"))
            throw TagFileError(QStringLiteral("busy"), false);
    };
    artwork().assignArtwork(png, ids(rows));
    do {
        settle();
        clock.advance(async::seconds(0.12));
    } while (executor.pendingCount() > 0 || !workspace().artworkWritingIDs().isEmpty());
    EXPECT_EQ(files.calls.size(), 5) << "one twice and well, one twice in vain, one at once";
    EXPECT_EQ(now(rows.at(0)).artworkData(), ArtworkData::intern(png));
    EXPECT_TRUE(now(rows.at(1)).artworkData().isNull());
    EXPECT_EQ(workspace().lastError(),
              QStringLiteral("Не удалось сохранить обложку в 1 из 3 файлов. Первый файл: 2.mp3. busy"));
    EXPECT_EQ(workspace().lastErrorTitle(), QStringLiteral("Не удалось сохранить обложку"));
    EXPECT_EQ(statusText(), QStringLiteral("Сохранено 2, ошибок: 1"));
    EXPECT_TRUE(workspace().artworkWritingIDs().isEmpty());
}

TEST_F(ArtworkTest, TellsItsProgressAfterEveryTwelfthFile)
{
    const QList<Track> rows = tracks(25);
    fill(rows);
    QStringList messages;
    QObject context;
    QObject::connect(&workspace(), &Workspace::workspaceStatusChanged, &context,
                     [&] { messages.append(statusText()); });
    assign(rows);
    EXPECT_EQ(messages.filter(QStringLiteral(" из ")), QStringList({QStringLiteral("Сохраняем обложку: 12 из 25"),
                                                                    QStringLiteral("Сохраняем обложку: 24 из 25")}));
}
