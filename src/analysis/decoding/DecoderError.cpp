#include "analysis/decoding/DecoderError.h"

#include "platform/Localization.h"

namespace AudioPCMDecoder {

QLatin1StringView DecoderError::caseName() const
{
    switch (m_case) {
    case Case::FFmpegUnavailable:
        return QLatin1StringView("ffmpegUnavailable");
    case Case::DecodingFailed:
        return QLatin1StringView("decodingFailed");
    case Case::TimedOut:
        return QLatin1StringView("timedOut");
    case Case::EmptyAudio:
        return QLatin1StringView("emptyAudio");
    }
    return {};
}

QString DecoderError::message() const
{
    switch (m_case) {
    case Case::FFmpegUnavailable:
        return VelmoraLocalization::string(QStringLiteral("Не найден встроенный аудиодекодер."));
    case Case::DecodingFailed:
        return VelmoraLocalization::string(QStringLiteral("Не удалось декодировать аудиодорожку для анализа BPM."));
    case Case::TimedOut:
        return VelmoraLocalization::string(QStringLiteral("Анализ BPM остановлен: декодер не ответил вовремя."));
    case Case::EmptyAudio:
        return VelmoraLocalization::string(QStringLiteral("В аудиофайле нет данных для анализа BPM."));
    }
    return {};
}

} // namespace AudioPCMDecoder
