#include "core/library/session/SessionCoding.h"
#include "platform/json/JsonReader.h"

#include <cstdlib>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

/// Whatever passes for a session is JSON, has counts, and is the same after it was written and read again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArrayView bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const bool isJson = JsonReader::isValid(bytes);
    const auto counts = SessionCoding::counts(bytes);
    const std::optional<SessionRecord> session = SessionCoding::decode(bytes);
    require(!counts || isJson);
    if (!session)
        return 0;
    require(isJson && counts);
    const QByteArray written = SessionCoding::encode(*session);
    const std::optional<SessionRecord> again = SessionCoding::decode(written);
    require(again && again->tracks.size() == session->tracks.size() && again->selectedIDs == session->selectedIDs);
    require(again->tempo == session->tempo && again->musicalKeyAnalyses == session->musicalKeyAnalyses);
    require(SessionCoding::counts(written)->tracks == session->tracks.size());
    return 0;
}
