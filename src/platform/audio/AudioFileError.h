#pragma once

#include <exception>

/// Why an audio file cannot be opened or decoded. The one error of this folder: whatever a decoder or the system
/// reports ends in one of its cases.
class AudioFileError : public std::exception {
public:
    enum class Case {
        CannotOpen,  ///< not there, not readable, or no regular file
        NoAudio,     ///< opens, but holds no sound that can be decoded
        OutOfMemory, ///< the decoder cannot get what it needs
    };

    explicit AudioFileError(Case what)
        : m_case(what)
    {
    }

    /// What to tell the user by; what() is the same text for every case.
    Case which() const { return m_case; }
    const char* what() const noexcept override { return "audio file cannot be read"; }

private:
    Case m_case;
};
