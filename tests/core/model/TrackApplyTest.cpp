#include "platform/FileURL.h"
#include "support/TagTexts.h"

#include <gtest/gtest.h>

namespace {

LoadedTrackMetadata finishedRead()
{
    LoadedTrackMetadata metadata =
        TagTexts::read(TagTexts::of({{&AudioTags::title, "read title"}}), ArtworkData::intern("read picture"));
    metadata.duration = 200.5;
    metadata.bitRate = 320'000;
    metadata.bitDepth = 24;
    metadata.format = QStringLiteral("MP3");
    return metadata;
}

} // namespace

TEST(TrackApply, TakesWhatIsNotStale)
{
    const struct {
        const char* name;
        bool otherFile;
        bool tagsMovedOn;
        bool artworkMovedOn;
        bool pictureAtHand;
        bool takesFacts;
        bool takesTags;
        bool takesArtwork;
    } rows[] = {
        {"nothing moved on", false, false, false, false, true, true, true},
        {"tags were edited meanwhile", false, true, false, false, true, false, true},
        {"artwork was replaced meanwhile", false, false, true, false, true, true, false},
        {"both moved on", false, true, true, false, true, false, false},
        {"a decoded picture stands here", false, false, false, true, true, true, false},
        {"another file", true, false, false, false, false, false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QUrl url = FileURL::fromPath(QStringLiteral("/music/a.flac"));
        Track track = Track::unread(url);
        if (row.pictureAtHand)
            track.replaceArtwork(ArtworkData(), QImage(1, 1, QImage::Format_RGB32));
        const Track::MetadataVersion version = track.metadataVersion();
        if (row.tagsMovedOn)
            track = TagTexts::on(track, {{&AudioTags::title, "edited"}});
        if (row.artworkMovedOn)
            track.replaceArtwork(ArtworkData::intern("fresh picture"), QImage());
        const Track before = track;
        const QUrl source = row.otherFile ? FileURL::fromPath(QStringLiteral("/music/b.flac")) : url;

        EXPECT_EQ(track.apply(finishedRead(), source, version), row.takesFacts);
        EXPECT_EQ(track.tags(), row.takesTags ? finishedRead().tags : before.tags());
        EXPECT_EQ(track.metadataVersion().tags != before.metadataVersion().tags, row.takesTags);
        EXPECT_EQ(track.artworkData(), row.takesArtwork ? finishedRead().artworkData : before.artworkData());
        EXPECT_EQ(track.metadataVersion().artwork != before.metadataVersion().artwork, row.takesArtwork);
        EXPECT_EQ(track.duration(), row.takesFacts ? 200.5 : 0);
        EXPECT_EQ(track.bitRate(), row.takesFacts ? 320'000 : 0);
        EXPECT_EQ(track.bitDepth(), row.takesFacts ? 24 : 0);
        EXPECT_EQ(track.format(), row.takesFacts ? QStringLiteral("MP3") : QStringLiteral("FLAC"));
        EXPECT_EQ(track.id(), before.id());
        EXPECT_EQ(track.url(), url);
    }
}

TEST(TrackApply, ASecondEqualReadChangesNothing)
{
    Track track = Track::unread(FileURL::fromPath(QStringLiteral("/music/a.mp3")));
    ASSERT_TRUE(track.apply(finishedRead(), track.url(), track.metadataVersion()));
    const Track before = track;
    EXPECT_FALSE(track.apply(finishedRead(), track.url(), track.metadataVersion()));
    EXPECT_TRUE(track.isSameValueAs(before));
}

TEST(TrackApply, AFileWithoutAPictureLosesTheOldOne)
{
    Track track = Track::unread(FileURL::fromPath(QStringLiteral("/music/a.mp3")));
    track.replaceArtwork(ArtworkData::intern("old picture"), QImage());
    LoadedTrackMetadata metadata = finishedRead();
    metadata.artworkData = ArtworkData();
    EXPECT_TRUE(track.apply(metadata, track.url(), track.metadataVersion()));
    EXPECT_TRUE(track.artworkData().isNull());
}

// A file is read while an edit of its row waits to be written, or could not be.
TEST(TrackApply, LeavesEditedFieldsToTheUser)
{
    Track track = Track::unread(FileURL::fromPath(QStringLiteral("/music/a.mp3")));
    track.edit(TagTexts::of({{&AudioTags::genre, "House"}}), TagField::Genre | TagFields(TagField::Year));
    LoadedTrackMetadata metadata = finishedRead();
    metadata.tags.genre = QStringLiteral("Old");
    EXPECT_TRUE(track.apply(metadata, track.url(), track.metadataVersion()));
    EXPECT_TRUE(track.isRead());
    EXPECT_EQ(track.tags().title, QStringLiteral("read title"));
    EXPECT_EQ(track.tags().genre, QStringLiteral("House"));
    EXPECT_EQ(track.editedFields(), TagField::Genre | TagFields(TagField::Year));
    track.forgetEdits(TagField::Genre);
    EXPECT_TRUE(track.apply(metadata, track.url(), track.metadataVersion()));
    EXPECT_EQ(track.tags().genre, QStringLiteral("Old"));
}
