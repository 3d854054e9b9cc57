#include "support/WindowFixture.h"

#include <numeric>

TEST(TrackColumnsTest, ColumnsLeaveOneAfterTheOtherAndTheAlbumFirst)
{
    const std::vector<TrackColumn>& columns = TrackColumns::playlist();
    const auto hidden = [&](int width) {
        const std::vector<int> widths = TrackColumns::widths(columns, width);
        std::vector<TrackColumn> gone;
        for (size_t i = 0; i < columns.size(); ++i) {
            if (widths[i] == 0)
                gone.push_back(columns[i]);
        }
        return gone;
    };
    EXPECT_TRUE(hidden(1224).empty());
    EXPECT_EQ(hidden(980), std::vector{TrackColumn::Album});
    EXPECT_EQ(hidden(840), (std::vector{TrackColumn::Waveform, TrackColumn::Album, TrackColumn::BitRate}));
    size_t before = 0;
    for (int width = 1300; width > 0; width -= 10) {
        const std::vector<TrackColumn> gone = hidden(width);
        EXPECT_GE(gone.size(), before);
        before = gone.size();
        for (TrackColumn kept : {TrackColumn::Title, TrackColumn::BPM, TrackColumn::Heart})
            EXPECT_FALSE(std::find(gone.begin(), gone.end(), kept) != gone.end());
    }
    EXPECT_GE(before, 5U);
}

TEST(TrackColumnsTest, TheRoomIsUsedToTheLastPixel)
{
    for (const auto* columns :
         {&TrackColumns::playlist(), &TrackColumns::full(), &TrackColumns::brief(), &TrackColumns::conversion()}) {
        for (int width : {840, 1064, 1217, 1224, 2560}) {
            const std::vector<int> widths = TrackColumns::widths(*columns, width);
            EXPECT_EQ(std::accumulate(widths.begin(), widths.end(), 0), width);
        }
    }
}
