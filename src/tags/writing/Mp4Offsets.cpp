#include "tags/writing/Mp4Offsets.h"

#include "tags/bytes/ByteReader.h"
#include "tags/writing/Mp4Atoms.h"

#include <algorithm>
#include <initializer_list>
#include <limits>

namespace Mp4Offsets {

namespace {

struct Shift {
    qint64 from = 0;
    qint64 delta = 0;
};

/// \param table "stco" or "co64": version and flags, count, offsets of type T.
template <typename T>
Outcome shiftTable(char* table, qsizetype size, const Shift& shift)
{
    constexpr qsizetype kTableHeaderSize = 8;
    ByteReader reader(QByteArrayView(table, size));
    reader.skip(4);
    const quint32 count = reader.u32be();
    if (reader.hasFailed() || count > quint64(reader.remaining()) / sizeof(T))
        return Outcome::Broken;
    for (quint32 index = 0; index < count; ++index) {
        char* const place = table + kTableHeaderSize + qsizetype(index) * qsizetype(sizeof(T));
        const quint64 offset = qFromBigEndian<T>(place);
        if (offset > quint64(std::numeric_limits<qint64>::max() / 2))
            return Outcome::Broken;
        if (static_cast<qint64>(offset) < shift.from)
            continue;
        const quint64 moved = offset + static_cast<quint64>(shift.delta);
        if (moved > std::numeric_limits<T>::max())
            return Outcome::Impossible;
        qToBigEndian(static_cast<T>(moved), place);
    }
    return Outcome::Done;
}

/// The children of the atom that one type after the other leads to; nothing if it is not there.
std::optional<Mp4Atoms::Children> childrenOf(QByteArrayView track, std::initializer_list<const char*> types,
                                             Outcome& outcome)
{
    for (const char* type : types) {
        const auto children = Mp4Atoms::children(track);
        const Mp4Atoms::Atom* child = children ? children->find(type) : nullptr;
        if (!children)
            outcome = Outcome::Broken;
        if (!child)
            return std::nullopt;
        track = child->body;
    }
    auto found = Mp4Atoms::children(track);
    if (!found)
        outcome = Outcome::Broken;
    return found;
}

/// Whether the sound of a track lies in another file, whose places must not be moved.
bool refersOutside(QByteArrayView track, Outcome& outcome)
{
    const auto information = childrenOf(track, {"mdia", "minf", "dinf"}, outcome);
    const Mp4Atoms::Atom* const references = information ? information->find("dref") : nullptr;
    constexpr qsizetype kHeaderSize = 8; // version, flags, count
    if (!references || references->body.size() < kHeaderSize)
        return false;
    const auto entries = Mp4Atoms::children(references->body.sliced(kHeaderSize));
    if (!entries)
        return true;
    return std::ranges::any_of(entries->atoms, [](const Mp4Atoms::Atom& entry) {
        return entry.body.size() < 4 || (entry.body[3] & 1) == 0; // the flag of "in this file"
    });
}

Outcome shiftTrack(QByteArray& movie, QByteArrayView track, const Shift& shift)
{
    Outcome outcome = Outcome::Done;
    const auto tables = childrenOf(track, {"mdia", "minf", "stbl"}, outcome);
    if (!tables)
        return outcome;
    if (tables->find("saio") || refersOutside(track, outcome))
        return Outcome::Impossible;
    for (const Mp4Atoms::Atom& table : tables->atoms) {
        char* const bytes = movie.data() + (table.body.data() - movie.constData());
        if (table.type == QByteArrayView("stco"))
            outcome = shiftTable<quint32>(bytes, table.body.size(), shift);
        else if (table.type == QByteArrayView("co64"))
            outcome = shiftTable<quint64>(bytes, table.body.size(), shift);
        if (outcome != Outcome::Done)
            break;
    }
    return outcome;
}

} // namespace

Outcome shift(QByteArray& movie, qint64 from, qint64 delta)
{
    if (delta == 0)
        return Outcome::Done;
    movie.detach(); // the views below lead to the bytes that are changed
    const auto tracks = Mp4Atoms::children(movie);
    if (!tracks)
        return Outcome::Broken;
    if (tracks->find("cmov")) // the tables are compressed, and stay as they were
        return Outcome::Impossible;
    for (const Mp4Atoms::Atom& track : tracks->atoms) {
        if (track.type != QByteArrayView("trak"))
            continue;
        if (const Outcome outcome = shiftTrack(movie, track.body, {from, delta}); outcome != Outcome::Done)
            return outcome;
    }
    return Outcome::Done;
}

} // namespace Mp4Offsets
