#include "core/library/tempo/BPMQueue.h"
#include "core/library/tempo/BPMScheduling.h"
#include "core/library/tempo/TempoRequests.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

namespace {

QList<TrackID> freshIDs(int count)
{
    QList<TrackID> ids;
    for (int i = 0; i < count; ++i)
        ids.append(QUuid::createUuid());
    return ids;
}

QList<Track> rows(int count)
{
    QList<Track> tracks;
    for (int i = 0; i < count; ++i)
        tracks.append(Track::unread(QUrl::fromLocalFile(QStringLiteral("/music/%1.mp3").arg(i))));
    return tracks;
}

QList<TrackID> idsOf(const QList<Track>& tracks)
{
    QList<TrackID> ids;
    for (const Track& track : tracks)
        ids.append(track.id());
    return ids;
}

} // namespace

TEST(TempoPolicyTest, WhateverTheUserDoesComesFirst)
{
    struct Case {
        const char* name;
        BPMScheduling::Circumstances now;
        BPMAnalysisSchedulingPolicy policy;
    };
    const Case cases[] = {
        {"one track, nothing else", {false, false, false, false, 1}, {false, false, 2}},
        {"two tracks", {false, false, false, false, 2}, {false, true, 2}},
        {"playing", {true, false, false, false, 1}, {true, true, 1}},
        {"scrolling", {false, true, false, false, 1}, {true, true, 1}},
        {"reading tags", {false, false, true, false, 1}, {false, true, 1}},
        {"little power", {false, false, false, true, 1}, {false, false, 1}},
    };
    for (const Case& test : cases)
        EXPECT_EQ(BPMScheduling::currentBPMSchedulingPolicy(test.now), test.policy) << test.name;
}

TEST(TempoPolicyTest, OfTooManyWorkersTheSmallestTextStays)
{
    const QUuid small(QStringLiteral("{0a000000-0000-4000-8000-000000000000}"));
    const QUuid middle(QStringLiteral("{80000000-0000-4000-8000-000000000000}"));
    const QUuid large(QStringLiteral("{ff000000-0000-1000-0000-000000000000}")); // of a variant that numbers sort first
    const QList<QUuid> all{large, small, middle};
    for (const QUuid& id : all) {
        EXPECT_EQ(BPMScheduling::leavesAsSurplus(id, all, 1), id != small) << qPrintable(id.toString());
        EXPECT_EQ(BPMScheduling::leavesAsSurplus(id, all, 2), id != small) << "one stays, not two";
        EXPECT_FALSE(BPMScheduling::leavesAsSurplus(id, all, 3));
    }
}

TEST(TempoPolicyTest, ThePriorityIsTakenOnceAndWaitsForItsTrack)
{
    const QList<TrackID> ids = freshIDs(3);
    BPMAnalysisQueuePriority priority{ids[2]};
    QList<TrackID> empty;
    EXPECT_FALSE(priority.dequeue(empty));
    QList<TrackID> without{ids[0]};
    EXPECT_EQ(priority.dequeue(without), ids[0]);
    EXPECT_EQ(priority.trackID, ids[2]) << "not in that list";
    QList<TrackID> list = ids;
    EXPECT_EQ(priority.dequeue(list), ids[2]);
    EXPECT_FALSE(priority.trackID);
    EXPECT_EQ(list, ids.first(2)) << "the rest keeps its order";
    EXPECT_EQ(priority.dequeue(list), ids[0]);
}

TEST(TempoPolicyTest, ATrackIsTriedTwiceAndKeepsItsPlaceInTheSet)
{
    const QList<TrackID> ids = freshIDs(3);
    BPMQueue queue;
    queue.append(ids);
    EXPECT_EQ(queue.takeNext(), ids[0]);
    queue.requeueAtFront(ids[0]);
    EXPECT_EQ(queue.waiting(), ids);
    queue.requeueAtFront(ids[1]);
    EXPECT_EQ(queue.waiting(), ids) << "it waits already";
    queue.takeNext();
    EXPECT_TRUE(queue.retryLater(ids[0]));
    EXPECT_EQ(queue.waiting(), QList<TrackID>({ids[1], ids[2], ids[0]}));
    EXPECT_EQ(queue.size(), 3);
    EXPECT_FALSE(queue.join(ids[0])) << "queued already";
    while (queue.takeNext())
        continue;
    EXPECT_FALSE(queue.retryLater(ids[0]));
    queue.drop(ids[0]);
    EXPECT_EQ(queue.size(), 2);
    queue.requeueAtFront(ids[0]);
    EXPECT_TRUE(queue.waiting().isEmpty()) << "no longer queued";

    EXPECT_EQ(queue.batchTotal(), 3);
    EXPECT_TRUE(queue.join(ids[0]));
    EXPECT_EQ(queue.batchTotal(), 4);
    EXPECT_TRUE(queue.retryLater(ids[0])) << "its failures are forgotten";
    queue.withdraw({ids.cbegin(), ids.cend()});
    EXPECT_TRUE(queue.isEmpty() && queue.waiting().isEmpty());
    queue.append(ids.first(1));
    EXPECT_EQ(queue.batchTotal(), 1) << "a new batch";
    queue.append(ids.last(2));
    EXPECT_EQ(queue.batchTotal(), 3);
}

TEST(TempoPolicyTest, RequestsComeInTheOrderOfTheListWhateverTheirSize)
{
    for (const int count : {3, 1000, 1001, 2500}) {
        TrackList list;
        const QList<Track> tracks = rows(count);
        list.assign(tracks);
        QList<TrackID> ids = idsOf(tracks);
        TempoRequests requests;
        requests.add({ids.cbegin(), ids.cend()}, false);
        requests.add({ids.first(), QUuid::createUuid()}, true);
        QList<TrackID> found;
        bool again = false;
        while (!requests.isEmpty() && !again) {
            const TempoRequests::Slice slice = requests.next(list);
            again = slice.again;
            EXPECT_LE(slice.ids.size(), 1000);
            found.append(slice.ids);
        }
        ids.append(tracks.first().id()); // the second request
        EXPECT_EQ(found, ids) << count;
        EXPECT_TRUE(requests.isEmpty()) << "who is not in the list is left out";
    }
}

TEST(TempoPolicyTest, AListThatTurnsBetweenTwoSlicesLosesNobody)
{
    QList<Track> tracks = rows(5000);
    TrackList list;
    list.assign(tracks);
    const QList<TrackID> ids = idsOf(tracks);
    QSet<TrackID> asked(ids.cbegin(), ids.cend());
    for (const TrackID& foreign : freshIDs(2000))
        asked.insert(foreign);
    TempoRequests requests;
    requests.add(asked, false);
    QList<TrackID> found;
    for (int slice = 0; !requests.isEmpty(); ++slice) {
        ASSERT_LT(slice, 30) << "it comes to an end";
        found.append(requests.next(list).ids);
        std::ranges::reverse(tracks);
        list.assign(tracks);
    }
    EXPECT_EQ(found.size(), ids.size()) << "each once";
    EXPECT_EQ(QSet<TrackID>(found.cbegin(), found.cend()), QSet<TrackID>(ids.cbegin(), ids.cend()));
}
