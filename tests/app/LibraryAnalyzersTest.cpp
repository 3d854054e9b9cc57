#include "app/LibraryAnalyzers.h"

#include "platform/FileURL.h"
#include "support/Encoder.h"
#include "support/Machine.h"
#include "support/Stopped.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace {

using Case = BPMAnalysisOutcome::Case;

/// A file by the real encoder. \param sound an expression of the time t, in seconds.
QUrl encoded(const QTemporaryDir& folder, const QString& name, const QString& sound, int seconds)
{
    const QString path = folder.filePath(name);
    const QString source = QStringLiteral("aevalsrc=exprs='%1':s=44100:d=%2").arg(sound).arg(seconds);
    EXPECT_TRUE(Encoder::encode(source, path)) << "the encoder is needed";
    return FileURL::fromPath(path);
}

/// A time that passes the deadline between two looks at it.
WorkerClock hurriedClock()
{
    return {[time = std::make_shared<async::Duration>()] { return *time += async::seconds(20); },
            [](async::Duration, int) {}};
}

} // namespace

TEST(LibraryAnalyzers, FilesAnswerOrSayWhetherToTryAgain)
{
    const QTemporaryDir folder;
    // A kick of 60 Hz on every beat of 126 BPM, and a chord of A minor with its bass.
    const QString beats = QStringLiteral("exp(-30*mod(t\\,60/126))*sin(2*PI*60*t)");
    const QString chord =
        QStringLiteral("0.2*(sin(2*PI*110*t)+sin(2*PI*220*t)+sin(2*PI*261.63*t)+sin(2*PI*329.63*t)+sin(2*PI*440*t))");
    const QUrl music = encoded(folder, QStringLiteral("Такт 🥁.mp3"), beats + u'+' + chord, 40);
    const QUrl noSound = FileURL::fromPath(writeFile(folder.filePath(QStringLiteral("broken.mp3")), "no sound"));

    const BPMAnalysisOutcome outcome = LibraryAnalyzers::analyzeBPM(music, {}, {});
    ASSERT_EQ(outcome.which, Case::Success);
    EXPECT_EQ(outcome.estimate.bpm, 126);
    EXPECT_EQ(LibraryAnalyzers::analyzeBPM(noSound, {}, {}).which, Case::RetryableFailure);
    EXPECT_EQ(LibraryAnalyzers::analyzeBPM(music, {}, {}, hurriedClock()).which, Case::PermanentFailure);
    const auto key = LibraryAnalyzers::analyzeMusicalKey(music, {});
    ASSERT_TRUE(key);
    EXPECT_EQ(key->key.camelot(), QStringLiteral("8A"));
    EXPECT_FALSE(LibraryAnalyzers::analyzeMusicalKey(noSound, {}));

    EXPECT_EQ(LibraryAnalyzers::analyzeBPM(music, {true, true}, stoppedToken()).which, Case::Cancelled);
    EXPECT_FALSE(LibraryAnalyzers::analyzeMusicalKey(music, stoppedToken()));
}
