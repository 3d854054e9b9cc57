#pragma once

#include "ui/context/WindowContext.h"
#include "ui/tracks/RowLayout.h"

#include <QHash>

class QPainter;
class QRect;
class TrackListModel;

/// Draws the headers of folders: name, place, number of tracks, total length. A part of the table. Totals are summed
/// when a header is first drawn, and kept until forget().
class FolderHeader {
public:
    FolderHeader(const WindowContext& context, const TrackListModel& model)
        : m_context(context)
        , m_model(model)
    {
    }

    /// Name, count and length of a folder, in one row.
    void paint(QPainter& painter, const QRect& rect, const FolderRun& run) const;
    /// The rows changed; totals are summed again when they are next shown.
    void forget() { m_facts.clear(); }

private:
    const QString& facts(const FolderRun& run) const;

    const WindowContext m_context;
    const TrackListModel& m_model;
    mutable QHash<int, QString> m_facts; ///< by first row
};
