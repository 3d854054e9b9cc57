#include "support/StoreFixture.h"

using Tone = WorkspaceStatus::Tone;

TEST_F(StoreFixture, ALaterMessageStaysItsFullTime)
{
    StatusLine& status = store->status();
    status.showStatus(QStringLiteral("первое"), StatusIcon::Info, Tone::Neutral);
    const QUuid first = workspace().workspaceStatus()->id;
    clock.advance(async::seconds(3));
    status.showStatus(QStringLiteral("первое"), StatusIcon::Info, Tone::Warning);
    EXPECT_NE(workspace().workspaceStatus()->id, first) << "equal texts still count as a change";
    clock.advance(async::seconds(3.5));
    ASSERT_TRUE(workspace().workspaceStatus());
    EXPECT_EQ(workspace().workspaceStatus()->tone, Tone::Warning);
    clock.advance(async::seconds(0.2));
    EXPECT_FALSE(workspace().workspaceStatus());
    EXPECT_EQ(clock.pendingCount(), 0);
}

TEST_F(StoreFixture, CountsAreWrittenInTheLanguageOfTheWindow)
{
    store->status().showCounted(QStringLiteral("Добавлено в плейлист: %d"), {12345}, StatusIcon::Done, Tone::Success,
                                5);
    EXPECT_EQ(statusText(), QStringLiteral("Добавлено в плейлист: 12\u00a0345"));
    VelmoraLocalization::setLanguage(AppLanguage::English);
    store->status().showCounted(QStringLiteral("Добавлено в плейлист: %d"), {12345}, StatusIcon::Done, Tone::Success,
                                5);
    EXPECT_EQ(statusText(), QStringLiteral("Added to playlist: 12,345"));
    clock.advance(async::seconds(4.9));
    EXPECT_TRUE(workspace().workspaceStatus());
    clock.advance(async::seconds(0.2));
    EXPECT_FALSE(workspace().workspaceStatus());
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
}

TEST_F(StoreFixture, AStoreThatDiesTakesItsMessageAlong)
{
    store->status().showStatus(QStringLiteral("x"), StatusIcon::Done, Tone::Neutral);
    store.reset();
    clock.advance(async::seconds(5));
    EXPECT_EQ(clock.pendingCount(), 0);
}
