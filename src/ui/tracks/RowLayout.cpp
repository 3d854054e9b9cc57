#include "ui/tracks/RowLayout.h"

#include "ui/theme/Metrics.h"

#include <algorithm>

namespace {
constexpr int kHeader = Metrics::kFolderStripHeight;
}

int RowLayout::height() const
{
    return m_rowCount * m_rowHeight + static_cast<int>(m_runs.size()) * kHeader;
}

int RowLayout::rowTop(int row) const
{
    const auto behind = std::upper_bound(m_runs.cbegin(), m_runs.cend(), row,
                                         [](int value, const FolderRun& run) { return value < run.first; });
    return row * m_rowHeight + static_cast<int>(behind - m_runs.cbegin()) * kHeader;
}

int RowLayout::headerTop(int run) const
{
    return m_runs[run].first * m_rowHeight + run * kHeader;
}

int RowLayout::runAt(int y) const
{
    int low = -1;
    int high = static_cast<int>(m_runs.size());
    while (high - low > 1) {
        const int middle = (low + high) / 2;
        (headerTop(middle) <= y ? low : high) = middle;
    }
    return m_runs.isEmpty() ? -1 : std::max(low, 0);
}

int RowLayout::rowAt(int y) const
{
    if (y < 0 || y >= height())
        return -1;
    const int run = runAt(y);
    const int inside = run < 0 ? y : y - headerTop(run) - kHeader;
    if (inside < 0)
        return -1;
    const int row = (run < 0 ? 0 : m_runs[run].first) + inside / m_rowHeight;
    return row < m_rowCount ? row : -1;
}

int RowLayout::nearestRow(int y) const
{
    if (m_rowCount == 0)
        return -1;
    const int clamped = std::clamp(y, 0, height() - 1);
    const int row = rowAt(clamped);
    if (row >= 0)
        return row;
    const int run = runAt(clamped);
    return std::clamp(run < 0 ? 0 : m_runs[run].first, 0, m_rowCount - 1);
}
