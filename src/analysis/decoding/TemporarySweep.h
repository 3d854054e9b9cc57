#pragma once

#include "platform/process/OwnedTemporaryFile.h"

#include <QString>

/// The files that decoders write and analyses read, and what is left of them when the program was killed.
namespace TemporarySweep {

/// Names of the files: "velmora-bpm-", a UUID, ".pcm".
const OwnedTemporaryFile::Naming& decoderOutput();
/// Deletes the files of that name in the system's folder for temporary files that no living program owns and that are
/// older than the longest time-out of a decoder. For the start of the program; never throws. \return how many. Thread:
/// any, best a worker: the folder may be large.
int removeStale();

} // namespace TemporarySweep
