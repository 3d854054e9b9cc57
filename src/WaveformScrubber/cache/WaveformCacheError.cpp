#include "WaveformScrubber/cache/WaveformCacheError.h"

#include "platform/Localization.h"

QLatin1StringView WaveformCacheError::domain() const
{
    return m_case == Case::TemporarilyUnavailable ? QLatin1StringView("WaveformCache") : QLatin1StringView();
}

std::optional<int> WaveformCacheError::code() const
{
    return m_case == Case::TemporarilyUnavailable ? std::optional(2) : std::nullopt;
}

QString WaveformCacheError::message() const
{
    if (m_case == Case::TemporarilyUnavailable)
        return VelmoraLocalization::string(QStringLiteral("Аудиофайл временно недоступен для waveform."));
    return VelmoraLocalization::string(QStringLiteral("Не удалось открыть аудиофайл."));
}
