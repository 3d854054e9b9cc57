#include "core/model/Track.h"

#include "core/model/DecodedPictures.h"
#include "core/model/LoadedTrackMetadata.h"
#include "platform/FileURL.h"

#include <QRegularExpression>

#include <cmath>

struct Track::Data : QSharedData {
    TrackID id;
    QUrl url;
    quint64 urlHash = 0;
    MetadataVersion metadataVersion{QUuid(), QUuid()};
    AudioTags tags;
    double duration = 0;
    QImage artwork;
    ArtworkData artworkData;
    double bitRate = 0;
    int bitDepth = 0;
    QString format;
    bool isFavorite = false;
    bool isInPlaylist = false;
    bool isInCoverWorkspace = false;
    TagSource tagSource = TagSource::Guessed;
    TagFields editedFields;
};

namespace {

DecodedPictures& decodedPictures()
{
    static DecodedPictures pictures;
    return pictures;
}

QString withoutExtension(const QString& fileName)
{
    const qsizetype point = fileName.lastIndexOf(u'.');
    return point > 0 ? fileName.first(point) : fileName;
}

/// An optional leading tempo and an optional leading key, each followed by separators.
const QRegularExpression& fallbackPrefixPattern()
{
    static const QRegularExpression kPattern(
        QStringLiteral(R"(^\s*(?:(?:\d{2,3}(?:\.\d+)?)\s*[-_. ]+)?(?:(?:\d{1,2}[ABab]|[A-G](?:#|b)?m?)\s*[-_. ]+)?)"),
        QRegularExpression::UseUnicodePropertiesOption);
    return kPattern;
}

/// Whether the prefix pattern could take anything of a name: it begins with a blank, a digit, or a note. Most names do
/// not, and asking is far cheaper than trying.
bool mayHavePrefix(QStringView name)
{
    if (name.isEmpty())
        return false;
    const QChar first = name.front();
    if (first.isSpace() || first.isDigit())
        return true;
    if (first < u'A' || first > u'G' || name.size() < 2)
        return false;
    return name[1].isSpace() || QStringView(u"#bm-_.").contains(name[1]);
}

/// \param fileName with its extension.
AudioTags tagsOfName(const QString& fileName)
{
    QString name = withoutExtension(fileName);
    if (mayHavePrefix(name)) {
        const QRegularExpressionMatch prefix = fallbackPrefixPattern().match(name);
        if (prefix.hasMatch() && prefix.capturedLength() >= 1)
            name = name.sliced(prefix.capturedLength()).trimmed();
    }
    static const QString kSeparators[] = {QStringLiteral(" - "), QStringLiteral(" – "), QStringLiteral(" — ")};
    AudioTags tags;
    for (const QString& separator : kSeparators) {
        const qsizetype place = name.indexOf(separator);
        if (place < 0)
            continue;
        tags.artist = name.first(place);
        tags.title = name.sliced(place + separator.size());
        return tags;
    }
    tags.title = name;
    return tags;
}

} // namespace

Track::Track()
    : d(new Data)
{
}

Track::Track(const TrackID& id, const QUrl& url)
    : d(new Data)
{
    d->id = id;
    d->url = url;
    d->urlHash = hashOf(url);
    d->metadataVersion = MetadataVersion();
    const QString name = FileURL::lastPathComponent(url);
    d->tags = tagsOfName(name);
    d->format = FileURL::extensionOf(name).toUpper();
}

Track Track::unread(const QUrl& url)
{
    return Track(freshID(), url);
}

Track Track::restored(const TrackID& id, const QUrl& url, const AudioTags& tags)
{
    Track track;
    track.d->id = id;
    track.d->url = url;
    track.d->urlHash = hashOf(url);
    track.d->metadataVersion = MetadataVersion();
    track.d->tags = tags;
    track.d->tagSource = TagSource::Remembered;
    track.d->format = FileURL::extensionOf(FileURL::lastPathComponent(url)).toUpper();
    return track;
}

Track::Track(const Track&) = default;
Track::Track(Track&&) noexcept = default;
Track& Track::operator=(const Track&) = default;
Track& Track::operator=(Track&&) noexcept = default;
Track::~Track() = default;

const TrackID& Track::id() const
{
    return d->id;
}
const QUrl& Track::url() const
{
    return d->url;
}
quint64 Track::urlHash() const
{
    return d->urlHash;
}

quint64 Track::hashOf(const QUrl& url)
{
    return qHash(url);
}

const Track::MetadataVersion& Track::metadataVersion() const
{
    return d->metadataVersion;
}
const AudioTags& Track::tags() const
{
    return d->tags;
}
double Track::duration() const
{
    return d->duration;
}
const QImage& Track::artwork() const
{
    return d->artwork;
}
const ArtworkData& Track::artworkData() const
{
    return d->artworkData;
}
double Track::bitRate() const
{
    return d->bitRate;
}
int Track::bitDepth() const
{
    return d->bitDepth;
}
const QString& Track::format() const
{
    return d->format;
}
bool Track::isFavorite() const
{
    return d->isFavorite;
}
bool Track::isInPlaylist() const
{
    return d->isInPlaylist;
}
bool Track::isInCoverWorkspace() const
{
    return d->isInCoverWorkspace;
}
Track::TagSource Track::tagSource() const
{
    return d->tagSource;
}
TagFields Track::editedFields() const
{
    return d->editedFields;
}

Track Track::withID(const TrackID& id) const
{
    Track copy = *this;
    copy.d->id = id;
    return copy;
}

void Track::setMetadataVersion(const MetadataVersion& version)
{
    d->metadataVersion = version;
}
void Track::setDuration(double seconds)
{
    d->duration = seconds;
}
void Track::setFormat(const QString& format)
{
    d->format = format;
}
void Track::setIsFavorite(bool value)
{
    d->isFavorite = value;
}
void Track::setIsInPlaylist(bool value)
{
    d->isInPlaylist = value;
}
void Track::setIsInCoverWorkspace(bool value)
{
    d->isInCoverWorkspace = value;
}
void Track::setTagSource(TagSource source)
{
    d->tagSource = source;
}

void Track::replaceTags(const AudioTags& tags)
{
    d->tags = tags;
    d->metadataVersion.tags = freshID();
}

void Track::edit(const AudioTags& tags, TagFields fields)
{
    replaceTags(TagFieldSet::merged(std::as_const(d)->tags, tags, fields));
    d->editedFields |= fields;
}

void Track::forgetEdits(TagFields fields)
{
    if (std::as_const(d)->editedFields & fields)
        d->editedFields &= ~fields;
}

void Track::replaceArtwork(const ArtworkData& data, const QImage& decoded)
{
    d->artworkData = data;
    d->artwork = decoded;
    d->metadataVersion.artwork = freshID();
}

bool Track::apply(const LoadedTrackMetadata& metadata, const QUrl& sourceURL, const MetadataVersion& version)
{
    const Data& old = *std::as_const(d);
    if (old.url != sourceURL)
        return false;
    const bool tagsFit = old.metadataVersion.tags == version.tags;
    const bool becomesRead = tagsFit && old.tagSource != TagSource::Read;
    const AudioTags arriving = TagFieldSet::merged(metadata.tags, old.tags, old.editedFields);
    const bool tagsMove = tagsFit && old.tags != arriving;
    const bool artworkMoves = old.metadataVersion.artwork == version.artwork && old.artwork.isNull() &&
                              !(old.artworkData == metadata.artworkData);
    const bool factsMove = old.duration != metadata.duration || old.bitRate != metadata.bitRate ||
                           old.bitDepth != metadata.bitDepth || old.format != metadata.format;
    if (!tagsMove && !artworkMoves && !factsMove && !becomesRead)
        return false;
    if (becomesRead)
        d->tagSource = TagSource::Read;
    if (tagsMove)
        replaceTags(arriving);
    if (artworkMoves)
        replaceArtwork(metadata.artworkData, QImage());
    d->duration = metadata.duration;
    d->bitRate = metadata.bitRate;
    d->bitDepth = metadata.bitDepth;
    d->format = metadata.format;
    return true;
}

QString Track::displayTitle() const
{
    return d->tags.title.isEmpty() ? withoutExtension(FileURL::lastPathComponent(d->url)) : d->tags.title;
}

QString Track::bitRateText() const
{
    if (d->bitRate > 0)
        return QString::number(std::llround(d->bitRate / 1000)) + QStringLiteral(" kbps");
    return QStringLiteral("— kbps");
}

QString Track::artworkCacheKey() const
{
    const QString path = FileURL::standardizedPath(d->url);
    if (d->artworkData.isNull())
        return path + QStringLiteral("#none");
    return path + u'#' + QString::number(d->artworkData.byteCount()) + u'#' +
           QString::fromLatin1(d->artworkData.prefix().toBase64());
}

QImage Track::displayArtwork() const
{
    if (!d->artwork.isNull() || d->artworkData.isNull())
        return d->artwork;
    const QString key = artworkCacheKey();
    if (QImage cached = decodedPictures().find(key); !cached.isNull())
        return cached;
    QImage image = QImage::fromData(d->artworkData.bytes());
    if (!image.isNull())
        decodedPictures().store(key, image, d->artworkData.byteCount());
    return image;
}

AudioTags Track::fallbackTags(const QUrl& url)
{
    return tagsOfName(FileURL::lastPathComponent(url));
}
