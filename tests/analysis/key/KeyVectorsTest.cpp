#include "analysis/key/MusicalKeyAnalyzer.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QtEndian>
#include <gtest/gtest.h>

// Sounds and their keys as an independent implementation hears them. They are not part of this project.

namespace {

const QString kVectors = QStringLiteral(VELMORA_VECTORS "/key/");

QJsonObject expectedAnswers()
{
    QFile file(kVectors + QStringLiteral("expected.json"));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

std::vector<float> unpacked(const QString& name)
{
    QProcess xz;
    xz.start(QStringLiteral("xz"), {QStringLiteral("-dc"), kVectors + name + QStringLiteral(".raw.xz")});
    EXPECT_TRUE(xz.waitForFinished(-1) && xz.exitCode() == 0) << qPrintable(xz.errorString());
    const QByteArray bytes = xz.readAllStandardOutput();
    std::vector<float> samples(std::size_t(bytes.size()) / sizeof(float));
    qFromLittleEndian<float>(bytes.constData(), qsizetype(samples.size()), samples.data());
    return samples;
}

void expectAnswer(const MusicalKeyAnalysis& analysis, const QJsonObject& expected)
{
    EXPECT_EQ(analysis.key.camelot(), expected[QStringLiteral("camelot")].toString());
    EXPECT_EQ(analysis.key.pitchClass, expected[QStringLiteral("pitchClass")].toInt());
    EXPECT_NEAR(analysis.confidence, expected[QStringLiteral("confidence")].toDouble(), 0.001);
    EXPECT_NEAR(analysis.tuningCents, expected[QStringLiteral("tuningCents")].toDouble(), 1e-9);
    const QJsonArray alternatives = expected[QStringLiteral("alternatives")].toArray();
    ASSERT_EQ(analysis.alternatives.size(), alternatives.size());
    for (qsizetype i = 0; i < alternatives.size(); ++i) {
        const QJsonObject alternative = alternatives[i].toObject();
        EXPECT_EQ(analysis.alternatives[i].key.camelot(), alternative[QStringLiteral("camelot")].toString());
        EXPECT_NEAR(analysis.alternatives[i].relativeStrength,
                    alternative[QStringLiteral("relativeStrength")].toDouble(), 0.0005);
    }
}

} // namespace

TEST(KeyVectors, AreHeardAsTheOtherImplementationHearsThem)
{
    if (!QFileInfo::exists(kVectors))
        GTEST_SKIP() << "there are no vectors";
    const QJsonObject answers = expectedAnswers();
    ASSERT_GT(answers.size(), 10);
    for (auto answer = answers.begin(); answer != answers.end(); ++answer) {
        SCOPED_TRACE(qPrintable(answer.key()));
        const QJsonObject expected = answer.value().toObject();
        const std::vector<float> samples = unpacked(answer.key());
        try {
            const MusicalKeyFeatureVector features = MusicalKeyAnalyzer::features(samples, 22050, false, {});
            expectAnswer(MusicalKeyAnalyzer::estimate(features), expected);
        } catch (const MusicalKeyAnalyzer::Error& error) {
            EXPECT_EQ(error.code(), expected[QStringLiteral("failure")].toInt());
        }
    }
}
