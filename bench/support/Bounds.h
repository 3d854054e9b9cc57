#pragma once

#include <cstdio>

/// What a benchmark promises: prints each figure beside its bound.
class Bounds {
public:
    void print(const char* what, double value, const char* unit, double bound)
    {
        std::printf("%-44s %8.2f %s (bound %g)%s\n", what, value, unit, bound, value <= bound ? "" : " MISSED");
        std::fflush(stdout);
        m_areMet = m_areMet && value <= bound;
    }
    /// For the end of main().
    int exitStatus() const { return m_areMet ? 0 : 1; }

private:
    bool m_areMet = true;
};
