#include "analysis/key/MusicalKeyError.h"

#include "platform/Localization.h"

namespace MusicalKeyAnalyzer {

QLatin1StringView Error::caseName() const
{
    switch (m_case) {
    case Case::TooLittleAudio:
        return QLatin1StringView("tooLittleAudio");
    case Case::NoHarmony:
        return QLatin1StringView("noHarmony");
    case Case::NoCandidates:
        return QLatin1StringView("noCandidates");
    case Case::NoTransform:
        return QLatin1StringView("noTransform");
    }
    return {};
}

QString Error::message() const
{
    return m_key.isEmpty() ? QString() : VelmoraLocalization::string(m_key);
}

} // namespace MusicalKeyAnalyzer
