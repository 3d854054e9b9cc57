#pragma once

#include "async/Clock.h"
#include "async/Executor.h"
#include "work/Circumstances.h"

#include <QtGlobal>

/// How gently a job goes about its work.
enum class Pace {
    /// It takes all the time that its thread gets.
    Full,
    Gentle, ///< it rests every few milliseconds, so that playback and window stay smooth
};

/// How work of one kind may run now.
struct Allowance {
    int atOnce = 0; ///< 0 pauses: what runs is stopped and returns to the front of its queue
    async::Priority priority = async::Priority::Background;
    Pace pace = Pace::Full;

    bool operator==(const Allowance&) const = default;
};

/// The rule of one kind of background work. A value that lives as long as the program.
struct WorkKind {
    /// Who starts first after a pause and is shown first; lower comes earlier.
    int rank = 0;
    /// The rule itself, a pure function. \param queued keys that wait or run.
    Allowance (*allow)(const Circumstances& now, qsizetype queued) = nullptr;
    /// Kinds of one number never run beside each other; 0 runs beside all.
    int exclusive = 0;
    /// How long nothing begins after playing began.
    async::Duration restAtPlaying{};
    /// How long nothing begins after playing ended, so that a short pause starts nothing.
    async::Duration restAfterPlaying{};
    /// What the status line says, with a place for what is done and one for all.
    const char* text = "";
};
