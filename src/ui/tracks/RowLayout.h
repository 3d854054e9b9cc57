#pragma once

#include <QList>
#include <QString>

/// One run of rows under a folder header.
struct FolderRun {
    QString path;
    int first = 0; ///< row
    int end = 0;   ///< row behind the last
    bool operator==(const FolderRun&) const = default;
};

/// Where the rows and folder headers of a list stand, in pixels from its top. Every answer takes a search among folders
/// at most, whatever the number of rows.
class RowLayout {
public:
    /// \param runs ascending; may be empty for a list without headers.
    void setRuns(QList<FolderRun> runs) { m_runs = std::move(runs); }
    void setRowCount(int count) { m_rowCount = count; }
    /// Of every row, above 0; headers have a height of their own.
    void setRowHeight(int pixels) { m_rowHeight = pixels; }

    const QList<FolderRun>& runs() const { return m_runs; }
    int rowHeight() const { return m_rowHeight; }
    /// Of all rows and headers, in pixels.
    int height() const;
    /// The upper edge of a row, in pixels from the top of the list. \param row 0 to the number of rows.
    int rowTop(int row) const;
    /// The row at a place; -1 on a header and outside.
    int rowAt(int y) const;
    /// The row at a place, or the one below a header, or the nearest outside; -1 only where there are no rows.
    int nearestRow(int y) const;
    /// The upper edge of a folder's header, likewise. \param run an index of runs().
    int headerTop(int run) const;
    /// The run whose header is at or above a place; -1 without runs.
    int runAt(int y) const;

private:
    QList<FolderRun> m_runs;
    int m_rowCount = 0;
    int m_rowHeight = 1;
};
