// How long 10,000 files in 200 folders take to be walked, sorted and listed, against `find` plus the same sort.
// usage: bench_import [files] [folders]

#include "Measure.h"
#include "async/MainQueue.h"
#include "core/library/LibraryServices.h"
#include "core/library/LibraryStore.h"
#include "core/library/imports/AudioFileList.h"
#include "core/library/imports/Imports.h"
#include "core/library/order/Order.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Collation.h"
#include "platform/FileURL.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "support/FakeTagFiles.h"
#include "support/ManualClock.h"
#include "support/ManualExecutor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int kRounds = 7;

using Measure::median;
using Measure::secondsOf;

void makeFiles(const QString& root, int files, int folders)
{
    for (int folder = 0; folder < folders; ++folder)
        QDir(root).mkpath(QStringLiteral("Папка %1").arg(folder));
    for (int i = 0; i < files; ++i) {
        QFile file(root + QStringLiteral("/Папка %1/Artist %2 - Название трека (Extended Mix) %3.mp3")
                              .arg(i % folders)
                              .arg(i % 97)
                              .arg(i));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot make the files");
    }
}

qsizetype findAndSort(const QString& root)
{
    QProcess find;
    find.start(QStringLiteral("find"), {root, QStringLiteral("-type"), QStringLiteral("f")});
    find.waitForFinished(-1);
    std::vector<std::pair<QByteArray, QString>> keyed;
    for (const QByteArray& line : find.readAllStandardOutput().split('\n')) {
        const QString path = QString::fromUtf8(line);
        if (!path.isEmpty())
            keyed.emplace_back(Collation::standardSortKey(path), path);
    }
    std::ranges::sort(keyed, {}, &std::pair<QByteArray, QString>::first);
    return qsizetype(keyed.size());
}

/// The whole import on the manual clock: its pauses for the window's frames take no time here.
qsizetype import(const QString& root)
{
    ManualClock clock;
    ManualExecutor executor;
    Preferences preferences(std::make_unique<MemoryPreferenceStore>());
    Notifications notifications;
    FakeTagFiles files;
    LibraryServices services{clock, executor, preferences, notifications, files};
    LibraryStore store(services);
    bool isDone = false;
    store.imports().importURLs({FileURL::fromPath(root)}, [&](const Imports::Outcome&) { isDone = true; });
    executor.runOne();
    while (!isDone)
        clock.advance(async::seconds(0.016));
    return store.order().playlistTracks().size();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int files = argc > 1 ? atoi(argv[1]) : 10'000;
    const int folders = argc > 2 ? atoi(argv[2]) : 200;
    const QTemporaryDir root;
    makeFiles(root.path(), files, folders);

    std::vector<double> bare;
    std::vector<double> expanded;
    std::vector<double> imported;
    for (int round = 0; round <= kRounds; ++round) {
        qsizetype found = 0;
        const double findSeconds = secondsOf([&] { found = findAndSort(root.path()); });
        const double expandSeconds = secondsOf([&] {
            found -=
                AudioFileList::expand({FileURL::fromPath(root.path())}, AudioFileList::isPlayable, {}).files.size();
        });
        qsizetype listed = 0;
        const double importSeconds = secondsOf([&] { listed = import(root.path()); });
        if (found != 0 || listed != files)
            qFatal("the counts differ");
        if (round == 0) // warms the cache
            continue;
        bare.push_back(findSeconds);
        expanded.push_back(expandSeconds);
        imported.push_back(importSeconds);
    }
    printf("files %d, folders %d, medians of %d rounds\n", files, folders, kRounds);
    printf("find and sort      %7.1f ms\n", median(bare) * 1e3);
    printf("walk and sort      %7.1f ms   ratio %.2f\n", median(expanded) * 1e3, median(expanded) / median(bare));
    printf("walk, sort, list   %7.1f ms   ratio %.2f   (limit 1.50)\n", median(imported) * 1e3,
           median(imported) / median(bare));
    async::MainQueue::drain();
    return 0;
}
