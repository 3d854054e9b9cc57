#pragma once

#include "app/commands/StoreCommands.h"
#include "core/library/LibraryStore.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/keys/Keys.h"
#include "core/library/order/Order.h"
#include "core/library/selection/Selection.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"
#include "ui/commands/CommandCenter.h"
#include "ui/context/DashboardActions.h"

/// A dashboard that notes what the window asks for. Commands on rows, the selection and the sections reach the store,
/// played tracks the player; rows stay where they are, and dialogs closed.
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
        , m_commands(store)
    {
        StoreCommands::bind(m_commands, store);
        for (LibraryTab tab : kAllLibraryTabs)
            m_commands.bind(Commands::showing(tab), [this, tab](const CommandTarget&) { activateTab(tab); });
        for (const CommandID id : {CommandID::PlayPause, CommandID::SeekBack, CommandID::SeekForward,
                                   CommandID::PreviousTrack, CommandID::NextTrack, CommandID::AddFiles,
                                   CommandID::AddFilesHere, CommandID::Reveal, CommandID::Remove, CommandID::Trash})
            m_commands.bind(id, [](const CommandTarget&) {});
        m_commands.bind(CommandID::PlayRow, [&player](const CommandTarget& target) { player.play(*target.track); });
        m_commands.bind(
            CommandID::AssignCover,
            [this](const CommandTarget& target) {
                chooseArtwork([this, ids = target.ids](const QByteArray& image) { assignArtwork(image, ids); });
            },
            [&store](const CommandTarget& target) {
                return CommandState{!store.workspace().artworkWritingIDs().intersects(target.ids)};
            });
        m_commands.bind(CommandID::ShowTags, [&store](const CommandTarget&) {
            Preference<bool>& visible = store.preferences().inspectorVisible;
            visible.set(!visible.get());
        });
        QObject::connect(&m_commands, &CommandCenter::performing, [this](CommandID id, const CommandTarget& target) {
            const QSet<TrackID> ids = target.track ? QSet<TrackID>{target.track->id()} : target.ids;
            calls.append({Commands::of(id).name, ids, target.number ? QString::number(target.number) : target.text});
        });
    }

    CommandCenter& commands() override { return m_commands; }
    void activateTab(LibraryTab tab) { m_store.selection().switchTo(tab); }
    void receiveDroppedTracks(const QList<QUrl>& urls, LibraryTab tab) override { drops.append({urls, tab}); }
    void select(const QSet<TrackID>& ids, const std::optional<TrackID>& focused) override
    {
        note("select", ids);
        m_store.selection().select(ids, focused);
    }
    std::optional<TrackID> playlistReturnPlaybackID() const override { return returnID; }
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
    void answerWhatSavesKeep(bool keepsOthers) override
    {
        note("answerWhatSavesKeep", {}, keepsOthers ? QStringLiteral("keep") : QStringLiteral("drop"));
        m_store.workspace().setAskingWhatSavesKeep(false);
    }
    void setPlaylistScrolling(bool scrolling) override { scrollStates.append(scrolling); }
    void setTrackSortField(TrackSortField field, LibraryTab tab) override
    {
        m_store.order().setTrackSortField(field, tab);
    }
    void setTrackSortDirection(TrackSortDirection direction, LibraryTab tab) override
    {
        m_store.order().setTrackSortDirection(direction, tab);
    }
    void activateFavoriteSortFromHeader(TrackSortField field) override
    {
        note("activateFavoriteSortFromHeader", {}, rawValue(field));
        m_store.order().activateFavoriteSortFromHeader(field);
    }
    void dismissMessage() override
    {
        if (m_store.workspace().lastError())
            m_store.workspace().setLastError(std::nullopt);
        else
            m_store.workspace().setNotice(std::nullopt);
    }

    int count(const char* name) const
    {
        return static_cast<int>(std::ranges::count(calls, QLatin1StringView(name), &Call::name));
    }
    /// The last call of this name; an empty one if there was none.
    Call last(const char* name) const
    {
        const auto call = std::find_if(calls.crbegin(), calls.crend(),
                                       [&](const Call& each) { return each.name == QLatin1StringView(name); });
        return call == calls.crend() ? Call() : *call;
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
    CommandCenter m_commands;
};
