#pragma once

/// Threads that must answer within milliseconds and never take long ask to be served before all others. Where the
/// system does not grant that to this user they stay as they are.
namespace RealtimeThread {

/// Raises the calling thread, for good: to the real-time class, else to a nice value of -11. Does nothing on systems
/// other than Linux.
void raise();

/// The calling thread while one lives, and for good the threads that are made meanwhile: the sound libraries' own,
/// which stand between the device's callback and the device.
class Scope {
public:
    /// Raises the calling thread like raise().
    Scope();
    /// Gives the calling thread back to the ordinary class at nice value 0.
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

} // namespace RealtimeThread
