#pragma once

/// The sound libraries below PortAudio write to standard error whatever they come across while they look for devices.
/// None of it helps anybody; what matters arrives as an error code.
namespace QuietBackends {

void silence();

} // namespace QuietBackends
