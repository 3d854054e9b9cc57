#include "core/library/tagwriting/SaveJobs.h"

#include "core/model/Track.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"

namespace SaveJobs {

namespace {

TagFileError named(const QString& text, const QUrl& url, bool isMissing = false)
{
    return TagFileError(VelmoraLocalization::format(text, {FileURL::lastPathComponent(url)}), isMissing);
}

template <typename Change>
std::optional<TagFileError> failureOf(const QUrl& url, const Change& change)
{
    try {
        change();
        return std::nullopt;
    } catch (const TagFileError& error) {
        return error;
    } catch (const std::exception&) {
        return named(QStringLiteral("Не удалось записать файл %@."), url);
    }
}

std::optional<LoadedTrackMetadata> read(const Reader& reader, const QUrl& url, const AudioTags& fallbackTags)
{
    try {
        return reader(url, fallbackTags);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

TagInventory inventoryOf(TagFiles& files, const QUrl& url)
{
    try {
        return files.inventory(url);
    } catch (const std::exception&) {
        TagInventory unknown; // what cannot be looked through may hold anything
        unknown.isUnknown = true;
        return unknown;
    }
}

/// Nothing where they cannot be kept: undo then brings back the fields.
QByteArray present(TagFiles& files, const QUrl& url)
{
    try {
        return files.present(url);
    } catch (const std::exception&) {
        return {};
    }
}

/// By the stamp alone where nobody wrote it since; what the program itself wrote may have been taken back.
bool isAsLeft(const Reader& reader, const QUrl& url, const Left& left)
{
    const std::optional<FileStamp> now = FileStamp::of(url);
    if (now && left.stamp && !now->isSameFile(*left.stamp))
        return false;
    if (!left.isRewritten || !left.content)
        return true;
    const auto present = read(reader, url, Track::fallbackTags(url));
    return present && present->tags == left.content->tags && present->artworkData == left.content->artworkData;
}

template <typename Change>
Written changed(const QUrl& url, const Change& change)
{
    Written result;
    result.rewrite.before = FileStamp::of(url);
    result.failure = failureOf(url, change);
    result.rewrite.after = FileStamp::of(url);
    return result;
}

} // namespace

Look look(TagFiles& files, const Reader& reader, const QUrl& url, Wanted wanted)
{
    Look result;
    if (wanted.tags)
        result.tags = read(reader, url, wanted.fallbackTags);
    result.isMissing = wanted.tags && !result.tags && !FileStamp::of(url);
    if (wanted.inventory)
        result.inventory = inventoryOf(files, url);
    return result;
}

Written write(TagFiles& files, const TagWrite& write, const std::optional<QByteArray>& artwork)
{
    const QByteArray former = artwork ? present(files, write.url) : QByteArray();
    Written written = changed(write.url, [&] {
        if (artwork)
            files.assignArtwork(*artwork, write);
        else
            files.write(write);
    });
    written.former = former;
    return written;
}

Written assignAlbum(TagFiles& files, const QString& album, const QUrl& url)
{
    return changed(url, [&] { files.clean(CleanerField::Album, std::nullopt, album, url); });
}

Restored restore(TagFiles& files, const Reader& reader, const QUrl& url, const PutBack& what)
{
    Restored result;
    result.isHeld = !what.tags.isEmpty() || what.fields || files.holdsOriginal(url);
    if (!result.isHeld)
        return result;
    result.isLeftAlone = what.expected && !isAsLeft(reader, url, *what.expected);
    if (result.isLeftAlone)
        return result;
    result.former = present(files, url);
    const Written written = changed(url, [&] {
        if (!what.tags.isEmpty())
            files.putBack(what.tags, url);
        else if (what.fields)
            files.write({url, *what.fields, TagFieldSet::kAll, true});
        else
            files.restoreOriginal(url);
    });
    result.rewrite = written.rewrite;
    result.failure = written.failure;
    if (!result.failure)
        result.tags = read(reader, url, Track::fallbackTags(url));
    if (!result.failure && !result.tags)
        result.failure = unreadable(url);
    return result;
}

TagFileError unreadable(const QUrl& url, bool isMissing)
{
    return named(QStringLiteral("Теги файла %@ не удалось прочитать, поэтому они не перезаписаны."), url, isMissing);
}

} // namespace SaveJobs
