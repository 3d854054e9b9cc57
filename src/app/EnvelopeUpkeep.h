#pragma once

class FileEvents;
class QObject;
class WaveformCache;

/// Has envelopes go along with files that the store rewrites or moves, so that none is computed twice. \param cache
/// outlives the context. \param context ends it. Thread: main.
void keepEnvelopes(FileEvents& events, WaveformCache& cache, QObject* context);
