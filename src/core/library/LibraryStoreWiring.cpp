#include "core/library/LibraryConcerns.h"

#include "platform/Localization.h"
#include "platform/Preferences.h"

// The concerns are given what they stand on, in the order in which they are built, and signals that concern none of
// them alone are tied together.

namespace {

/// Without a Trash nothing is tried.
TrashCan* existing(TrashCan& can)
{
    return &can == &TrashCan::none() ? nullptr : &can;
}

} // namespace

LibraryConcerns::LibraryConcerns(const LibraryServices& libraryServices)
    : services(libraryServices)
    , scheduler(services.clock)
    , status(workspace, services.clock)
    , quickLists(services.preferences)
    , order({workspace, tempoResults, services.preferences, services.notifications, scheduler, services.clock})
    , selection(workspace, order)
    , playback({selection, scheduler})
    , waveforms({workspace, selection, scheduler, services.executor, services.envelopes})
    , favorites({workspace, selection, status, services.notifications, services.preferences, history})
    , tagSaver(tagSaverDependencies())
    , tagWriting({workspace, status, services.notifications, quickLists, tagSaver, history})
    , originalTags({workspace, status, services.notifications, tagSaver, tagWriting, history, fileEvents})
    , unwrittenEdits({workspace, tagSaver, services.executor, fileEvents, status, services.editJournal})
    , closingQuestion({workspace, unwrittenEdits, tagSaver, status})
    , artwork({workspace, status, services.notifications, services.clock, services.executor, tagSaver, originalTags})
    , loads(
          {workspace, services.notifications, services.clock, services.executor, scheduler, board, services.tagReader})
    , givenUpEdits({workspace, status, services.notifications, history, loads})
    , tempo(tempoDependencies())
    , tempoChoices({workspace, tempo, tempoResults, status, tagWriting, history, services.clock, services.executor})
    , sending({workspace, status, loads})
    , removal(removalDependencies())
    , strayTemporaries({status, services.executor, fileLocks, board, existing(services.trashCan)})
    , imports(importsDependencies())
    , keys(keysDependencies())
    , session(sessionDependencies())
{
    wireHistory();
    wirePreferences();
    wireRemoval();
    wireStoppedWrites();
    wireClosing();
    wireOrder();
    wirePower();
}

LibraryConcerns::~LibraryConcerns() = default;

/// The status line names what was taken back.
void LibraryConcerns::wireHistory()
{
    const auto name = [this](const QString& text, StatusIcon icon) {
        return [this, text, icon](const QString& actionName) {
            status.showText(VelmoraLocalization::format(text, {actionName}), icon, WorkspaceStatus::Tone::Success);
        };
    };
    QObject::connect(&history, &History::undone, &workspace, name(QStringLiteral("Отменено: %@"), StatusIcon::Undo));
    QObject::connect(&history, &History::redone, &workspace, name(QStringLiteral("Повторено: %@"), StatusIcon::Redo));
}

/// Nobody shall believe that a choice is kept which is not.
void LibraryConcerns::wirePreferences()
{
    QObject::connect(&services.preferences, &Preferences::saved, &workspace, [this](bool isSaved) {
        const QString about = QStringLiteral("preferences");
        if (isSaved)
            status.letGo(about);
        else
            status.hold(about,
                        VelmoraLocalization::string(QStringLiteral("Настройки не сохраняются: диск не принял запись")));
    });
}

/// The player moves on when its row goes. Rows that come back are read if they have not been, and their tempo and
/// waveform are wanted: what waited for them was given up.
void LibraryConcerns::wireRemoval()
{
    const auto moveOn = [this](const QSet<TrackID>& ids, const QList<Track>& rows) {
        playback.continuePlaybackAfterRemoving(ids, rows);
    };
    QObject::connect(&removal, &Removal::rowsLeft, &workspace, moveOn);
    QObject::connect(&favorites, &Favorites::rowsLeft, &workspace, moveOn);
    using List = Track::MetadataDestination;
    const auto cameBack = [this](List list, const QSet<TrackID>& ids, const QList<Track>& unread) {
        if (!unread.isEmpty())
            loads.schedule(unread, list);
        if (list != List::Library)
            return;
        tempo.detectBPM(ids);
        QList<QUrl> urls;
        for (const TrackID& id : ids) {
            if (const Track* track = workspace.tracks().find(id))
                urls.append(track->url());
        }
        waveforms.preloadWaveforms(urls);
    };
    QObject::connect(&removal, &Removal::rowsCameBack, &workspace, cameBack);
}

/// A stopped batch leaves rows behind that differ from their files: nobody shall overlook that.
void LibraryConcerns::wireStoppedWrites()
{
    QObject::connect(&tagSaver, &TagSaver::stopped, &workspace, [this](int notWritten) {
        status.showCounted(QStringLiteral("Запись остановлена, в файлы не записано: %d"), {notWritten},
                           StatusIcon::Warning, WorkspaceStatus::Tone::Warning);
    });
}

/// What is not kept for the next start, the program does not end on unseen.
void LibraryConcerns::wireClosing()
{
    QObject::connect(&artwork, &Artwork::failed, &closingQuestion, &ClosingQuestion::noteLoss);
    QObject::connect(&keys, &Keys::tookBack, &closingQuestion, &ClosingQuestion::noteLoss);
    QObject::connect(&tagWriting, &TagWriting::tookBack, &closingQuestion, &ClosingQuestion::noteLoss);
}

/// The playlist is put in order when the reading of tags has come to an end.
void LibraryConcerns::wireOrder()
{
    QObject::connect(&loads, &MetadataLoads::settled, &order, &Order::scheduleMetadataSortRefresh);
}

/// Power and heat are watched while there is work that would hold back.
void LibraryConcerns::wirePower()
{
    QObject::connect(&services.power, &PowerWatch::constrainedChanged, &scheduler, &Scheduler::setConstrained);
    QObject::connect(&scheduler, &Scheduler::busyChanged, &services.power, &PowerWatch::setWatching);
}

TagSaver::Dependencies LibraryConcerns::tagSaverDependencies()
{
    return {workspace,
            services.preferences,
            services.executor,
            services.tagFiles,
            fileLocks,
            fileEvents,
            board,
            [&reader = services.tagReader](const QUrl& url, const AudioTags& tags) { return reader.read(url, tags); }};
}

Tempo::Dependencies LibraryConcerns::tempoDependencies()
{
    return {workspace,
            order,
            tempoResults,
            tagWriting,
            loads,
            playback,
            fileEvents,
            services.notifications,
            scheduler,
            board,
            services.clock,
            services.executor,
            services.analyser};
}

Removal::Dependencies LibraryConcerns::removalDependencies()
{
    return {workspace, selection,  status, services.notifications,     history, services.executor,
            fileLocks, fileEvents, board,  existing(services.trashCan)};
}

Imports::Dependencies LibraryConcerns::importsDependencies()
{
    return {workspace, status,    services.preferences, favorites, sending, services.clock, services.executor, loads,
            tempo,     waveforms, strayTemporaries};
}

Keys::Dependencies LibraryConcerns::keysDependencies()
{
    return {workspace, status,     services.notifications, scheduler, board, services.executor, tagSaver,
            history,   fileEvents, services.analyser};
}

Session::Dependencies LibraryConcerns::sessionDependencies()
{
    return {workspace,
            selection,
            order,
            tempo,
            status,
            services.preferences,
            loads,
            keys,
            services.clock,
            services.executor,
            services.sessionStorage.isOff() ? nullptr : &services.sessionStorage,
            playback,
            waveforms,
            removal};
}
