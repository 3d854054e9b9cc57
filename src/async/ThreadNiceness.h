#pragma once

namespace async {

/// Lowers the calling thread's share of the processor to a nice value (0 to 19), for good. Does nothing for a thread
/// that stands lower already, and on systems whose nice value belongs to the whole process.
void setThreadNiceness(int value);
/// The calling thread's nice value; 0 where there is none per thread.
int threadNiceness();

} // namespace async
