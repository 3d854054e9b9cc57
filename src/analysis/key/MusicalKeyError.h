#pragma once

#include <QLatin1StringView>
#include <QString>

#include <exception>

namespace MusicalKeyAnalyzer {

/// Why there is no key.
class Error : public std::exception {
public:
    enum class Case {
        TooLittleAudio = 1, ///< not one frame, or no sample rate
        NoHarmony,          ///< no section has enough frames with a pitch
        NoCandidates,       ///< no key has a score: the features hold no usable numbers
        NoTransform,        ///< the Fourier transform cannot be set up
    };

    /// \param key localisation key of the message; empty for a case that is not told to the user
    explicit Error(Case which, const QString& key = {})
        : m_case(which)
        , m_key(key)
    {
    }

    /// Stands before the code in reports.
    static QLatin1StringView domain() { return QLatin1StringView("Velmora.MusicalKey"); }
    /// 1 to 4, the number of the case.
    int code() const { return static_cast<int>(m_case); }
    /// Why there is none.
    Case which() const { return m_case; }
    /// The name of the case in reports, e.g. "tooLittleAudio".
    QLatin1StringView caseName() const;
    /// What the user is told, in the present language; may be empty.
    QString message() const;
    const char* what() const noexcept override { return "no musical key can be found"; }

private:
    Case m_case;
    QString m_key; ///< of the message
};

} // namespace MusicalKeyAnalyzer
