#pragma once

#include <QLatin1StringView>

#include <exception>

/// Why a file gives no envelope. It is not shown: where there is no envelope, nothing is drawn.
class AudioProcessingError : public std::exception {
public:
    enum class Case {
        BufferCreationFailed, ///< no memory for a block of sound
        DecodingFailed,       ///< the sound broke off
        TimedOut,             ///< `ffmpeg` was stopped at the limit
    };

    explicit AudioProcessingError(Case what)
        : m_case(what)
    {
    }

    /// Why there is no envelope.
    Case which() const { return m_case; }
    /// The name of the case in reports, e.g. "timedOut".
    QLatin1StringView caseName() const;
    const char* what() const noexcept override { return "audio cannot be turned into an envelope"; }

private:
    Case m_case;
};
