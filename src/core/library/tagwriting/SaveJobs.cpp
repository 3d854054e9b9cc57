#include "core/library/tagwriting/SaveJobs.h"

#include "core/model/Track.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"

namespace SaveJobs {

namespace {

TagFileError named(const QString& text, const QUrl& url)
{
    return TagFileError(VelmoraLocalization::format(text, {FileURL::lastPathComponent(url)}), false);
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
        unknown.otherEntries = 1;
        return unknown;
    }
}

} // namespace

Look look(TagFiles& files, const Reader& reader, const QUrl& url, Wanted wanted)
{
    Look result;
    if (wanted.tags)
        result.tags = read(reader, url, wanted.fallbackTags);
    if (wanted.inventory)
        result.inventory = inventoryOf(files, url);
    return result;
}

Written write(TagFiles& files, const TagWrite& write, const std::optional<QByteArray>& artwork)
{
    Written result;
    result.rewrite.before = FileStamp::of(write.url);
    result.failure = failureOf(write.url, [&] {
        if (artwork)
            files.assignArtwork(*artwork, write);
        else
            files.write(write);
    });
    result.rewrite.after = FileStamp::of(write.url);
    return result;
}

Restored restore(TagFiles& files, const Reader& reader, const QUrl& url)
{
    Restored result;
    result.isHeld = files.holdsOriginal(url);
    if (!result.isHeld)
        return result;
    result.rewrite.before = FileStamp::of(url);
    result.failure = failureOf(url, [&] { files.restoreOriginal(url); });
    result.rewrite.after = FileStamp::of(url);
    if (!result.failure)
        result.tags = read(reader, url, Track::fallbackTags(url));
    if (!result.failure && !result.tags)
        result.failure = unreadable(url);
    return result;
}

TagFileError unreadable(const QUrl& url)
{
    return named(QStringLiteral("Теги файла %@ не удалось прочитать, поэтому они не перезаписаны."), url);
}

} // namespace SaveJobs
