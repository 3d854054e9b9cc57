#pragma once

#include "core/model/ArtworkData.h"
#include "core/model/AudioTags.h"
#include "core/model/FreshID.h"
#include "core/model/TagField.h"

#include <QImage>
#include <QSharedDataPointer>
#include <QUrl>
#include <QUuid>

struct LoadedTrackMetadata;

using TrackID = QUuid;

/// One audio file in the workspace: where it is and what was learned about it. A value that is cheap to copy: lists of
/// 100,000 are copied and assigned whole.
class Track {
public:
    /// Identity of the tags and of the artwork of a moment. A function that replaces the tags or the artwork gives
    /// the stamp a fresh value; a result of slow work remembers the stamps it started from.
    struct MetadataVersion {
        QUuid tags = freshID();
        QUuid artwork = freshID();

        bool operator==(const MetadataVersion&) const = default;
    };

    /// Where the tags of a row come from: its file's name, an earlier run of the program, or the file itself.
    enum class TagSource { Guessed, Remembered, Read };

    /// Which list a row stands in, and a load of its metadata goes to.
    enum class MetadataDestination { Library = 0, Analysis = 1, MusicalKey = 2, Duplicates = 3 };

    /// A row without identity, for containers only.
    Track();
    /// A file that has not been read yet: tags guessed from its name, the upper-cased extension as format.
    /// \param url standardized file URL.
    static Track unread(const QUrl& url);
    /// The same with an identity that is known from elsewhere.
    Track(const TrackID& id, const QUrl& url);
    /// A row of an earlier run. Its tags are those of the file or still guesses, so it counts as not read.
    static Track restored(const TrackID& id, const QUrl& url, const AudioTags& tags);
    /// Copies share one value until one of them is changed.
    Track(const Track&);
    Track(Track&&) noexcept;
    Track& operator=(const Track&);
    Track& operator=(Track&&) noexcept;
    ~Track();

    /// Identity of the row: one file in two lists has two.
    const TrackID& id() const;
    /// Location of the file, standardized.
    const QUrl& url() const;
    /// hashOf(url()), made once.
    quint64 urlHash() const;
    /// The stamps that a result of slow work has to have started from.
    const MetadataVersion& metadataVersion() const;
    /// What the row says, which its file need not hold: see editedFields().
    const AudioTags& tags() const;
    double duration() const;                ///< seconds; 0 until loaded
    const QImage& artwork() const;          ///< picture already decoded, if any
    const ArtworkData& artworkData() const; ///< picture as stored in the file, if any
    double bitRate() const;                 ///< bits per second; 0 until loaded
    int bitDepth() const;                   ///< 0 until loaded or where the format has none
    /// The file name's extension in upper case, e.g. "MP3".
    const QString& format() const;
    /// Which sections of the main list show the row; false in the other lists.
    bool isFavorite() const;
    bool isInPlaylist() const;
    bool isInCoverWorkspace() const;
    /// Where the tags come from, but for the fields that were edited since.
    TagSource tagSource() const;
    /// Whether the tags are those of the file, but for edits.
    bool isRead() const { return tagSource() == TagSource::Read; }
    /// The fields that were edited and have not come to the file.
    TagFields editedFields() const;

    /// The same values, stamps included, under another identity.
    Track withID(const TrackID& id) const;
    /// For a copy that is to accept results which were asked for earlier.
    void setMetadataVersion(const MetadataVersion& version);
    /// Replaces the tags and gives them a fresh stamp. What counts as edited stays.
    void replaceTags(const AudioTags& tags);
    /// Takes the chosen fields of \p tags over as edits of the user, which are not in the file yet.
    void edit(const AudioTags& tags, TagFields fields);
    /// These fields are in the file now, or their edit was taken back before it came there. The stamp stays.
    void forgetEdits(TagFields fields);
    /// Replaces the picture and gives it a fresh stamp. \param decoded may be null.
    void replaceArtwork(const ArtworkData& data, const QImage& decoded);
    /// Facts of the file; no stamp moves.
    void setDuration(double seconds);
    void setFormat(const QString& format);
    /// Flags of the main list: which of its sections show the row (LibrarySection::holds).
    void setIsFavorite(bool value);
    void setIsInPlaylist(bool value);
    void setIsInCoverWorkspace(bool value);
    /// Says where the tags come from without touching them or their stamp.
    void setTagSource(TagSource source);

    /// Takes a finished read over by the rule for late results. Of a read of another file nothing is taken. Tags are
    /// taken only if their stamp still is that of \p version, without the fields that are edited; artwork only if its
    /// own stamp still is and no decoded picture stands here; duration, bit rate, bit depth and format always. Stamps
    /// move on only where values differ.
    /// \return whether anything of the track changed.
    bool apply(const LoadedTrackMetadata& metadata, const QUrl& sourceURL, const MetadataVersion& version);

    /// The title, or the file's name without extension where the title is empty.
    QString displayTitle() const;
    /// E.g. "320 kbps"; "— kbps" while unknown.
    QString bitRateText() const;
    /// Names this file's present picture in caches: path, byte count and the first 24 bytes.
    QString artworkCacheKey() const;
    /// The decoded picture: the one at hand, else decoded from the bytes through a cache of 128 entries and 64 MiB. A
    /// null image if there is none, it cannot be decoded, or its bytes were let go. Thread: any; may take tens of
    /// milliseconds.
    QImage displayArtwork() const;

    /// A hash of a file's location, equal for equal URLs; differs between runs of the program.
    static quint64 hashOf(const QUrl& url);
    /// The tags that a file's name suggests: title and artist, parted at the first " - " or such a dash, without a
    /// tempo or key in front; all else empty. Nothing is asked of the disk.
    static AudioTags fallbackTags(const QUrl& url);

    /// Whether both are copies of one value that was not changed since: a test by pointer, for finding changed rows.
    bool isSameValueAs(const Track& other) const { return d == other.d; }

private:
    struct Data;
    QSharedDataPointer<Data> d;
};

Q_DECLARE_TYPEINFO(Track, Q_RELOCATABLE_TYPE);
