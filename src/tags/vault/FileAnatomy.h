#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

class RewriteSource;

/// A file as the tag vault sees it: sound, tags, and what is neither. A value.
struct FileAnatomy {
    struct Stretch {
        qint64 offset = 0;
        qint64 length = 0; ///< bytes

        qint64 end() const { return offset + length; }
        bool operator==(const Stretch&) const = default;
    };

    /// The stretches that the tag writers compare before a swap, in order, none empty.
    std::vector<Stretch> sound;
    /// Of the sound's lengths and of some of its bytes: see kSoundSampleSize.
    QByteArray soundDigest;
    /// Of what is neither sound nor tag nor padding, in a form that no writer of tags changes.
    QByteArray otherDigest;

    /// What lies before, between and behind the stretches of sound: one more than those are, empty ones included.
    std::vector<Stretch> rest(qint64 fileSize) const;

    /// Shorter sound goes into its digest whole; of longer one so many bytes in blocks of kSoundBlockSize, evenly
    /// spread, the first and the last included. Chosen: a millisecond's work. On disk, never change.
    static constexpr qint64 kSoundSampleSize = 512 * 1024;
    static constexpr qint64 kSoundBlockSize = 32 * 1024;

    /// \param extension without the point, in letters of either case.
    static bool isKnown(const QString& extension);
    /// Reads headers, what is neither sound nor tags, and the sample. \param extension a known one.
    /// Errors: FileError (fileReadCorruptFile) and WriteError (unsupportedFormat) where the tag writers throw them for
    /// every change of the file; WriteError (rewriteFailed) for a movie atom of more than 256 MiB.
    static FileAnatomy read(const RewriteSource& source, const QString& extension);
};
