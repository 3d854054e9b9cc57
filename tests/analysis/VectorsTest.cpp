// Samples with answers that independent implementations gave; shared beside the project, not kept in it.

#include "analysis/key/MusicalKeyAnalyzer.h"
#include "analysis/tempo/BPMAnalyzer.h"
#include "support/Machine.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtEndian>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

/// Lets a check see the samples and the answer of each vector in a folder.
void forEachVector(const QString& folder, const QString& suffix,
                   const std::function<void(const std::vector<float>&, const QJsonObject&)>& check)
{
    const QString path = QStringLiteral(VELMORA_VECTORS "/%1/").arg(folder);
    if (!QFileInfo::exists(path))
        GTEST_SKIP() << "no vectors in " << qPrintable(path);
    const QJsonObject answers = QJsonDocument::fromJson(readFile(path + u"expected.json"_s)).object();
    ASSERT_GT(answers.size(), 10);
    for (const QString& name : answers.keys()) {
        SCOPED_TRACE(qPrintable(name));
        const QByteArray bytes = outputOf(u"xz"_s, {u"-dc"_s, path + name + suffix});
        std::vector<float> samples(std::size_t(bytes.size()) / sizeof(float));
        qFromLittleEndian<float>(bytes.constData(), qsizetype(samples.size()), samples.data());
        check(samples, answers[name].toObject());
    }
}

} // namespace

TEST(TempoVectors, AllGiveTheirAnswers)
{
    forEachVector(u"tempo"_s, u".f32.xz"_s, [](const std::vector<float>& samples, const QJsonObject& expected) {
        const QJsonObject error = expected["error"_L1].toObject();
        try {
            const auto estimate = BPMAnalyzer::estimateDetailed(samples, 70, 200, false, {});
            EXPECT_TRUE(error.isEmpty());
            EXPECT_EQ(estimate.bpm, expected["bpm"_L1].toDouble());
            EXPECT_NEAR(estimate.confidence, expected["confidence"_L1].toDouble(), 0.005);
            const QJsonArray alternatives = expected["alternatives"_L1].toArray();
            ASSERT_EQ(estimate.alternatives.size(), alternatives.size());
            for (qsizetype i = 0; i < alternatives.size(); ++i) {
                const QJsonObject alternative = alternatives[i].toObject();
                EXPECT_EQ(estimate.alternatives[i].bpm, alternative["bpm"_L1].toDouble());
                EXPECT_NEAR(estimate.alternatives[i].relativeStrength, alternative["relativeStrength"_L1].toDouble(),
                            0.005);
            }
        } catch (const BPMAnalyzer::Error& thrown) {
            EXPECT_EQ(thrown.code(), error["code"_L1].toInt());
        }
    });
}

TEST(KeyVectors, AreHeardAsTheOtherImplementationHearsThem)
{
    forEachVector(u"key"_s, u".raw.xz"_s, [](const std::vector<float>& samples, const QJsonObject& expected) {
        try {
            const MusicalKeyAnalysis analysis =
                MusicalKeyAnalyzer::estimate(MusicalKeyAnalyzer::features(samples, 22050, false, {}));
            EXPECT_EQ(analysis.key.camelot(), expected["camelot"_L1].toString());
            EXPECT_EQ(analysis.key.pitchClass, expected["pitchClass"_L1].toInt());
            EXPECT_NEAR(analysis.confidence, expected["confidence"_L1].toDouble(), 0.001);
            EXPECT_NEAR(analysis.tuningCents, expected["tuningCents"_L1].toDouble(), 1e-9);
            const QJsonArray alternatives = expected["alternatives"_L1].toArray();
            ASSERT_EQ(analysis.alternatives.size(), alternatives.size());
            for (qsizetype i = 0; i < alternatives.size(); ++i) {
                const QJsonObject alternative = alternatives[i].toObject();
                EXPECT_EQ(analysis.alternatives[i].key.camelot(), alternative["camelot"_L1].toString());
                EXPECT_NEAR(analysis.alternatives[i].relativeStrength, alternative["relativeStrength"_L1].toDouble(),
                            0.0005);
            }
        } catch (const MusicalKeyAnalyzer::Error& error) {
            EXPECT_EQ(error.code(), expected["failure"_L1].toInt());
        }
    });
}
