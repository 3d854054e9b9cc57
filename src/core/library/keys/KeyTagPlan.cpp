#include "core/library/keys/KeyTagPlan.h"

#include "core/library/tagwriting/TagWriting.h"
#include "platform/FileURL.h"

namespace {

/// The row to save through. A row of the key section may be older than its file, so it counts as not read: the save
/// looks into the file first and changes the key there alone. Where the main list's row waits for its first read, that
/// row goes itself and learns what the file holds.
Track savedThrough(const Track& row, const TrackList& tracks, const QString& code)
{
    const std::optional<int> place = tracks.indexOfURL(row.url());
    Track track = place && !tracks.at(*place).isRead() ? tracks.at(*place) : row;
    AudioTags tags = track.tags();
    tags.musicalKey = code;
    track.edit(tags, TagField::MusicalKey);
    track.setTagSource(Track::TagSource::Guessed);
    return track;
}

/// The rows that a code differs from.
QList<int> placesOf(const TrackList& rows, const KeyTagPlan::Codes& codes)
{
    QList<int> places;
    for (auto code = codes.cbegin(); code != codes.cend(); ++code) {
        const std::optional<int> place = rows.indexOfURL(code.key());
        if (place && rows.at(*place).tags().musicalKey != code.value())
            places.append(*place);
    }
    return places;
}

} // namespace

namespace KeyTagPlan {

Plan make(const TrackList& rows, const TrackList& tracks, const QHash<TrackID, MusicalKeyAnalysis>& analyses,
          const QSet<TrackID>& ids)
{
    Plan plan;
    for (const Track& row : rows) {
        const auto analysis = ids.contains(row.id()) ? analyses.constFind(row.id()) : analyses.cend();
        if (analysis == analyses.cend() || plan.codes.contains(row.url()))
            continue;
        const QString code = analysis->key.camelot();
        plan.codes.insert(row.url(), code);
        plan.items.append(itemOf(row, tracks, code));
    }
    return plan;
}

TagSaver::Item itemOf(const Track& row, const TrackList& tracks, const QString& code)
{
    return {savedThrough(row, tracks, code), TagSaver::Others::Stay};
}

std::optional<QList<Track>> withCodes(const TrackList& rows, const Codes& codes, Track::MetadataDestination list)
{
    const bool takesUnread = list == Track::MetadataDestination::Library;
    QList<Track> result = rows.rows();
    bool isChanged = false;
    for (const int place : placesOf(rows, codes)) {
        const Track& row = rows.at(place);
        if (!row.isRead() && !takesUnread)
            continue;
        AudioTags tags = row.tags();
        tags.musicalKey = codes.value(row.url());
        if (list == Track::MetadataDestination::Library)
            result[place].edit(tags, TagField::MusicalKey);
        else
            result[place].replaceTags(tags);
        isChanged = true;
    }
    return isChanged ? std::optional(result) : std::nullopt;
}

Former present(const TrackList& rows, const Codes& codes)
{
    Former former;
    for (const int place : placesOf(rows, codes)) {
        const Track& row = rows.at(place);
        former.keys.insert(row.url(), row.tags().musicalKey);
        if (row.editedFields() & TagField::MusicalKey)
            former.edited.insert(row.url());
    }
    return former;
}

std::optional<QList<Track>> takenBack(const TrackList& rows, const Codes& codes, const Former& former,
                                      const QSet<QUrl>& files)
{
    QList<Track> result = rows.rows();
    bool isChanged = false;
    for (const QUrl& url : files) {
        const std::optional<int> place = former.keys.contains(url) ? rows.indexOfURL(url) : std::nullopt;
        if (!place || rows.at(*place).tags().musicalKey != codes.value(url))
            continue;
        AudioTags tags = rows.at(*place).tags();
        tags.musicalKey = former.keys.value(url);
        result[*place].replaceTags(tags);
        if (!former.edited.contains(url))
            result[*place].forgetEdits(TagField::MusicalKey);
        isChanged = true;
    }
    return isChanged ? std::optional(result) : std::nullopt;
}

QSet<TrackID> differing(const TrackList& tracks, const Codes& codes)
{
    QSet<TrackID> ids;
    for (const int place : placesOf(tracks, codes))
        ids.insert(tracks.at(place).id());
    return ids;
}

} // namespace KeyTagPlan
