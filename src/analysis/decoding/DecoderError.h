#pragma once

#include <QLatin1StringView>
#include <QString>

#include <exception>

namespace AudioPCMDecoder {

/// Why a file gives no samples. One vocabulary for all analyses, although the messages speak of BPM.
class DecoderError : public std::exception {
public:
    enum class Case {
        FFmpegUnavailable, ///< no decoder was found; thrown by callers, before they decode
        DecodingFailed,    ///< the decoder ended with a status other than 0
        TimedOut,          ///< the decoder was stopped at the deadline
        EmptyAudio,        ///< not even one sample came out
    };

    explicit DecoderError(Case what)
        : m_case(what)
    {
    }

    /// Why there are no samples.
    Case which() const { return m_case; }
    /// The name of the case in reports, e.g. "timedOut".
    QLatin1StringView caseName() const;
    /// What the user is told, in the present language.
    QString message() const;
    const char* what() const noexcept override { return "audio cannot be decoded"; }

private:
    Case m_case;
};

} // namespace AudioPCMDecoder
