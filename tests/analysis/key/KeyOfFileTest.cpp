#include "analysis/key/MusicalKeyAnalyzer.h"

#include "analysis/decoding/DecoderError.h"
#include "async/Cancelled.h"
#include "platform/Localization.h"
#include "support/DecoderFixture.h"
#include "support/Stopped.h"

namespace {

using MusicalKeyAnalyzer::Error;

class KeyOfFileTest : public DecoderFixture {
protected:
    /// \param expression   of the time t in seconds.
    QUrl sound(const QString& name, const QString& expression, double seconds) const
    {
        const QString source = QStringLiteral("aevalsrc=exprs='%1':duration=%2:sample_rate=44100");
        return encoded(name, source.arg(expression).arg(seconds));
    }

    /// The code of the key, or of the error and its text.
    static QString answerFor(const QUrl& url)
    {
        try {
            return MusicalKeyAnalyzer::estimate(MusicalKeyAnalyzer::features(url, false, {})).key.camelot();
        } catch (const Error& error) {
            return QString::number(error.code()) + u' ' + error.message();
        }
    }
};

} // namespace

TEST_F(KeyOfFileTest, HasAKeyOrAReason)
{
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    const QString chord = QStringLiteral("0.2*(sin(2*PI*110*t)+sin(2*PI*440*t)+sin(2*PI*523.25*t)+sin(2*PI*659.26*t))");
    EXPECT_EQ(answerFor(sound(QStringLiteral("a.mp3"), chord, 14)), QStringLiteral("8A"));
    EXPECT_EQ(answerFor(sound(QStringLiteral("short.wav"), chord, 0.3)),
              QStringLiteral("1 Недостаточно аудиоданных для определения тональности."));
    // All within three minutes is silent, and no more is listened to.
    EXPECT_EQ(answerFor(sound(QStringLiteral("late.wav"), QStringLiteral("gte(t,180)*sin(2*PI*440*t)"), 220)),
              QStringLiteral("2 Не удалось выделить устойчивую гармонию в аудиофайле."));
}

TEST_F(KeyOfFileTest, WhatStopsTheDecoderStopsTheAnalysis)
{
    const QUrl missing = QUrl::fromLocalFile(path(QStringLiteral("missing.mp3")));
    EXPECT_THROW(answerFor(missing), AudioPCMDecoder::DecoderError);
    EXPECT_THROW(MusicalKeyAnalyzer::features(missing, true, stoppedToken()), async::Cancelled);
}
