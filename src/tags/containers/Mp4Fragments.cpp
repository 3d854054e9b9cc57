#include "tags/containers/Mp4Fragments.h"

#include "tags/bytes/Atoms.h"
#include "tags/bytes/ByteReader.h"

#include <bit>

// Source: ISO/IEC 14496-12, 8.8.

namespace Mp4Fragments {

namespace {

constexpr quint32 kFlagsMask = 0xFFFFFF;

/// Length of one sample of the track where its fragments do not say.
quint32 usualSampleDuration(const ByteRange& movie, quint32 trackID)
{
    AtomWalker walker(childAtom(movie, "mvex"));
    while (const std::optional<Atom> atom = walker.next()) {
        const QByteArray bytes = atom->body.read(0, 16);
        ByteReader reader(bytes);
        reader.skip(4); // version, flags
        if (atom->type != "trex" || reader.u32be() != trackID)
            continue;
        reader.skip(4); // sample description
        return reader.u32be();
    }
    return 0;
}

/// Length of the samples of an atom "trun".
double runDuration(const ByteRange& run, quint32 usual)
{
    enum Flag : quint32 { HasOffset = 1, HasFirstFlags = 4, HasDuration = 0x100, HasAnyColumn = 0xF00 };
    const QByteArray bytes = run.read(0, run.size());
    ByteReader reader(bytes);
    const quint32 flags = reader.u32be() & kFlagsMask;
    const quint32 count = reader.u32be();
    if (reader.hasFailed())
        return 0;
    if (!(flags & HasDuration))
        return static_cast<double>(count) * usual;
    reader.skip((flags & HasOffset ? 4 : 0) + (flags & HasFirstFlags ? 4 : 0));
    const int otherColumns = std::popcount(flags & HasAnyColumn) - 1;
    double sum = 0;
    for (quint32 index = 0; index < count && !reader.isAtEnd(); ++index) {
        sum += reader.u32be(); // the first column
        reader.skip(qint64{4} * otherColumns);
    }
    return sum;
}

/// Length of an atom "traf"; 0 for another track.
double trackFragmentDuration(const ByteRange& fragment, quint32 trackID, quint32 usual)
{
    enum Flag : quint32 { HasOffset = 1, HasDescription = 2, HasDuration = 8 };
    const QByteArray header = childAtom(fragment, "tfhd").read(0, 24);
    ByteReader reader(header);
    const quint32 flags = reader.u32be() & kFlagsMask;
    if (reader.u32be() != trackID || reader.hasFailed())
        return 0;
    reader.skip((flags & HasOffset ? 8 : 0) + (flags & HasDescription ? 4 : 0));
    if (flags & HasDuration)
        usual = reader.u32be();
    double sum = 0;
    AtomWalker walker(fragment);
    while (const std::optional<Atom> atom = walker.next()) {
        if (atom->type == "trun")
            sum += runDuration(atom->body, usual);
    }
    return sum;
}

} // namespace

std::optional<double> statedDuration(const ByteRange& movie)
{
    const QByteArray bytes = childAtom(childAtom(movie, "mvex"), "mehd").read(0, 12);
    ByteReader reader(bytes);
    const bool isLong = reader.u8() == 1;
    reader.skip(3);
    const auto duration = static_cast<double>(isLong ? reader.u64be() : reader.u32be());
    return duration > 0 ? std::optional(duration) : std::nullopt;
}

std::optional<double> countedDuration(const ByteRange& file, const ByteRange& movie, quint32 trackID)
{
    const quint32 usual = usualSampleDuration(movie, trackID);
    double sum = 0;
    AtomWalker fragments(file);
    while (const std::optional<Atom> atom = fragments.next()) {
        if (atom->type != "moof")
            continue;
        AtomWalker tracks(atom->body);
        while (const std::optional<Atom> track = tracks.next()) {
            if (track->type == "traf")
                sum += trackFragmentDuration(track->body, trackID, usual);
        }
    }
    return sum > 0 ? std::optional(sum) : std::nullopt;
}

} // namespace Mp4Fragments
