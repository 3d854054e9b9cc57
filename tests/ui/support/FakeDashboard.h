#pragma once

#include "core/library/LibraryStore.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/keys/Keys.h"
#include "core/library/order/Order.h"
#include "core/library/selection/Selection.h"
#include "core/library/workspace/Workspace.h"
#include "playback/AudioPlayer.h"
#include "ui/context/DashboardActions.h"

/// Records what the window asks for. Selection, sections and favourites reach the store, played tracks the player, the
/// rest is only noted.
class FakeDashboard final : public DashboardActions {
public:
    struct Call {
        QString name;
        QSet<TrackID> ids;
        QString text;
    };
    struct Drop {
        QList<QUrl> urls;
        LibraryTab tab;
    };

    FakeDashboard(LibraryStore& store, AudioPlayer& player)
        : m_store(store)
        , m_player(player)
    {
    }

    void activateTab(LibraryTab tab) override
    {
        note("activateTab", {}, rawValue(tab));
        m_store.selection().rememberSelection(m_store.workspace().activeTab());
        const Selection::State state = m_store.selection().selectionState(tab);
        m_store.workspace().setSelection(state.ids, state.focusedID);
        m_store.workspace().setActiveTab(tab);
    }
    void receiveDroppedTracks(const QList<QUrl>& urls, LibraryTab tab) override { drops.append({urls, tab}); }
    void openPanel() override { note("openPanel"); }
    void openSectionPanel() override { note("openSectionPanel"); }
    void select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused) override
    {
        note("select", ids);
        m_store.selection().select(ids, focused);
    }
    std::optional<TrackID> playlistReturnPlaybackID() const override { return returnID; }
    void playTrack(const Track& track) override
    {
        note("playTrack", {track.id()});
        m_player.play(track);
    }
    void toggleSelectedTrack() override { note("toggleSelectedTrack"); }
    void selectAdjacent(int offset) override { note("selectAdjacent", {}, QString::number(offset)); }
    void seekSteps(int steps) override { note("seekSteps", {}, QString::number(steps)); }
    void toggleFavorites(const QSet<TrackID>& ids) override
    {
        note("toggleFavorites", ids);
        m_store.favorites().toggleFavorites(ids);
    }
    void removeFromFavorites(const QSet<TrackID>& ids) override { note("removeFromFavorites", ids); }
    void removeFromCovers(const QSet<TrackID>& ids) override { note("removeFromCovers", ids); }
    void removeFromSection(LibraryTab tab, const QSet<TrackID>& ids) override
    {
        note("removeFromSection", ids, rawValue(tab));
    }
    void moveToTrash(const QSet<TrackID>& ids) override { note("moveToTrash", ids); }
    void addToAnalysis(const QSet<TrackID>& ids) override { note("addToAnalysis", ids); }
    void addToConversion(const QSet<TrackID>& ids) override { note("addToConversion", ids); }
    void assignGenre(const QString& genre, const QSet<TrackID>& ids) override { note("assignGenre", ids, genre); }
    void assignComment(const QString& text, const QSet<TrackID>& ids) override { note("assignComment", ids, text); }
    void assignAlbum(const QString& album, const QSet<TrackID>& ids) override { note("assignAlbum", ids, album); }
    void clearGenres(const QSet<TrackID>& ids) override { note("clearGenres", ids); }
    void clearComments(const QSet<TrackID>& ids) override { note("clearComments", ids); }
    void saveTags(const AudioTags& tags, TagFields fields, const QSet<TrackID>& ids) override
    {
        note("saveTags", ids, QString::number(fields.toInt()));
        savedTags = tags;
    }
    void assignArtwork(const QByteArray& image, const QSet<TrackID>& ids) override
    {
        note("assignArtwork", ids);
        assignedImage = image;
    }
    void chooseArtwork(std::function<void(const QByteArray&)> chosen) override
    {
        note("chooseArtwork");
        imageChosen = std::move(chosen);
    }
    void restoreOriginalTags(const QSet<TrackID>& ids) override { note("restoreOriginalTags", ids); }
    void trashStrayTemporaries() override { note("trashStrayTemporaries"); }
    void detectTempoAgain(const QSet<TrackID>& ids) override { note("detectTempoAgain", ids); }
    void stopTempoAnalysis() override { note("stopTempoAnalysis"); }
    void writeTempo(const QSet<TrackID>& ids) override { note("writeTempo", ids); }
    void scaleTempo(double factor, const QSet<TrackID>& ids) override
    {
        note(factor > 1 ? "doubleTempo" : "halveTempo", ids);
    }
    void setTempo(int bpm, const QSet<TrackID>& ids) override { note("setTempo", ids, QString::number(bpm)); }
    void cancelTagWrites() override { note("cancelTagWrites"); }
    void stopMovingFiles() override { note("stopMovingFiles"); }
    void answerWhatSavesKeep(bool keepsOthers) override
    {
        note("answerWhatSavesKeep", {}, keepsOthers ? QStringLiteral("keep") : QStringLiteral("drop"));
        m_store.workspace().setAskingWhatSavesKeep(false);
    }
    void openMusicalKeyPanel() override { note("openMusicalKeyPanel"); }
    void analyzeMusicalKey(const QSet<TrackID>& ids) override
    {
        note("analyzeMusicalKey", ids);
        m_store.keys().analyzeMusicalKey(ids);
    }
    void stopMusicalKeyAnalysis() override
    {
        note("stopMusicalKeyAnalysis");
        m_store.keys().dropMusicalKeyQueue();
    }
    void writeAnalyzedMusicalKeys(const QSet<TrackID>& ids) override { note("writeAnalyzedMusicalKeys", ids); }
    void revealInFileManager(const QSet<TrackID>& ids) override { note("revealInFileManager", ids); }
    void setPlaylistScrolling(bool scrolling) override { scrollStates.append(scrolling); }
    void setTrackSortField(TrackSortField field, LibraryTab tab) override
    {
        note("setTrackSortField", {}, rawValue(field));
        m_store.order().setTrackSortField(field, tab);
    }
    void setTrackSortDirection(TrackSortDirection direction, LibraryTab tab) override
    {
        note("setTrackSortDirection", {}, rawValue(direction));
        m_store.order().setTrackSortDirection(direction, tab);
    }
    void activateFavoriteSortFromHeader(TrackSortField field) override
    {
        note("activateFavoriteSortFromHeader", {}, rawValue(field));
        m_store.order().activateFavoriteSortFromHeader(field);
    }
    void dismissNotice() override { m_store.workspace().setNotice(std::nullopt); }
    void dismissLastError() override { m_store.workspace().setLastError(std::nullopt); }

    int count(const char* name) const
    {
        return static_cast<int>(std::count_if(calls.begin(), calls.end(),
                                              [&](const Call& call) { return call.name == QLatin1StringView(name); }));
    }
    /// The last call of this name; an empty one if there was none.
    Call last(const char* name) const
    {
        for (auto call = calls.crbegin(); call != calls.crend(); ++call) {
            if (call->name == QLatin1StringView(name))
                return *call;
        }
        return {};
    }

    QList<Call> calls;
    QList<Drop> drops;
    QList<bool> scrollStates;
    std::optional<TrackID> returnID;
    AudioTags savedTags;
    QByteArray assignedImage;
    std::function<void(const QByteArray&)> imageChosen;

private:
    void note(const char* name, const QSet<TrackID>& ids = {}, const QString& text = {})
    {
        calls.append({QString::fromLatin1(name), ids, text});
    }

    LibraryStore& m_store;
    AudioPlayer& m_player;
};
