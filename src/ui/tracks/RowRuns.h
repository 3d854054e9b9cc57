#pragma once

#include <QList>

/// Rows that stand behind each other.
struct RowRun {
    int first = 0;
    int end = 0; ///< behind the last
};

/// The runs of rows in [first, end) that a test accepts, ascending.
template <typename Test>
QList<RowRun> rowRuns(int first, int end, Test test)
{
    QList<RowRun> runs;
    for (int row = first; row < end; ++row) {
        if (!test(row))
            continue;
        if (!runs.isEmpty() && runs.last().end == row)
            ++runs.last().end;
        else
            runs.append({row, row + 1});
    }
    return runs;
}
