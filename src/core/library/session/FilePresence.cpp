#include "core/library/session/FilePresence.h"

#include "platform/files/FileCalls.h"

#include <QFile>
#include <QHash>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace FilePresence {

namespace {

constexpr size_t kFilesPerThread = 8192; // chosen: below this a thread costs more than it saves
constexpr size_t kThreadsPerVolume = 4;

enum class Answer : uchar { None, Present, Missing };

/// The files of one thread's share, shared with whoever waits for it: the thread may outlive the wait.
struct Share {
    std::vector<QByteArray> paths;
    std::vector<size_t> places; ///< of the paths among the URLs
    std::unique_ptr<std::atomic<Answer>[]> answers;
    std::atomic<size_t> answered{0};
    std::atomic<bool> isAbandoned{false};
};

/// Wakes the waiting thread when a share is through.
struct Bell {
    std::mutex lock;
    std::condition_variable rung;
    size_t finished = 0;
};

bool isThere(const QByteArray& path)
{
    struct statx facts;
    return FileCalls::current().facts(path, 0, &facts) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

void ask(const std::shared_ptr<Share>& share, const std::shared_ptr<Bell>& bell, const Probe& probe)
{
    for (size_t i = 0; i < share->paths.size() && !share->isAbandoned.load(std::memory_order_relaxed); ++i) {
        const bool isPresent = probe ? probe(share->paths[i]) : isThere(share->paths[i]);
        share->answers[i].store(isPresent ? Answer::Present : Answer::Missing, std::memory_order_release);
        share->answered.store(i + 1, std::memory_order_relaxed);
    }
    const std::lock_guard guard(bell->lock);
    ++bell->finished;
    bell->rung.notify_all();
}

/// Mount points as the kernel lists them, which asks no volume anything.
QList<QByteArray> mountPoints()
{
    QList<QByteArray> points;
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    if (!table.open(QIODevice::ReadOnly))
        return points;
    constexpr qsizetype kPointField = 4;
    for (const QByteArray& line : table.readAll().split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() <= kPointField)
            continue;
        QByteArray point = fields[kPointField];
        point.replace("\\040", " ").replace("\\011", "\t").replace("\\012", "\n").replace("\\134", "\\");
        points.append(point == "/" ? QByteArray() : point);
    }
    return points;
}

std::vector<std::shared_ptr<Share>> sharesOf(const QList<QUrl>& urls)
{
    const QList<QByteArray> mounts = mountPoints();
    QHash<QByteArray, std::vector<size_t>> volumes;
    std::vector<QByteArray> paths;
    paths.reserve(static_cast<size_t>(urls.size()));
    std::optional<QByteArray> folder; // files of one folder mostly follow each other and lie on one volume
    QByteArray volume;
    for (const QUrl& url : urls) {
        paths.push_back(QFile::encodeName(url.path(QUrl::FullyDecoded)));
        QByteArray own = paths.back().first(std::max<qsizetype>(0, paths.back().lastIndexOf('/')));
        if (own != folder) {
            folder = std::move(own);
            volume = volumeOf(paths.back(), mounts);
        }
        volumes[volume].push_back(paths.size() - 1);
    }
    std::vector<std::shared_ptr<Share>> shares;
    for (const std::vector<size_t>& places : std::as_const(volumes)) {
        const size_t threads = std::clamp(places.size() / kFilesPerThread, size_t(1), kThreadsPerVolume);
        const size_t size = (places.size() + threads - 1) / threads;
        for (size_t first = 0; first < places.size(); first += size) {
            auto share = std::make_shared<Share>();
            for (size_t i = first; i < std::min(first + size, places.size()); ++i) {
                share->places.push_back(places[i]);
                share->paths.push_back(paths[places[i]]);
            }
            share->answers = std::make_unique<std::atomic<Answer>[]>(share->paths.size());
            shares.push_back(std::move(share));
        }
    }
    return shares;
}

/// Waits until every share is through or has been silent for too long.
void wait(const std::vector<std::shared_ptr<Share>>& shares, Bell& bell, std::chrono::milliseconds patience)
{
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds kLook{50};
    std::vector<size_t> before(shares.size(), 0);
    std::vector<Clock::time_point> lastAnswer(shares.size(), Clock::now());
    for (;;) {
        bool isAnyoneAlive = false;
        for (size_t i = 0; i < shares.size(); ++i) {
            const size_t answered = shares[i]->answered.load(std::memory_order_relaxed);
            if (answered != before[i])
                lastAnswer[i] = Clock::now();
            before[i] = answered;
            isAnyoneAlive |= answered < shares[i]->paths.size() && Clock::now() - lastAnswer[i] < patience;
        }
        std::unique_lock guard(bell.lock);
        if (!isAnyoneAlive || bell.finished == shares.size())
            return;
        bell.rung.wait_for(guard, std::min(kLook, patience));
    }
}

} // namespace

QByteArray volumeOf(const QByteArray& path, const QList<QByteArray>& mounts)
{
    QByteArray best;
    for (const QByteArray& mount : mounts) {
        const bool holds = path.startsWith(mount) && (path.size() == mount.size() || path[mount.size()] == '/');
        if (holds && mount.size() > best.size())
            best = mount;
    }
    return best;
}

std::vector<bool> check(const QList<QUrl>& urls, std::chrono::milliseconds patience, const Probe& probe)
{
    const std::vector<std::shared_ptr<Share>> shares = sharesOf(urls);
    const auto bell = std::make_shared<Bell>();
    for (const std::shared_ptr<Share>& share : shares)
        std::thread(ask, share, bell, probe).detach(); // a call that hangs in the kernel cannot be joined
    wait(shares, *bell, patience);
    std::vector<bool> present(static_cast<size_t>(urls.size()), true);
    for (const std::shared_ptr<Share>& share : shares) {
        share->isAbandoned.store(true, std::memory_order_relaxed);
        for (size_t i = 0; i < share->places.size(); ++i)
            present[share->places[i]] = share->answers[i].load(std::memory_order_acquire) != Answer::Missing;
    }
    return present;
}

} // namespace FilePresence
