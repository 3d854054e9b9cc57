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

TEST(TempoRequestsTest, RequestsComeInTheOrderOfTheListWhateverTheirSize)
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

TEST(TempoRequestsTest, AListThatTurnsBetweenTwoSlicesLosesNobody)
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
