#pragma once

#include "async/Task.h"

#include <QUrl>

#include <stop_token>

/// Where the envelopes of waveforms are made and kept, which stands in a layer of its own. This one makes none.
/// Thread: main.
class Envelopes {
public:
    virtual ~Envelopes() = default;

    /// Sees to it that the envelope of a file is kept, be it made gently now. Ends early, with Cancelled, after a stop.
    /// \return whether there is one. Errors: those of the computation.
    virtual async::Task<bool> prepare(QUrl url, std::stop_token stop);

    /// The one that makes none.
    static Envelopes& none();
};
