#include "app/EnvelopeUpkeep.h"

#include "WaveformScrubber/WaveformCache.h"
#include "core/library/files/FileEvents.h"

void keepEnvelopes(FileEvents& events, WaveformCache& cache, QObject* context)
{
    QObject::connect(&events, &FileEvents::changed, context, [&cache](const FileChange& change) {
        if (change.isSoundSame && change.before && change.after)
            cache.adopt(change.former, *change.before, change.url, *change.after);
    });
}
