#pragma once

#include "core/library/workspace/TrackList.h"

#include <QSet>

#include <deque>

/// Requests for tempo that are gone through in slices, each in the order of the list. A value. Thread: main.
class TempoRequests {
public:
    /// Rows of one request.
    struct Slice {
        QList<TrackID> ids; ///< in the order of the list
        bool again = false; ///< whether those that have an estimate want another one
    };

    /// Adds a request behind the others. \param again those that have an estimate want another one.
    void add(QSet<TrackID> ids, bool again);
    bool isEmpty() const { return m_requests.empty(); }
    /// The next slice of the first request, which may be empty; tracks that are not in the list are left out. Empty
    /// also where there is no request.
    Slice next(const TrackList& tracks);

private:
    struct Request {
        QSet<TrackID> ids; ///< still to come
        bool again = false;
        int row = 0;           ///< where the walk over the list stands
        bool hasFound = false; ///< whether this walk found any
    };

    static QList<TrackID> walk(Request& request, const TrackList& tracks);

    std::deque<Request> m_requests;
};
