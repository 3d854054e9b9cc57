#include "Commands.h"
#include "Output.h"

#include "core/library/imports/AudioFileList.h"
#include "core/model/Track.h"
#include "platform/FileURL.h"
#include "tags/AudioMetadataLoader.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonObject>

#include <atomic>
#include <thread>
#include <vector>

namespace {

/// Files that an import reads at the same time.
constexpr int kReaders = 2;

/// The rows of an import keep what was read, so it is kept here too.
std::vector<std::optional<LoadedTrackMetadata>> readAll(const QList<QUrl>& files)
{
    std::vector<std::optional<LoadedTrackMetadata>> results(static_cast<std::size_t>(files.size()));
    std::atomic<std::size_t> next = 0;
    const auto readOn = [&] {
        for (std::size_t index = next++; index < results.size(); index = next++) {
            const QUrl& url = files[static_cast<qsizetype>(index)];
            results[index] = AudioMetadataLoader::loadIfReadable(url, Track::fallbackTags(url));
        }
    };
    std::vector<std::jthread> readers;
    for (int index = 0; index < kReaders; ++index)
        readers.emplace_back(readOn);
    readers.clear(); // waits
    return results;
}

double secondsOf(QElapsedTimer& timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

} // namespace

ExitStatus Commands::import(const QStringList& arguments)
{
    QList<QUrl> folders;
    for (const QString& path : arguments) {
        if (!QFileInfo(path).isDir()) {
            Output::diagnose(QStringLiteral("no such folder: ") + path);
            return ExitStatus::Usage;
        }
        folders.append(FileURL::fromPath(QDir::current().absoluteFilePath(path)));
    }
    if (folders.isEmpty())
        return ExitStatus::Usage;

    QElapsedTimer timer;
    timer.start();
    const QList<QUrl> files = AudioFileList::expand(folders, &AudioFileList::isPlayable, {}).files;
    const double expandSeconds = secondsOf(timer);
    timer.restart();
    const auto results = readAll(files);
    const double readSeconds = secondsOf(timer);
    Output::line({{QStringLiteral("files"), static_cast<qint64>(results.size())},
                  {QStringLiteral("expandSeconds"), expandSeconds},
                  {QStringLiteral("readSeconds"), readSeconds}});
    return ExitStatus::Success;
}
