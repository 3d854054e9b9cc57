#include "tags/writing/M4aWriter.h"

#include "tags/writing/ByteOrder.h"
#include "tags/writing/FileAtom.h"
#include "tags/writing/Mp4Atoms.h"
#include "tags/writing/Mp4Offsets.h"
#include "tags/writing/Mp4Tags.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>
#include <limits>

namespace M4aWriter {

namespace {

/// Chosen: a movie atom lists every packet of hours of sound in a few megabytes, and a large cover beside it.
constexpr qint64 kMaximumMovieBytes = 256 * 1024 * 1024;

[[noreturn]] void fail(WriteError::Case what)
{
    throw WriteError(what, QStringLiteral("m4a"));
}

void requireBegin(const RewriteSource& source)
{
    if (source.read(0, std::min<qint64>(8, source.size())).mid(4) != "ftyp")
        fail(WriteError::Case::unsupportedFormat);
}

/// The one movie atom. The walk leaves what is too short for an atom at the file's end.
FileAtom findMovie(const RewriteSource& source)
{
    requireBegin(source);
    std::optional<FileAtom> movie;
    for (qint64 offset = 0; source.size() - offset >= 8;) {
        const FileAtom atom = FileAtom::at(source, offset);
        if (atom.type == "moof" || atom.type == "meta") // both hold places in the file that are not known here
            fail(WriteError::Case::rewriteFailed);
        if (atom.type == "moov" && movie)
            source.failCorrupt();
        if (atom.type == "moov")
            movie = atom;
        offset = atom.end();
    }
    if (!movie)
        source.failCorrupt();
    return *movie;
}

/// Keeps the file up to \p end, with the sound marked.
void keepUntil(RewritePlan& plan, const RewriteSource& source, qint64 begin, qint64 end)
{
    while (end - begin >= 8) {
        const FileAtom atom = FileAtom::at(source, begin);
        plan.keep(atom.offset, atom.size);
        if (atom.type == "mdat")
            plan.markSound(atom.bodyOffset(), atom.bodySize());
        begin = atom.end();
    }
    plan.keep(begin, end - begin);
}

QByteArray bodyOf(const FileAtom& movie, const RewriteSource& source)
{
    if (movie.bodySize() > kMaximumMovieBytes)
        fail(WriteError::Case::rewriteFailed);
    return source.read(movie.bodyOffset(), movie.bodySize());
}

} // namespace

RewritePlan planWrite(const RewriteSource& source, const AudioTags& tags)
{
    const QByteArray items = Mp4Tags::items(tags);
    return planWith(source, [&](QByteArrayView movie) { return Mp4Tags::replaced(movie, items); });
}

RewritePlan planClean(const RewriteSource& source, const TagEdits& edits)
{
    return planWith(source, [&](QByteArrayView movie) {
        if (Mp4Tags::hasNumberedKeys(movie))
            fail(WriteError::Case::rewriteFailed);
        return Mp4Tags::filtered(movie, edits);
    });
}

RewritePlan planWith(const RewriteSource& source, const Change& change)
{
    const FileAtom movie = findMovie(source);
    const QByteArray oldBody = bodyOf(movie, source);
    const auto children = Mp4Atoms::children(oldBody);
    if (children && children->find("mvex"))
        fail(WriteError::Case::rewriteFailed);
    std::optional<QByteArray> body = change(oldBody);
    if (!body)
        source.failCorrupt();
    constexpr qint64 kHeaderSize = 8;
    switch (Mp4Offsets::shift(*body, movie.end(), body->size() + kHeaderSize - movie.size)) {
    case Mp4Offsets::Outcome::Done:
        break;
    case Mp4Offsets::Outcome::Broken:
        source.failCorrupt();
    case Mp4Offsets::Outcome::Impossible:
        fail(WriteError::Case::rewriteFailed);
    }
    RewritePlan plan;
    keepUntil(plan, source, 0, movie.offset);
    plan.add(Mp4Atoms::atom("moov", *body));
    keepUntil(plan, source, movie.end(), source.size());
    return plan;
}

QByteArray movie(const RewriteSource& source)
{
    return bodyOf(findMovie(source), source);
}

} // namespace M4aWriter
