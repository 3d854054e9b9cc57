#pragma once

/// Threads that must answer within milliseconds and never take long ask to be served before all others. Where the
/// system does not grant that to this user they stay as they are.
namespace RealtimeThread {

/// The calling thread, for good.
void raise();

/// The calling thread while one lives, and for good the threads that are made meanwhile: the sound libraries' own,
/// which stand between the device's callback and the device.
class Scope {
public:
    Scope();
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

} // namespace RealtimeThread
