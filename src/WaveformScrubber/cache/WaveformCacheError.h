#pragma once

#include <QLatin1StringView>
#include <QString>

#include <exception>
#include <optional>

/// Why the cache does not even try to compute an envelope.
class WaveformCacheError : public std::exception {
public:
    enum class Case {
        TemporarilyUnavailable, ///< it failed less than 30 seconds ago; domain "WaveformCache", code 2
        FileReadNoSuchFile,     ///< no file URL, not there, or not readable
    };

    explicit WaveformCacheError(Case what)
        : m_case(what)
    {
    }

    /// Why nothing was computed.
    Case which() const { return m_case; }
    /// "WaveformCache" for TemporarilyUnavailable, else empty.
    QLatin1StringView domain() const;
    /// The domain's number of the error, where there is a domain.
    std::optional<int> code() const;
    /// In the present language.
    QString message() const;
    const char* what() const noexcept override { return "no envelope for this file"; }

private:
    Case m_case;
};
