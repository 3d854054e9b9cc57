#include "analysis/tempo/BPMAnalyzer.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtEndian>
#include <gtest/gtest.h>

// Samples with answers that were computed independently; shared beside the project, not kept in it.

namespace {

const QString kFolder = QStringLiteral(VELMORA_CORPUS "/../vectors/tempo/");

std::vector<float> unpacked(const QString& path)
{
    QProcess xz;
    xz.start(QStringLiteral("xz"), {QStringLiteral("-dc"), path});
    EXPECT_TRUE(xz.waitForFinished(-1) && xz.exitCode() == 0) << qPrintable(path);
    const QByteArray bytes = xz.readAllStandardOutput();
    std::vector<float> samples(std::size_t(bytes.size()) / sizeof(float));
    qFromLittleEndian<float>(bytes.constData(), qsizetype(samples.size()), samples.data());
    return samples;
}

void expectEstimate(const QString& name, const QJsonObject& expected, const std::vector<float>& samples)
{
    const auto estimate = BPMAnalyzer::estimateDetailed(samples, 70, 200, false, {});
    EXPECT_EQ(estimate.bpm, expected[QLatin1StringView("bpm")].toDouble()) << qPrintable(name);
    EXPECT_NEAR(estimate.confidence, expected[QLatin1StringView("confidence")].toDouble(), 0.005) << qPrintable(name);
    const QJsonArray alternatives = expected[QLatin1StringView("alternatives")].toArray();
    ASSERT_EQ(estimate.alternatives.size(), alternatives.size()) << qPrintable(name);
    for (qsizetype i = 0; i < alternatives.size(); ++i) {
        const QJsonObject alternative = alternatives[i].toObject();
        EXPECT_EQ(estimate.alternatives[i].bpm, alternative[QLatin1StringView("bpm")].toDouble()) << qPrintable(name);
        EXPECT_NEAR(estimate.alternatives[i].relativeStrength,
                    alternative[QLatin1StringView("relativeStrength")].toDouble(), 0.005)
            << qPrintable(name);
    }
}

} // namespace

TEST(TempoVectors, AllGiveTheirAnswers)
{
    QFile file(kFolder + QStringLiteral("expected.json"));
    if (!file.open(QIODevice::ReadOnly))
        GTEST_SKIP() << "no vectors in " << qPrintable(kFolder);
    const QJsonObject answers = QJsonDocument::fromJson(file.readAll()).object();
    ASSERT_FALSE(answers.isEmpty());
    for (const QString& name : answers.keys()) {
        const QJsonObject expected = answers[name].toObject();
        const std::vector<float> samples = unpacked(kFolder + name + QStringLiteral(".f32.xz"));
        const QJsonValue error = expected[QLatin1StringView("error")];
        try {
            expectEstimate(name, expected, samples);
            EXPECT_FALSE(error.isObject()) << qPrintable(name);
        } catch (const BPMAnalyzer::Error& thrown) {
            EXPECT_EQ(thrown.code(), error[QLatin1StringView("code")].toInt()) << qPrintable(name);
        }
    }
}
