#pragma once

/// The sound libraries below PortAudio write to standard error whatever they come across while they look for devices.
/// None of it helps the user; what matters arrives as an error code.
namespace QuietBackends {

/// For the whole process and for good; to be called before PortAudio is started. Does nothing for a library that is
/// not there, and on systems other than Linux.
void silence();

} // namespace QuietBackends
