#include "core/library/session/WorkspaceLoad.h"

#include "core/library/session/SessionCoding.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/model/LibrarySection.h"
#include "platform/FileURL.h"

namespace WorkspaceLoad {

namespace {

/// A session with the bytes that it was read from.
struct Source {
    SessionRecord record;
    QByteArray bytes;
    bool isPending = false;
};

std::optional<Source> sourceOf(const std::optional<QByteArray>& bytes)
{
    if (!bytes || bytes->isEmpty())
        return std::nullopt;
    std::optional<SessionRecord> record = SessionCoding::decode(*bytes);
    return record ? std::optional(Source{std::move(*record), *bytes}) : std::nullopt;
}

std::optional<Source> bestSource(WorkspaceSessionStorage& storage, const QByteArray& legacyBytes)
{
    if (std::optional<Source> pending = sourceOf(storage.readPendingRestore())) {
        pending->isPending = true;
        keepReplaced(storage);
        return pending;
    }
    if (std::optional<Source> present = sourceOf(storage.readSession()))
        return present;
    return sourceOf(legacyBytes);
}

/// The values whose files are there. \param place of the first one's answer; moves on behind the last one's.
template <typename Value>
QList<Value> presentOf(const QList<Value>& list, const std::vector<bool>& present, size_t& place)
{
    QList<Value> kept;
    for (const Value& value : list) {
        if (present[place++])
            kept.append(value);
    }
    return kept;
}

void keepNamed(WorkspaceSessionStorage& storage, const QByteArray& bytes)
{
    try {
        storage.createCheckpoint(bytes, WorkspaceSessionStorage::Kind::LeftOut);
    } catch (const SessionStorageError&) {
        // Said by the count alone, then; the file itself still names them until the next save.
    }
}

void filterByTracks(SessionRecord& record)
{
    QSet<TrackID> ids;
    ids.reserve(record.tracks.size());
    for (const QList<Track>* list :
         {&record.tracks, &record.analysisTracks, &record.keyAnalysisTracks, &record.duplicateTracks}) {
        for (const Track& track : *list)
            ids.insert(track.id());
    }
    const auto isGone = [&](const auto& entry) { return !ids.contains(entry.key()); };
    record.tempo.estimatedBPMByTrackID.removeIf(isGone);
    record.tempo.estimatedBPMConfidenceByTrackID.removeIf(isGone);
    record.musicalKeyAnalyses.removeIf(isGone);
}

/// Two rows of one list never have one identity, whatever a foreign file says: the first stays. Each row is asked about
/// once, for the answer remembers; a list without repeats stays shared.
void dropRepeated(QList<Track>& tracks)
{
    QSet<TrackID> met;
    met.reserve(tracks.size());
    const auto isRepeated = [&met](const Track& track) {
        const qsizetype before = met.size();
        met.insert(track.id());
        return met.size() == before;
    };
    const auto first = std::find_if(tracks.cbegin(), tracks.cend(), isRepeated);
    if (first == tracks.cend())
        return;
    QList<Track> kept(tracks.cbegin(), first);
    std::copy_if(first + 1, tracks.cend(), std::back_inserter(kept), std::not_fn(isRepeated));
    tracks = std::move(kept);
}

const QList<Track>& listOf(LibraryTab tab, const SessionRecord& record)
{
    switch (LibrarySection::of(tab).list) {
    case Track::MetadataDestination::Analysis:
        return record.analysisTracks;
    case Track::MetadataDestination::MusicalKey:
        return record.keyAnalysisTracks;
    case Track::MetadataDestination::Duplicates:
        return record.duplicateTracks;
    case Track::MetadataDestination::Library:
        break;
    }
    return record.tracks;
}

SectionSelection reduced(LibraryTab tab, const SectionSelection& wanted, const SessionRecord& record)
{
    SectionSelection found;
    if (wanted.ids.isEmpty() && !wanted.focusedID)
        return found;
    for (const Track& track : listOf(tab, record)) {
        if (!LibrarySection::of(tab).holds(track))
            continue;
        if (wanted.ids.contains(track.id()))
            found.ids.insert(track.id());
        if (wanted.focusedID == track.id())
            found.focusedID = track.id();
    }
    return found;
}

} // namespace

void keepReplaced(WorkspaceSessionStorage& storage)
{
    const std::optional<QByteArray> present = storage.readSession();
    const auto counts = present ? SessionCoding::counts(*present) : std::nullopt;
    if (!counts || counts->tracks < 1)
        return;
    try {
        storage.createCheckpoint(*present, WorkspaceSessionStorage::Kind::Automatic);
    } catch (const SessionStorageError&) {
        // A full disk; the restore that the user asked for goes on.
    }
}

int dropMissing(SessionRecord& record, const Presence& presence)
{
    QList<QUrl> urls; // of all entries in turn: asking twice for a file costs less than finding that it was asked for
    const auto lists = {&record.tracks, &record.analysisTracks, &record.keyAnalysisTracks, &record.duplicateTracks};
    for (const QList<Track>* list : lists) {
        for (const Track& track : *list)
            urls.append(track.url());
    }
    urls.append(record.conversionURLs);
    const qsizetype files = urls.size();
    urls.append(record.duplicateRoots);

    const std::vector<bool> present = presence ? presence(urls) : FilePresence::check(urls);
    if (std::ranges::find(present, false) == present.end())
        return 0;
    QSet<QUrl> gone;
    for (qsizetype i = 0; i < files; ++i) {
        if (!present[static_cast<size_t>(i)])
            gone.insert(urls[i]);
    }
    size_t place = 0;
    for (QList<Track>* list : lists)
        *list = presentOf(*list, present, place);
    record.conversionURLs = presentOf(record.conversionURLs, present, place);
    record.duplicateRoots = presentOf(record.duplicateRoots, present, place);
    return static_cast<int>(gone.size());
}

void reconcileTempo(SessionRecord& record)
{
    TempoTables& tempo = record.tempo;
    if (tempo.estimatedBPMByFile.isEmpty() && tempo.estimatedBPMByTrackID.isEmpty())
        return;
    QHash<QString, CachedBPMEstimate> byFile;
    for (const Track& track : std::as_const(record.tracks)) {
        const QString path = FileURL::standardizedPath(track.url());
        const auto known = tempo.estimatedBPMByFile.constFind(path);
        if (known != tempo.estimatedBPMByFile.cend()) {
            if (byFile.contains(path) || known->matches(track.url())) {
                byFile.insert(path, *known);
            } else {
                tempo.estimatedBPMByTrackID.remove(track.id());
                tempo.estimatedBPMConfidenceByTrackID.remove(track.id());
            }
            continue;
        }
        const auto bpm = tempo.estimatedBPMByTrackID.constFind(track.id());
        const auto confidence = tempo.estimatedBPMConfidenceByTrackID.constFind(track.id());
        if (bpm == tempo.estimatedBPMByTrackID.cend() || confidence == tempo.estimatedBPMConfidenceByTrackID.cend())
            continue;
        if (const auto made = CachedBPMEstimate::make(track.url(), *bpm, *confidence))
            byFile.insert(path, *made);
    }
    tempo.estimatedBPMByFile = std::move(byFile);
}

QHash<QString, SectionSelection> selectionsOf(const SessionRecord& record)
{
    QHash<QString, SectionSelection> wanted;
    if (record.tabSelectionIDs || record.tabFocusedIDs) {
        for (LibraryTab tab : kAllLibraryTabs) {
            const QString raw = rawValue(tab);
            SectionSelection section;
            if (record.tabSelectionIDs)
                section.ids = record.tabSelectionIDs->value(raw);
            if (record.tabFocusedIDs && record.tabFocusedIDs->contains(raw))
                section.focusedID = record.tabFocusedIDs->value(raw);
            wanted.insert(raw, section);
        }
    } else { // files of older versions know of one section alone
        const LibraryTab active = libraryTabFromRawValue(record.activeTab).value_or(LibraryTab::Playlist);
        wanted.insert(rawValue(active), {record.selectedIDs, record.selectedID});
    }
    QHash<QString, SectionSelection> selections;
    for (LibraryTab tab : kAllLibraryTabs)
        selections.insert(rawValue(tab), reduced(tab, wanted.value(rawValue(tab)), record));
    return selections;
}

std::optional<Result> load(WorkspaceSessionStorage& storage, const QByteArray& legacyBytes, const Presence& presence)
{
    if (storage.isOff())
        return std::nullopt;
    std::optional<Source> source = bestSource(storage, legacyBytes);
    if (!source)
        return std::nullopt;
    Result result;
    result.session = std::move(source->record);
    result.isPendingRestore = source->isPending;
    SessionRecord& session = result.session;
    for (QList<QUrl>* urls : {&session.conversionURLs, &session.duplicateRoots}) {
        for (QUrl& url : *urls)
            url = FileURL::standardized(url);
    }
    for (QList<Track>* list :
         {&session.tracks, &session.analysisTracks, &session.keyAnalysisTracks, &session.duplicateTracks})
        dropRepeated(*list);
    result.leftOut = dropMissing(session, presence);
    if (result.leftOut > 0)
        keepNamed(storage, source->bytes);
    reconcileTempo(session);
    filterByTracks(session);
    result.selections = selectionsOf(session);
    for (const QList<Track>* list : {&session.tracks, &session.analysisTracks, &session.keyAnalysisTracks}) {
        for (const Track& track : *list)
            result.waveformURLs.append(track.url());
    }
    result.language = VelmoraLocalization::language();
    result.tracks.assign(session.tracks);
    result.playlist.append(result.tracks, 0);
    for (const QUrl& url : std::as_const(session.conversionURLs)) {
        ConversionItem item;
        item.url = url;
        result.conversionItems.append(item);
    }
    return result;
}

} // namespace WorkspaceLoad
