#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

/// Something behind the sound of an MPEG or FLAC file.
struct TrailerPart {
    /// Lyrics is a block of Lyrics3, which no writer changes.
    enum class Kind { Id3v1, Ape, Lyrics };
    Kind kind = Kind::Id3v1;
    /// In bytes from the file's begin; the size is that of the whole part.
    qint64 offset = 0;
    qint64 size = 0;
};

/// Looks from the end of a file for what may stand behind its sound. Each look depends on nothing but the bytes before
/// \p end, so that taking the last parts away leaves the others to be found as before.
namespace TrailerParts {

/// Gives exactly so many bytes at an offset, or throws.
using Read = std::function<QByteArray(qint64 offset, qint64 count)>;

/// The ID3v1 or APEv2 tag that ends at \p end. An APEv2 block whose flags call it a header is no tag: what it belongs
/// to would have to stand behind it.
/// \param lowerBound where the sound begins; nothing before it is looked at.
/// \param path for errors: FileError (fileReadCorruptFile) for a tag that would begin before the sound.
std::optional<TrailerPart> tagBefore(const Read& read, qint64 end, qint64 lowerBound, const QString& path);
/// The same, or a block of Lyrics3.
std::optional<TrailerPart> partBefore(const Read& read, qint64 end, qint64 lowerBound, const QString& path);

/// Where the first of all these parts begins; a broken one counts as sound, as no writer goes on before it.
qint64 soundEnd(const Read& read, qint64 fileSize, qint64 lowerBound);

} // namespace TrailerParts
