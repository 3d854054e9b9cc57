#include "analysis/decoding/TemporarySweep.h"

#include <QDir>

namespace TemporarySweep {

namespace {

/// No analysis gives its decoder more time. A younger file is left alone even without a lock, because between its
/// creation and its lock it has none.
constexpr std::chrono::seconds kLongestTimeout{30};

} // namespace

const OwnedTemporaryFile::Naming& decoderOutput()
{
    static const OwnedTemporaryFile::Naming kNaming{QStringLiteral("velmora-bpm-"), QStringLiteral(".pcm")};
    return kNaming;
}

int removeStale()
{
    return OwnedTemporaryFile::removeStale(QDir::tempPath(), decoderOutput(), kLongestTimeout);
}

} // namespace TemporarySweep
