#include "support/StoreFixture.h"

#include "core/library/reading/MetadataBatch.h"

TEST_F(StoreFixture, AppliesABatchByID)
{
    TrackList list;
    list.assign({a, b});
    LoadedTrackMetadata read;
    read.tags = a.tags();
    read.tags.title = QStringLiteral("Read");
    read.format = a.format();
    Track::MetadataVersion stale = b.metadataVersion();
    stale.tags = QUuid::createUuid();
    LoadedTrackMetadata late = read;
    late.duration = 12;
    const MetadataBatch::Applied applied =
        MetadataBatch::apply(list, {{a.id(), a.url(), a.metadataVersion(), read},
                                    {b.id(), b.url(), stale, late},
                                    {QUuid::createUuid(), a.url(), a.metadataVersion(), read}});
    EXPECT_EQ(applied.changedIDs, ids({a, b}));
    EXPECT_EQ(applied.rows[0].displayTitle(), QStringLiteral("Read"));
    EXPECT_EQ(applied.rows[1].displayTitle(), QStringLiteral("b")) << "edited meanwhile";
    EXPECT_EQ(applied.rows[1].duration(), 12);
    EXPECT_EQ(list.at(0).displayTitle(), QStringLiteral("a")) << "the list itself stays";
}
