#pragma once

/// A disk whose fsync takes its time. Linked before the system's library or preloaded, it stands in front of fsync and
/// fdatasync of the whole process; preloaded into a program, VELMORA_FSYNC_DELAY (milliseconds) sets the delay:
/// LD_PRELOAD=build/tests/support/libslow_fsync.so VELMORA_FSYNC_DELAY=4000 build/bin/velmora. Thread: any.
extern "C" {
/// Milliseconds for every call from now on; a call that waits already goes on when its time or the new one is over.
void setFsyncDelay(int milliseconds);
/// Calls that wait at this moment.
int waitingFsyncs();
}
