#include "support/StoreFixture.h"

#include "core/library/waveforms/Waveforms.h"

class WaveformsTest : public StoreFixture {
protected:
    QUrl current;
    QList<QUrl> following;
    int calls = 0;
    Waveforms waveforms{{store->selection(), [this](const QList<QUrl>& urls) { waveformURLs.append(urls); },
                         [this](const QUrl& url, const QList<QUrl>& behind) {
                             current = url;
                             following = behind;
                             ++calls;
                         }}};
};

TEST_F(WaveformsTest, WhatPlaysGoesFirstAndThenTheRowsBehindIt)
{
    const Track a = favorite(QStringLiteral("a.mp3"));
    const Track b = track(QStringLiteral("b.mp3"));
    const Track c = favorite(QStringLiteral("c.mp3"));
    fill({a, b, c});
    const struct {
        LibraryTab tab;
        Track played;
        QList<QUrl> behind;
        bool isAsked;
    } kCases[]{
        {LibraryTab::Playlist, a, {b.url(), c.url()}, true},
        {LibraryTab::Playlist, c, {}, true},
        {LibraryTab::Favorites, a, {c.url()}, true},
        {LibraryTab::Favorites, b, {}, false},
        {LibraryTab::Analysis, a, {}, false},
    };
    for (const auto& each : kCases) {
        workspace().setActiveTab(each.tab);
        const int before = std::exchange(calls, 0);
        following.clear();
        waveforms.prioritizeWaveformsForPlayback(each.played.id());
        EXPECT_EQ(calls, each.isAsked ? 1 : 0) << before;
        EXPECT_EQ(following, each.behind);
        if (each.isAsked) {
            EXPECT_EQ(current, each.played.url());
        }
    }
}

TEST_F(WaveformsTest, PreloadsReachTheQueueAsTheyAre)
{
    waveforms.preloadWaveform(FileURL::fromPath(QStringLiteral("/a")));
    waveforms.preloadWaveforms({FileURL::fromPath(QStringLiteral("/c")), FileURL::fromPath(QStringLiteral("/b"))});
    EXPECT_EQ(waveformURLs,
              (QList<QUrl>{FileURL::fromPath(QStringLiteral("/a")), FileURL::fromPath(QStringLiteral("/c")),
                           FileURL::fromPath(QStringLiteral("/b"))}));
    Waveforms nobodyListens{{store->selection(), {}, {}}};
    nobodyListens.preloadWaveform(FileURL::fromPath(QStringLiteral("/a")));
    nobodyListens.prioritizeWaveformsForPlayback(TrackID::createUuid());
}
