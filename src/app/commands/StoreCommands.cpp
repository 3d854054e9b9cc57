#include "app/commands/StoreCommands.h"

#include "core/library/LibraryStore.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/imports/StrayTemporaries.h"
#include "core/library/keys/Keys.h"
#include "core/library/order/TrackSorter.h"
#include "core/library/removal/Removal.h"
#include "core/library/sending/Sending.h"
#include "core/library/tagwriting/OriginalTags.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/tempo/TempoChoices.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"
#include "ui/commands/CommandCenter.h"

namespace {

using ID = CommandID;
using List = Track::MetadataDestination;

/// Those rows of the main list that are no favourites.
QSet<TrackID> noFavorites(const LibraryStore& library, const QSet<TrackID>& ids)
{
    QSet<TrackID> result;
    for (const TrackID& id : ids) {
        const Track* track = library.workspace().tracks().find(id);
        if (track && !track->isFavorite())
            result.insert(id);
    }
    return result;
}

bool isAny(const LibraryStore& library, const QSet<TrackID>& ids, bool isFavorite)
{
    return std::ranges::any_of(ids, [&](const TrackID& id) {
        const Track* track = library.workspace().tracks().find(id);
        return track && track->isFavorite() == isFavorite;
    });
}

void bindFavorites(CommandCenter& commands, LibraryStore& library)
{
    Favorites& favorites = library.favorites();
    commands.bind(ID::Favorite, [&favorites](const CommandTarget& target) { favorites.toggleFavorites(target.ids); });
    commands.bind(
        ID::AddToFavorites,
        [&](const CommandTarget& target) { favorites.toggleFavorites(noFavorites(library, target.ids)); },
        [&library](const CommandTarget& target) { return CommandState{isAny(library, target.ids, false)}; });
    commands.bind(
        ID::RemoveFromFavorites,
        [&favorites](const CommandTarget& target) { favorites.removeFromFavorites(target.ids, true); },
        [&library](const CommandTarget& target) { return CommandState{isAny(library, target.ids, true)}; });
    commands.bind(ID::ClearFavoriteFilter, [&favorites](const CommandTarget&) {
        favorites.setFavoriteGenreFilter({});
        favorites.setFavoriteOnlyUntagged(false);
    });
}

/// Takes rows out of the section shown, whatever that means there.
void removeFromSection(LibraryStore& library, const QSet<TrackID>& ids)
{
    Removal& removal = library.removal();
    const LibraryTab tab = library.workspace().activeTab();
    const LibrarySection& section = LibrarySection::of(tab);
    if (section.holdsJobs)
        emit library.notifications().velmoraRemoveConversionItems();
    else if (section.list == List::Analysis)
        removal.removeFromAnalysis(ids);
    else if (section.list == List::MusicalKey)
        removal.removeFromMusicalKeyAnalysis(ids);
    else if (tab == LibraryTab::Favorites)
        library.favorites().removeFromFavorites(ids, true);
    else if (tab == LibraryTab::Covers)
        removal.removeFromCoverWorkspace(ids);
    else
        removal.removeTracksFromPlaylist(ids);
}

void bindRows(CommandCenter& commands, LibraryStore& library)
{
    commands.bind(ID::Remove, [&](const CommandTarget& target) { removeFromSection(library, target.ids); });
    commands.bind(ID::Trash, [&library](const CommandTarget& target) {
        if (LibrarySection::of(library.workspace().activeTab()).list == List::Duplicates)
            library.removal().trashDuplicateTracks(target.ids);
        else
            library.removal().trashTracks(target.ids);
    });
    commands.bind(ID::SendToAnalysis,
                  [&library](const CommandTarget& target) { library.sending().addTracksToAnalysis(target.ids); });
    commands.bind(ID::SendToConversion,
                  [&library](const CommandTarget& target) { library.sending().addTracksToConversion(target.ids); });
    commands.bind(ID::TrashLeftovers, [&library](const CommandTarget&) { library.strayTemporaries().moveToTrash(); });
}

void bindUndo(CommandCenter& commands, History& undo)
{
    commands.bind(
        ID::Undo, [&undo](const CommandTarget&) { undo.undo(); },
        [&undo](const CommandTarget&) { return CommandState{undo.canUndo()}; });
    commands.bind(
        ID::Redo, [&undo](const CommandTarget&) { undo.redo(); },
        [&undo](const CommandTarget&) { return CommandState{undo.canRedo()}; });
}

void bindTags(CommandCenter& commands, LibraryStore& library)
{
    TagWriting& tags = library.tagWriting();
    const auto onFavorites = [&library](const CommandTarget& target) -> CommandState {
        if (!isAny(library, target.ids, true))
            return {false, QStringLiteral("Выберите трек в «Избранном»")};
        return {};
    };
    const auto bind = [&](ID id, CommandCenter::Perform perform) {
        commands.bind(id, std::move(perform), onFavorites);
    };
    bind(ID::AssignGenre, [&](const CommandTarget& t) { tags.assignGenre(t.text, t.ids); });
    bind(ID::ClearGenre, [&](const CommandTarget& t) { tags.clearGenres(t.ids); });
    bind(ID::AssignComment, [&](const CommandTarget& t) { tags.assignComment(t.text, t.ids); });
    bind(ID::ClearComment, [&](const CommandTarget& t) { tags.clearComments(t.ids); });
    bind(ID::AssignAlbum, [&](const CommandTarget& t) { tags.assignAlbum(t.text, t.ids); });
    bind(ID::ClearAlbum, [&](const CommandTarget& t) { tags.assignAlbum({}, t.ids); });
    commands.bind(
        ID::RestoreTags, [&library](const CommandTarget& t) { library.originalTags().restore(t.ids); },
        [&library](const CommandTarget& t) -> CommandState {
            if (library.workspace().artworkWritingIDs().intersects(t.ids))
                return {false, QStringLiteral("Подождите: обложка ещё сохраняется в файл")};
            return {library.originalTags().canRestore(t.ids)};
        });
}

/// What of the rows the tempo's commands can work with.
struct TempoRows {
    bool haveEstimate = false;
    bool haveTempo = false; ///< a number that can be doubled
    bool lackTag = false;
};

TempoRows tempoRows(const LibraryStore& library, const QSet<TrackID>& ids)
{
    TempoRows rows;
    for (const TrackID& id : ids) {
        const Track* track = library.workspace().tracks().find(id);
        if (!track)
            continue;
        const bool hasEstimate = library.tempo().playlistBPMState(id).estimatedBPM.has_value();
        rows.haveEstimate = rows.haveEstimate || hasEstimate;
        rows.haveTempo = rows.haveTempo || hasEstimate || TrackSorter::bpmValue(*track, {}).has_value();
        rows.lackTag = rows.lackTag || QStringView(track->tags().bpm).trimmed().isEmpty();
        if (rows.haveEstimate && rows.haveTempo && rows.lackTag)
            break;
    }
    return rows;
}

void bindTempo(CommandCenter& commands, LibraryStore& library)
{
    TempoChoices& choices = library.tempoChoices();
    const auto haveTempo = [&library](const CommandTarget& t) {
        return CommandState{tempoRows(library, t.ids).haveTempo};
    };
    commands.bind(
        ID::DoubleTempo, [&choices](const CommandTarget& t) { choices.scaleTempo(t.ids, 2); }, haveTempo);
    commands.bind(
        ID::HalveTempo, [&choices](const CommandTarget& t) { choices.scaleTempo(t.ids, 0.5); }, haveTempo);
    commands.bind(ID::SetTempo, [&choices](const CommandTarget& t) { choices.setTempo(t.ids, t.number); });
    commands.bind(
        ID::WriteTempo, [&choices](const CommandTarget& t) { choices.writeTempo(t.ids); },
        [&library](const CommandTarget& t) { return CommandState{tempoRows(library, t.ids).haveEstimate}; });
    commands.bind(
        ID::DetectTempo, [&tempo = library.tempo()](const CommandTarget& t) { tempo.detectAgain(t.ids); },
        [&library](const CommandTarget& t) -> CommandState {
            if (tempoRows(library, t.ids).lackTag)
                return {};
            return {false, QStringLiteral("Темп записан в теге: он не определяется")};
        });
}

void bindKeys(CommandCenter& commands, Keys& keys)
{
    commands.bind(
        ID::AnalyzeKeys, [&keys](const CommandTarget& t) { keys.analyzeMusicalKey(t.ids); },
        [&keys](const CommandTarget& t) {
            return CommandState{
                std::ranges::any_of(t.ids, [&](const TrackID& id) { return keys.stateOf(id) == WorkState::None; })};
        });
    commands.bind(
        ID::WriteKeys, [&keys](const CommandTarget& t) { keys.writeAnalyzedMusicalKeys(t.ids); },
        [&keys](const CommandTarget& t) {
            return CommandState{
                std::ranges::any_of(t.ids, [&](const TrackID& id) { return keys.musicalKeyAnalyses().contains(id); })};
        });
}

} // namespace

void StoreCommands::bind(CommandCenter& commands, LibraryStore& library)
{
    bindFavorites(commands, library);
    bindRows(commands, library);
    bindUndo(commands, library.history());
    bindTags(commands, library);
    bindTempo(commands, library);
    bindKeys(commands, library.keys());
}
