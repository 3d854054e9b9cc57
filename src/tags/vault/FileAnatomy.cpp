#include "tags/vault/FileAnatomy.h"

#include "tags/vault/FormDigest.h"
#include "tags/vault/MovieForm.h"
#include "tags/writing/AiffWriter.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/FileAtom.h"
#include "tags/writing/FlacBlocks.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/RiffInfoWriter.h"
#include "tags/writing/TagSizes.h"
#include "tags/writing/TrailerParts.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace {

using Stretch = FileAnatomy::Stretch;

/// Chosen: as in the writer of M4A files.
constexpr qint64 kMaximumMovieBytes = 256 * 1024 * 1024;

/// What the walk through one kind of file finds.
struct Parts {
    std::vector<Stretch> sound;
    FormDigest other;

    void addSound(qint64 offset, qint64 length)
    {
        if (length > 0)
            sound.push_back({offset, length});
    }
};

void addStretch(FormDigest& digest, const RewriteSource& source, qint64 offset, qint64 length)
{
    constexpr qint64 kBlockSize = 64 * 1024;
    source.requireWithin(source.size(), offset, length);
    digest.add(length);
    for (qint64 done = 0; done < length; done += kBlockSize)
        digest.addRaw(source.read(offset + done, std::min(kBlockSize, length - done)));
}

/// The sound of MPEG and FLAC files from \p start on: without what any writer of tags may touch behind it, though the
/// plain ones leave some of that alone.
void addSoundWithoutTrailer(Parts& parts, const RewriteSource& source, qint64 start)
{
    const TrailerParts::Read read = [&](qint64 offset, qint64 count) { return source.read(offset, count); };
    parts.addSound(start, TrailerParts::soundEnd(read, source.size(), start) - start);
}

Parts mp3Parts(const RewriteSource& source)
{
    Parts parts;
    const TrailerParts::Read read = [&](qint64 offset, qint64 count) { return source.read(offset, count); };
    addSoundWithoutTrailer(parts, source, TagSizes::behindId3Tags(read, source.size(), source.path()));
    return parts;
}

Parts flacParts(const RewriteSource& source)
{
    constexpr quint8 kPadding = 1;
    Parts parts;
    FlacBlockWalker walker(source);
    while (const std::optional<FlacBlock> block = walker.next()) {
        if (block->type == kPadding || block->type == FlacBlock::VorbisComment || block->type == FlacBlock::Picture)
            continue;
        parts.other.add(block->type);
        addStretch(parts.other, source, block->bodyOffset(), block->bodySize);
    }
    addSoundWithoutTrailer(parts, source, walker.position());
    return parts;
}

bool isTagChunk(const FileChunk& chunk, const ChunkForm& form, const RewriteSource& source)
{
    if (ChunkTagWriter::isID3(chunk))
        return true;
    if (&form == &ChunkForm::riff())
        return RiffInfoWriter::isInfo(chunk, source);
    return AiffWriter::isText(chunk);
}

/// Bytes at the end that are too short for a chunk count as tags: a save drops them.
Parts chunkParts(const RewriteSource& source, const ChunkForm& form)
{
    Parts parts;
    form.requireHeader(source);
    parts.other.add(source.read(ChunkForm::kHeaderSize, 4));
    FileChunkWalker walker(form, source, ChunkForm::kFileHeaderSize, source.size());
    while (const std::optional<FileChunk> chunk = walker.next()) {
        if (isTagChunk(*chunk, form, source))
            continue;
        parts.other.add(chunk->id);
        if (chunk->id == form.soundID())
            parts.addSound(chunk->bodyOffset(), chunk->bodySize);
        else
            addStretch(parts.other, source, chunk->bodyOffset(), chunk->bodySize);
    }
    return parts;
}

Parts wavParts(const RewriteSource& source)
{
    return chunkParts(source, ChunkForm::riff());
}

Parts aiffParts(const RewriteSource& source)
{
    return chunkParts(source, ChunkForm::aiff());
}

/// Behind the last one may stand what is too short for another.
std::vector<FileAtom> topAtoms(const RewriteSource& source)
{
    std::vector<FileAtom> atoms;
    for (qint64 offset = 0; source.size() - offset >= 8; offset = atoms.back().end())
        atoms.push_back(FileAtom::at(source, offset));
    return atoms;
}

Parts m4aParts(const RewriteSource& source)
{
    const QString extension = QStringLiteral("m4a");
    if (source.read(0, std::min<qint64>(8, source.size())).mid(4) != "ftyp")
        throw WriteError(WriteError::Case::unsupportedFormat, extension);
    Parts parts;
    const std::vector<FileAtom> atoms = topAtoms(source);
    for (const FileAtom& atom : atoms) {
        if (atom.type == "mdat")
            parts.addSound(atom.bodyOffset(), atom.bodySize());
    }
    for (const FileAtom& atom : atoms) {
        if (atom.type == "mdat" || atom.type == "free" || atom.type == "skip" || atom.type == "wide")
            continue;
        parts.other.add(atom.type);
        if (atom.type != "moov") {
            addStretch(parts.other, source, atom.bodyOffset(), atom.bodySize());
            continue;
        }
        if (atom.bodySize() > kMaximumMovieBytes)
            throw WriteError(WriteError::Case::rewriteFailed, extension);
        if (!MovieForm::add(parts.other, source.read(atom.bodyOffset(), atom.bodySize()), parts.sound))
            source.failCorrupt();
    }
    const qint64 end = atoms.back().end();
    addStretch(parts.other, source, end, source.size() - end);
    return parts;
}

struct Kind {
    QLatin1StringView extension;
    Parts (*read)(const RewriteSource& source);
};

/// The kinds whose tags are written.
constexpr Kind kKinds[] = {
    {QLatin1StringView("mp3"), &mp3Parts},  {QLatin1StringView("flac"), &flacParts},
    {QLatin1StringView("wav"), &wavParts},  {QLatin1StringView("aiff"), &aiffParts},
    {QLatin1StringView("aif"), &aiffParts}, {QLatin1StringView("m4a"), &m4aParts},
};

const Kind* find(const QString& extension)
{
    const auto found = std::ranges::find_if(
        kKinds, [&](const Kind& kind) { return extension.compare(kind.extension, Qt::CaseInsensitive) == 0; });
    return found == std::end(kKinds) ? nullptr : &*found;
}

/// The sound's bytes as if they stood one behind the other.
class JoinedSound {
public:
    JoinedSound(const RewriteSource& source, const std::vector<Stretch>& sound)
        : m_source(source)
        , m_sound(sound)
    {
    }

    /// Adds the bytes from \p begin to \p end. Calls go forward.
    void addTo(FormDigest& digest, qint64 begin, qint64 end)
    {
        while (begin < end) {
            while (begin >= m_before + m_sound[m_index].length)
                m_before += m_sound[m_index++].length;
            const Stretch& stretch = m_sound[m_index];
            const qint64 count = std::min(end, m_before + stretch.length) - begin;
            digest.addRaw(m_source.read(stretch.offset + begin - m_before, count));
            begin += count;
        }
    }

private:
    const RewriteSource& m_source;
    const std::vector<Stretch>& m_sound;
    size_t m_index = 0;
    qint64 m_before = 0; ///< length of the stretches before m_index
};

QByteArray digestOfSound(const RewriteSource& source, const std::vector<Stretch>& sound)
{
    constexpr qint64 kBlockCount = FileAnatomy::kSoundSampleSize / FileAnatomy::kSoundBlockSize;
    FormDigest digest;
    qint64 length = 0;
    for (const Stretch& stretch : sound) {
        digest.add(stretch.length);
        length += stretch.length;
    }
    JoinedSound joined(source, sound);
    if (length <= FileAnatomy::kSoundSampleSize) {
        joined.addTo(digest, 0, length);
        return digest.result();
    }
    const qint64 lastBegin = length - FileAnatomy::kSoundBlockSize;
    for (qint64 block = 0; block < kBlockCount; ++block) {
        const qint64 begin = lastBegin / (kBlockCount - 1) * block;
        const qint64 placed = block == kBlockCount - 1 ? lastBegin : begin;
        joined.addTo(digest, placed, placed + FileAnatomy::kSoundBlockSize);
    }
    return digest.result();
}

} // namespace

std::vector<FileAnatomy::Stretch> FileAnatomy::rest(qint64 fileSize) const
{
    std::vector<Stretch> pieces;
    qint64 begin = 0;
    for (const Stretch& stretch : sound) {
        pieces.push_back({begin, stretch.offset - begin});
        begin = stretch.end();
    }
    pieces.push_back({begin, fileSize - begin});
    return pieces;
}

bool FileAnatomy::isKnown(const QString& extension)
{
    return find(extension) != nullptr;
}

FileAnatomy FileAnatomy::read(const RewriteSource& source, const QString& extension)
{
    const Kind* const kind = find(extension);
    Q_ASSERT(kind);
    Parts parts = kind->read(source);
    QByteArray soundDigest = digestOfSound(source, parts.sound);
    return {std::move(parts.sound), std::move(soundDigest), parts.other.result()};
}
