#include "analysis/tempo/BPMError.h"

#include "platform/Localization.h"

namespace BPMAnalyzer {

QLatin1StringView Error::caseName() const
{
    switch (m_case) {
    case Case::BadRange:
        return QLatin1StringView("badRange");
    case Case::NoSection:
        return QLatin1StringView("noSection");
    case Case::NoLagScores:
        return QLatin1StringView("noLagScores");
    case Case::EmptyLagRange:
        return QLatin1StringView("emptyLagRange");
    case Case::NoCandidate:
        return QLatin1StringView("noCandidate");
    case Case::EmptyRanking:
        return QLatin1StringView("emptyRanking");
    case Case::TransformUnavailable:
        return QLatin1StringView("transformUnavailable");
    }
    return {};
}

QString Error::message() const
{
    switch (m_case) {
    case Case::BadRange:
        return VelmoraLocalization::string(QStringLiteral("Некорректный диапазон BPM."));
    case Case::NoSection:
        return VelmoraLocalization::string(QStringLiteral("Недостаточно аудиоданных для определения BPM."));
    case Case::NoLagScores:
        return VelmoraLocalization::string(QStringLiteral("Недостаточно ритмического материала для определения BPM."));
    case Case::TransformUnavailable:
        return VelmoraLocalization::string(QStringLiteral("Не удалось подготовить спектральный анализ."));
    case Case::EmptyLagRange:
    case Case::NoCandidate:
    case Case::EmptyRanking:
        return {};
    }
    return {};
}

} // namespace BPMAnalyzer
