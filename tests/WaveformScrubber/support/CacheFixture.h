#pragma once

#include "WaveformScrubber/WaveformCache.h"
#include "async/TaskSlot.h"
#include "support/ManualClock.h"
#include "support/ManualExecutor.h"

#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <deque>

/// What somebody who asks for an envelope gets: "envelope 0.5" with its first value, "nothing", or the name of the
/// error; empty as long as there is no answer.
struct Answer {
    QString text;
    async::TaskSlot task;
};

/// A cache whose computations are counted and answer at once, on a clock and an executor that stand still.
class CacheFixture : public testing::Test {
protected:
    CacheFixture();
    ~CacheFixture() override;

    QUrl file(const QString& name) const { return QUrl::fromLocalFile(m_folder.filePath(name)); }
    /// Writes a file of this size, with a modification time that is its own.
    QUrl put(const QString& name, int byteCount) const;
    QString folder() const { return m_folder.filePath(QStringLiteral("cache")); }
    QString entryPath(const QUrl& url) const;
    /// Replaces the cache by one that knows only what is on disk.
    void restart();

    /// Asks; nothing has run yet when this returns.
    Answer& ask(const QUrl& url, LowImpact lowImpact = LowImpact::No);
    Answer& askStored(const QUrl& url);
    /// Asks and runs everything.
    QString answerFor(const QUrl& url);
    QString storedAnswerFor(const QUrl& url);

    ManualClock m_clock;
    ManualExecutor m_executor;
    QTemporaryDir m_folder;
    const QUrl m_url = put(QStringLiteral("a.mp3"), 100);
    /// File names in the order in which computations ran, with " low" for low impact.
    QStringList m_computed;
    /// First value of what a computation gives.
    float m_level = 0.5F;
    /// Called inside a computation.
    std::function<void(const std::stop_token&)> m_during;
    std::unique_ptr<WaveformCache> m_cache;

private:
    static async::Task<> answer(Answer* answer, async::Task<Envelope> task);
    static async::Task<> answerStored(Answer* answer, async::Task<std::optional<Envelope>> task);
    std::vector<float> compute(const QUrl& url, LowImpact lowImpact, const std::stop_token& stop);

    std::deque<Answer> m_answers;
};
