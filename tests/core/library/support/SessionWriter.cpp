// A program that changes and saves a workspace until it is killed. usage: session_writer FOLDER SEED
// After each save that has returned it prints the number of the operation that the session then shows, and of its rows.

#include "async/MainQueue.h"
#include "async/SystemClock.h"
#include "async/ThreadExecutor.h"
#include "core/library/LibraryServices.h"
#include "core/library/LibraryStore.h"
#include "core/library/selection/Selection.h"
#include "core/library/session/Session.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "support/FakeTagFiles.h"
#include "support/SessionSamples.h"

#include <QCoreApplication>

#include <random>

namespace {

constexpr int kOperations = 1000;

/// Changes the list, at random, and numbers the change in the title of the first row, which always stays.
void change(Workspace& workspace, int operation, std::mt19937& random)
{
    QList<Track> rows = workspace.tracks().rows();
    const auto pick = [&] { return static_cast<int>(random() % static_cast<unsigned>(rows.size())); };
    switch (random() % 4) {
    case 0:
        for (int i = 0; i < 40; ++i)
            rows.append(SessionSamples::row(QStringLiteral("/music/%1-%2.mp3").arg(operation).arg(i)));
        break;
    case 1:
        rows.resize(1 + pick());
        break;
    case 2: {
        Track& row = rows[pick()];
        row.setIsInCoverWorkspace(true);
        row.setIsFavorite(!row.isFavorite());
        break;
    }
    default:
        workspace.setSelection({rows[pick()].id()}, rows[0].id());
    }
    AudioTags tags = rows[0].tags();
    tags.title = QString::number(operation);
    rows[0].replaceTags(tags);
    workspace.setTracks(rows);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 3)
        return 2;
    const int seed = atoi(argv[2]);
    std::mt19937 random(static_cast<unsigned>(seed));
    WorkspaceSessionStorage storage(QFile::decodeName(argv[1]), {.skipInTests = false});
    async::SystemClock clock;
    Preferences preferences(std::make_unique<MemoryPreferenceStore>());
    Notifications notifications;
    FakeTagFiles files;
    auto executor = std::make_unique<async::ThreadExecutor>();
    const LibraryServices services{.clock = clock,
                                   .executor = *executor,
                                   .preferences = preferences,
                                   .notifications = notifications,
                                   .tagFiles = files,
                                   .sessionStorage = storage};
    auto store = std::make_unique<LibraryStore>(services);
    store->workspace().setTracks({SessionSamples::row(QStringLiteral("/music/first.mp3"))});
    const int first = seed * kOperations; // no number twice, whatever earlier runs left
    for (int operation = first + 1; operation <= first + kOperations; ++operation) {
        change(store->workspace(), operation, random);
        if (random() % 2 == 0) {
            store->session().saveWorkspaceSessionNow(); // goes on beside what follows
            QCoreApplication::processEvents();
            continue;
        }
        store->session().saveWorkspaceSessionSynchronouslyForTermination();
        printf("%d %d\n", operation, int(store->workspace().tracks().size()));
        fflush(stdout);
    }
    store.reset();
    executor.reset();
    async::MainQueue::drain();
    return 0;
}
