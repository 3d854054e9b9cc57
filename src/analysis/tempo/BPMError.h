#pragma once

#include <QLatin1StringView>
#include <QString>

#include <exception>

namespace BPMAnalyzer {

/// Why samples give no tempo.
class Error : public std::exception {
public:
    /// The values are the codes in reports.
    enum class Case {
        BadRange = 1,            ///< the range of tempos is empty or not positive
        NoSection = 2,           ///< too little sound
        NoLagScores = 3,         ///< no section is long enough for the range
        EmptyLagRange = 4,       ///< no lag is left that all sections have
        NoCandidate = 5,         ///< no lag was scored
        EmptyRanking = 6,        ///< no lag was ranked
        TransformUnavailable = 7 ///< drops a section, so it never reaches a caller
    };

    explicit Error(Case what)
        : m_case(what)
    {
    }

    Case which() const { return m_case; }
    /// 1 to 7, the number of the case.
    int code() const { return static_cast<int>(m_case); }
    /// Stands before the code in reports.
    static QLatin1StringView domain() { return QLatin1StringView("Velmora.BPM"); }
    /// The name of the case in reports, e.g. "badRange".
    QLatin1StringView caseName() const;
    /// What the user is told, in the present language; empty for what no file brings about.
    QString message() const;
    const char* what() const noexcept override { return "no tempo can be estimated"; }

private:
    Case m_case;
};

} // namespace BPMAnalyzer
