// How long the window waits while the tempo of 100,000 selected rows is set, scaled and taken back: the longest turn of
// the main thread. usage: bench_tempo_choice [rows]

#include "Measure.h"
#include "async/MainQueue.h"
#include "async/SystemClock.h"
#include "async/ThreadExecutor.h"
#include "core/library/LibraryServices.h"
#include "core/library/LibraryStore.h"
#include "core/library/order/Order.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/tempo/TempoChoices.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "support/FakeTagFiles.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

constexpr double kLongestTurn = 0.016; // seconds; one frame

/// Knows the longest of the events that it handled.
class TimedApplication final : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;
    bool notify(QObject* receiver, QEvent* event) override
    {
        bool isHandled = false;
        longest = std::max(longest, Measure::secondsOf([&] { isHandled = QCoreApplication::notify(receiver, event); }));
        return isHandled;
    }
    double longest = 0;
};

QList<Track> makeTracks(int count)
{
    QList<Track> tracks;
    for (int number = 0; number < count; ++number) {
        tracks.append(Track::unread(
            FileURL::fromPath(QStringLiteral("/music/%1/Artist - Title %2.mp3").arg(number % 200).arg(number))));
        tracks.last().setIsInPlaylist(true);
    }
    return tracks;
}

} // namespace

int main(int argc, char** argv)
{
    TimedApplication application(argc, argv);
    const int count = argc > 1 ? atoi(argv[1]) : 100'000;
    async::SystemClock clock;
    async::ThreadExecutor executor;
    Preferences preferences(std::make_unique<MemoryPreferenceStore>());
    Notifications notifications;
    FakeTagFiles files;
    LibraryStore store(LibraryServices{clock, executor, preferences, notifications, files});
    store.workspace().setTracks(makeTracks(count));
    store.order().playlistTracks();
    QSet<TrackID> ids;
    for (const Track& track : store.workspace().tracks())
        ids.insert(track.id());

    double worst = 0;
    const auto measure = [&](const char* name, const QString& last, const std::function<void()>& act) {
        application.longest = 0;
        const double first = Measure::secondsOf(act);
        const double all = Measure::secondsOf([&] {
            const auto isDone = [&] {
                return std::ranges::all_of(ids, [&](const TrackID& id) {
                    return store.tempo().playlistBPMState(id).estimatedBPM.value_or(QString()) == last;
                });
            };
            while (!isDone())
                QCoreApplication::processEvents();
        });
        worst = std::max({worst, first, application.longest});
        printf("%-8s first turn %5.1f ms, longest of the others %5.1f ms, all %6.1f ms\n", name, first * 1e3,
               application.longest * 1e3, all * 1e3);
    };
    TempoChoices& choices = store.tempoChoices();
    measure("set", QStringLiteral("100"), [&] { choices.setTempo(ids, 100); });
    measure("double", QStringLiteral("200"), [&] { choices.scaleTempo(ids, 2); });
    measure("undo", QStringLiteral("100"), [&] { store.history().undo(); });
    measure("undo", QString(), [&] { store.history().undo(); });
    measure("redo", QStringLiteral("100"), [&] { store.history().redo(); });
    printf("%d rows, longest turn %.1f ms   (limit %.0f)\n", count, worst * 1e3, kLongestTurn * 1e3);
    return worst <= kLongestTurn ? 0 : 1;
}
