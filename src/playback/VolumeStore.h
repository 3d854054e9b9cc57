#pragma once

#include "async/Clock.h"
#include "async/TaskSlot.h"

class Preferences;

/// Keeps the volume between runs. Thread: main.
class VolumeStore {
public:
    /// From the last change to the write, seconds: one write for a whole drag.
    static constexpr double kDelay = 0.25;

    /// Both outlive the store.
    VolumeStore(Preferences& preferences, async::Clock& clock);
    /// Writes what still waits.
    ~VolumeStore();
    VolumeStore(const VolumeStore&) = delete;
    VolumeStore& operator=(const VolumeStore&) = delete;

    /// 0 to 1; the default for a value that is missing or no number.
    double stored() const;
    /// Takes the place of a volume that still waits. \param volume 0 to 1.
    void storeLater(double volume);

private:
    async::Task<> writeLater(std::stop_token stop);
    void write();

    Preferences& m_preferences;
    async::Clock& m_clock;
    double m_waiting = 0;
    async::TaskSlot m_task;
};
