#pragma once

#include "core/library/session/SessionRecord.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// The session file's JSON, described in docs/formats/session.md. On disk, never change. Thread: any.
namespace SessionCoding {

/// The whole file in UTF-8.
QByteArray encode(const SessionRecord& record);
/// Nothing for what is no JSON, lacks a required key anywhere, or holds a value of another type under a known key.
/// Unknown keys are passed over. Tracks count as read, have standardized URLs, and favourites are in Covers.
std::optional<SessionRecord> decode(QByteArrayView bytes);

/// How much a session holds: what decides whether a write loses something.
struct Counts {
    qint64 tracks = 0;
    qint64 favorites = 0;

    bool operator==(const Counts&) const = default;
};
/// One pass over the bytes, building nothing; nothing for what is no JSON or has no such list.
std::optional<Counts> counts(QByteArrayView bytes);

} // namespace SessionCoding
