#include "app/SingleInstance.h"

#include "platform/FileURL.h"
#include "support/Machine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace {

using Role = SingleInstance::Role;
using std::chrono::milliseconds;

constexpr int kLimitMilliseconds = 10'000;

/// A second start on a thread of its own, while this one stays at its events.
Role startBeside(const QString& folder, const QList<QUrl>& files)
{
    std::atomic<bool> isDone = false;
    Role role = Role::First;
    std::thread second([&] {
        role = SingleInstance(folder, milliseconds(kLimitMilliseconds)).begin(files);
        isDone = true;
    });
    (void)QTest::qWaitFor([&] { return isDone.load(); }, kLimitMilliseconds);
    second.join();
    return role;
}

} // namespace

TEST(SingleInstance, ALaterStartHandsItsFilesOver)
{
    const QTemporaryDir folder;
    SingleInstance first(folder.filePath(QStringLiteral("new/Velmora")));
    QList<QList<QUrl>> received;
    QObject::connect(&first, &SingleInstance::filesReceived, &first,
                     [&](const QList<QUrl>& files) { received.append(files); });
    ASSERT_EQ(first.begin({}), Role::First);
    QList<QUrl> many;
    for (int i = 0; i < 5000; ++i) // more than a socket takes at once
        many.append(FileURL::fromPath(QStringLiteral("/музыка/a\nb %1 100%.mp3").arg(i)));
    EXPECT_EQ(startBeside(folder.filePath(QStringLiteral("new/Velmora")), many), Role::HandedOver);
    EXPECT_EQ(startBeside(folder.filePath(QStringLiteral("new/Velmora")), {}), Role::HandedOver);
    EXPECT_EQ(received, (QList<QList<QUrl>>{many, {}}));
}

TEST(SingleInstance, ASilentFirstHoldsNobodyUp)
{
    const QTemporaryDir folder;
    SingleInstance first(folder.path());
    ASSERT_EQ(first.begin({}), Role::First); // and never comes to its events
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(SingleInstance(folder.path(), milliseconds(200)).begin({}), Role::Unanswered);
    EXPECT_LT(timer.elapsed(), 2000);
}

TEST(SingleInstance, WhenTheFirstEndsWithoutAnAnswerTheNextTakesItsPlace)
{
    const QTemporaryDir folder;
    auto first = std::make_unique<SingleInstance>(folder.path());
    ASSERT_EQ(first->begin({}), Role::First); // and never comes to its events
    Role role = Role::Unanswered;
    const std::unique_ptr<QThread> second(QThread::create([&] {
        SingleInstance instance(folder.path(), milliseconds(kLimitMilliseconds));
        role = instance.begin({FileURL::fromPath(QStringLiteral("/a.mp3"))});
    }));
    second->start();
    QThread::msleep(150); // time enough to have said what nobody answers
    first.reset();
    ASSERT_TRUE(second->wait(2 * kLimitMilliseconds));
    EXPECT_EQ(role, Role::First);
}

TEST(SingleInstance, WhatAKilledProcessLeavesIsNoFirst)
{
    const QTemporaryDir folder;
    for (const char* name : {"instance.lock", "instance.socket"})
        writeFile(folder.filePath(QLatin1StringView(name)));
    SingleInstance first(folder.path());
    EXPECT_EQ(first.begin({}), Role::First);
    EXPECT_EQ(startBeside(folder.path(), {}), Role::HandedOver) << "its socket took the old one's place";
    const QTemporaryDir other;
    EXPECT_EQ(SingleInstance(other.path()).begin({}), Role::First) << "another folder is another program";
}

TEST(SingleInstance, NonsenseOnTheSocketIsLeftAlone)
{
    const QTemporaryDir folder;
    SingleInstance first(folder.path());
    int messages = 0;
    QList<QUrl> received;
    QObject::connect(&first, &SingleInstance::filesReceived, &first, [&](const QList<QUrl>& files) {
        ++messages;
        received = files;
    });
    ASSERT_EQ(first.begin({}), Role::First);
    QLocalSocket unfinished;
    unfinished.connectToServer(folder.filePath(QStringLiteral("instance.socket")));
    unfinished.write("file:///a\nfile:");
    QLocalSocket odd;
    odd.connectToServer(folder.filePath(QStringLiteral("instance.socket")));
    odd.write("https://host/a\n\xff\xfe\nfile:///b\n\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return messages > 0; }, kLimitMilliseconds));
    unfinished.abort();
    QCoreApplication::processEvents();
    EXPECT_EQ(messages, 1);
    EXPECT_EQ(received, QList<QUrl>{QUrl(QStringLiteral("file:///b"))});
}

TEST(SingleInstance, ALongFolderHasASocketToo)
{
    const QTemporaryDir folder;
    const QString deep = folder.filePath(QString(120, u'd'));
    SingleInstance first(deep);
    ASSERT_EQ(first.begin({}), Role::First);
    EXPECT_EQ(startBeside(deep, {}), Role::HandedOver);
}
