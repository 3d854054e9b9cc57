#include "analysis/decoding/AudioPCMDecoder.h"

#include "analysis/decoding/TemporarySweep.h"
#include "platform/Localization.h"
#include "support/DecoderFixture.h"
#include "support/FileTimes.h"
#include "support/Machine.h"
#include "support/Thrown.h"

#include <QDateTime>
#include <QFile>

namespace {

class AudioPCMDecoderTest : public DecoderFixture {
protected:
    static std::vector<float> decode(const QUrl& decoder, async::Duration timeout,
                                     const WorkerClock& clock = WorkerClock::system())
    {
        return AudioPCMDecoder::monoSamples(QUrl::fromLocalFile(QStringLiteral("/music/a.mp3")), 22050, 132.5, true,
                                            decoder, timeout, {}, clock);
    }
};

} // namespace

TEST_F(AudioPCMDecoderTest, GivesAllSamplesOrItsOwnError)
{
    using AudioPCMDecoder::DecoderError;
    EXPECT_EQ(
        decode(script(QStringLiteral("printf '%s\\n' \"$@\" > told; printf '\\000\\000\\200\\077abc' > \"$out\"")),
               async::seconds(60)),
        std::vector<float>{1.0F});
    EXPECT_TRUE(told("velmora-bpm-").ends_with("-dn\n-t\n133\n-ac\n1\n-ar\n22050\n-f\nf32le\n"));
    const std::pair<QString, const char*> cases[] = {
        {QStringLiteral("exit 1"), "decodingFailed"},
        {QStringLiteral("printf 123 > \"$out\""), "emptyAudio"},
        {kHanging, "timedOut"},
    };
    for (const auto& [body, name] : cases) {
        const auto error = thrown<DecoderError>([&, &text = body] { decode(script(text), async::seconds(0.3)); });
        ASSERT_TRUE(error) << qPrintable(body);
        EXPECT_EQ(error->caseName(), QLatin1StringView(name));
    }
    VelmoraLocalization::setLanguage(AppLanguage::English);
    EXPECT_EQ(DecoderError(DecoderError::Case::FFmpegUnavailable).message(),
              QStringLiteral("The built-in audio decoder was not found."));
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
}

TEST_F(AudioPCMDecoderTest, WhatAKilledProgramLeftIsSweptButNoRunningDecode)
{
    const QString orphan = path(QStringLiteral("temporary/velmora-bpm-0F8FAD5B-D9CB-469F-A165-70867728950E.pcm"));
    setModified(writeFile(orphan), QDateTime::currentDateTime().addSecs(-60));
    // Sweeps while a decoder runs whose file looks just as old.
    int swept = 0;
    WorkerClock clock = WorkerClock::system();
    clock.wait = [&](async::Duration, int) {
        if (QFile::exists(path(QStringLiteral("written"))) && !QFile::exists(path(QStringLiteral("go on")))) {
            swept += TemporarySweep::removeStale();
            writeFile(path(QStringLiteral("go on")));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    };
    const QUrl decoder =
        script(QStringLiteral("printf 1234 > \"$out\"; touch -d '2 minutes ago' \"$out\"; : > written\n"
                              "while ! [ -e 'go on' ]; do sleep 0.01; done"));
    EXPECT_EQ(decode(decoder, async::seconds(60), clock).size(), 1U);
    EXPECT_EQ(swept, 1);
    EXPECT_FALSE(QFile::exists(orphan));
}
