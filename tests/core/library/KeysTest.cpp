#include "support/StoreFixture.h"

#include <stdexcept>

namespace {

using List = Track::MetadataDestination;

const MusicalKeyAnalysis kDMajor{{2, MusicalKeyMode::Major}, 0.74, -33, {}};

class KeysTest : public StoreFixture {
protected:
    KeysTest()
    {
        workspace().setList(List::MusicalKey, {a, b, c});
        keyOf = [](const QUrl&) { return kDMajor; };
        QObject::connect(&keys(), &Keys::musicalKeyStatesChanged, &keys(),
                         [this](const QSet<TrackID>& ids) { told.unite(ids); });
    }

    Keys& keys() { return store->keys(); }
    void play(bool isPlaying) { store->playback().playbackStateDidChange(isPlaying, a.id()); }

    /// One letter per row: n(ew), q(ueued), r(unning), d(etermined), u(ndetermined).
    QString states() const
    {
        QString text;
        for (const Track& row : {a, b, c}) {
            const Keys& k = store->keys();
            const WorkState state = k.stateOf(row.id());
            if (state != WorkState::None)
                text += state == WorkState::Running ? u'r' : u'q';
            else if (k.musicalKeyAnalyses().contains(row.id()))
                text += k.undeterminedMusicalKeyIDs().contains(row.id()) ? u'!' : u'd';
            else
                text += k.undeterminedMusicalKeyIDs().contains(row.id()) ? u'u' : u'n';
        }
        return text;
    }

    QSet<TrackID> told;
};

TEST_F(KeysTest, analysesRowAfterRow)
{
    keyOf = [this](const QUrl& url) { return url == b.url() ? std::nullopt : std::optional(kDMajor); };
    keys().analyzeMusicalKey({c.id(), b.id(), a.id(), track(QStringLiteral("foreign.mp3")).id()});
    EXPECT_EQ(states(), QStringLiteral("rqq"));
    EXPECT_EQ(told, ids({a, b, c}));
    EXPECT_EQ(executor.jobs(), std::vector{async::Priority::Background});
    for (const char* after : {"drq", "dur", "dud"}) {
        told.clear();
        EXPECT_TRUE(executor.runOne());
        EXPECT_EQ(states(), QString::fromLatin1(after));
        EXPECT_FALSE(told.isEmpty()) << after;
    }
    EXPECT_EQ(keys().musicalKeyAnalyses().value(a.id()), kDMajor);
    EXPECT_EQ(keyURLs, QList<QUrl>({a.url(), b.url(), c.url()}));
}

TEST_F(KeysTest, queuesARowOnceAndForgetsItsResult)
{
    keys().analyzeMusicalKey(ids({a}));
    keys().analyzeMusicalKey(ids({a, b})); // a is under way
    keys().analyzeMusicalKey(ids({b}));
    executor.runAll();
    EXPECT_EQ(keyURLs, QList<QUrl>({a.url(), b.url()}));
    EXPECT_EQ(states(), QStringLiteral("ddn"));
    keyOf = {};
    keys().analyzeMusicalKey(ids({a}));
    EXPECT_EQ(states(), QStringLiteral("rdn")); // the old key is no answer to the new question
    executor.runAll();
    EXPECT_EQ(states(), QStringLiteral("udn"));
    keyOf = [](const QUrl&) -> std::optional<MusicalKeyAnalysis> { throw std::runtime_error("broken"); };
    keys().analyzeMusicalKey(ids({b}));
    executor.runAll();
    EXPECT_EQ(states(), QStringLiteral("uun"));
}

TEST_F(KeysTest, givesWayToPlayback)
{
    keys().analyzeMusicalKey(ids({a, b}));
    play(true);
    EXPECT_EQ(states(), QStringLiteral("qqn"));
    executor.runAll();
    EXPECT_EQ(states(), QStringLiteral("qqn"));
    keys().analyzeMusicalKey(ids({c}));
    EXPECT_EQ(executor.pendingCount(), 0) << "started while something plays";
    play(false);
    clock.advance(async::seconds(0.59));
    EXPECT_EQ(states(), QStringLiteral("qqq")) << "a step to the next track is no end of playing";
    clock.advance(async::seconds(0.02));
    EXPECT_EQ(states(), QStringLiteral("rqq"));
    executor.runAll();
    EXPECT_EQ(states(), QStringLiteral("ddd"));
}

TEST_F(KeysTest, rowsThatLeaveTheSectionLeaveTheQueue)
{
    keyOf = [this](const QUrl& url) {
        if (url == a.url())
            store->removal().removeFromMusicalKeyAnalysis(ids({a}));
        return kDMajor;
    };
    keys().analyzeMusicalKey(ids({a, b, c}));
    play(true);
    told.clear();
    store->removal().removeFromMusicalKeyAnalysis(ids({b}));
    EXPECT_EQ(states(), QStringLiteral("qnq")) << "nothing runs that could pass it over";
    EXPECT_EQ(told, ids({b}));
    executor.runAll();
    play(false);
    clock.advance(async::seconds(1));
    executor.runAll();
    EXPECT_EQ(states(), QStringLiteral("nnd")) << "the result of a row that left under way is nobody's";
    EXPECT_EQ(keyURLs, QList<QUrl>({a.url(), c.url()}));

    store->removal().removeFromMusicalKeyAnalysis(ids({c}));
    undo();
    EXPECT_TRUE(workspace().keyAnalysisTracks().contains(c.id()));
    EXPECT_EQ(states(), QStringLiteral("nnd")) << "comes back with its key";
}

TEST_F(KeysTest, aFileThatWasHeardAndIsTheSameIsNotDecodedAgain)
{
    const QUrl url = file(QStringLiteral("d.mp3"));
    const auto addRow = [&] {
        const Track row = track(url.toLocalFile());
        workspace().setList(List::MusicalKey, {row});
        keys().analyzeMusicalKey(ids({row}));
        executor.runAll();
        EXPECT_EQ(keys().musicalKeyAnalyses().value(row.id()), kDMajor);
    };
    const auto rewrite = [&](const QByteArray& bytes, bool isTold) {
        const auto before = FileStamp::of(url);
        append(url, bytes);
        if (isTold)
            store->fileEvents().tell({FileChange::Kind::Rewritten, url, url, before, FileStamp::of(url), true});
    };
    addRow();
    addRow();
    EXPECT_EQ(keyURLs.size(), 1);
    rewrite("a tag", true);
    addRow();
    EXPECT_EQ(keyURLs.size(), 1) << "the program's own write leaves the sound alone";
    rewrite("other music", false);
    keyOf = [&](const QUrl&) {
        rewrite("a tag while it is heard", true);
        return std::optional(kDMajor);
    };
    addRow();
    addRow();
    EXPECT_EQ(keyURLs.size(), 2);
    keys().analyzeMusicalKey(ids(workspace().keyAnalysisTracks().rows()));
    executor.runAll();
    EXPECT_EQ(keyURLs.size(), 3) << "who asks again gets another answer than the one that is known";
}

} // namespace
