#pragma once

#include "core/library/tagwriting/TagFiles.h"
#include "core/model/LoadedTrackMetadata.h"
#include "platform/files/FileStamp.h"

#include <functional>
#include <optional>

/// What saves do on workers: one file each, nothing thrown, because a hostile file may ask for all memory.
namespace SaveJobs {

/// Reads one audio file; nothing for a file that cannot be read.
using Reader = std::function<std::optional<LoadedTrackMetadata>(const QUrl& url, const AudioTags& fallbackTags)>;

/// What a file is looked at for before it is written.
struct Wanted {
    bool tags = false;
    AudioTags fallbackTags; ///< for fields that the file does not supply
    bool inventory = false;
};
/// What was found in a file before its write.
struct Look {
    std::optional<LoadedTrackMetadata> tags; ///< nothing if not wanted or not readable
    bool isMissing = false;                  ///< not readable because there is no such file
    TagInventory inventory;
};
/// Looks at what is wanted and at nothing else.
Look look(TagFiles& files, const Reader& reader, const QUrl& url, Wanted wanted);

/// A file before and after a change of its tags, as far as it could be looked at.
struct Rewrite {
    std::optional<FileStamp> before;
    std::optional<FileStamp> after;
};

/// What came of one write.
struct Written {
    std::optional<TagFileError> failure;
    Rewrite rewrite;   ///< of a success
    QByteArray former; ///< of a picture: the tags that stood before, for TagFiles::putBack()
};
/// \param artwork a picture to be written with the tags.
Written write(TagFiles& files, const TagWrite& write, const std::optional<QByteArray>& artwork);
/// Writes the album alone; an empty one takes it out.
Written assignAlbum(TagFiles& files, const QString& album, const QUrl& url);

/// What a change of whole tags left in a file, by which a later change is found.
struct Left {
    std::optional<FileStamp> stamp;
    /// What it said then; nothing where that need not be the same.
    std::optional<LoadedTrackMetadata> content;
    bool isRewritten = false; ///< by the program itself since, whose stamp this is
};
/// What is put back into one file.
struct PutBack {
    QByteArray tags;                 ///< as TagFiles::present() gave them
    std::optional<AudioTags> fields; ///< where there are none of these; else the tags that the file had at first
    /// What has to be in the file still; nothing: whatever it holds.
    std::optional<Left> expected;
};
/// What came of putting the tags of one file back.
struct Restored {
    bool isHeld = false;      ///< whether there was anything to put back
    bool isLeftAlone = false; ///< the file holds something else than expected
    std::optional<TagFileError> failure;
    std::optional<LoadedTrackMetadata> tags;
    Rewrite rewrite;   ///< whatever became of the read
    QByteArray former; ///< the tags that stood before, for TagFiles::putBack(); empty where they could not be kept
};
/// Puts tags back and reads them.
Restored restore(TagFiles& files, const Reader& reader, const QUrl& url, const PutBack& what);

/// That a file's tags could not be read, so that they were left alone.
TagFileError unreadable(const QUrl& url, bool isMissing = false);

} // namespace SaveJobs
