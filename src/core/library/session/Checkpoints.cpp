#include "core/library/session/Checkpoints.h"

#include "async/MainQueue.h"
#include "core/library/session/SessionCoding.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/status/StatusLine.h"

namespace {

using Tone = WorkspaceStatus::Tone;

constexpr double kRestoreTextDuration = 6; // seconds

QList<Checkpoints::Checkpoint> readCheckpoints(WorkspaceSessionStorage& storage, const std::stop_token& stop)
{
    QList<Checkpoints::Checkpoint> found;
    const QList<WorkspaceSessionStorage::Checkpoint> archives = storage.archives();
    for (const WorkspaceSessionStorage::Checkpoint& archive : archives) {
        if (stop.stop_requested())
            break;
        const std::optional<QByteArray> bytes = storage.readCheckpoint(archive.path);
        const auto counts = bytes ? SessionCoding::counts(*bytes) : std::nullopt;
        if (counts)
            found.append({QUrl::fromLocalFile(archive.path), QDateTime::fromSecsSinceEpoch(archive.date.tv_sec),
                          counts->tracks, counts->favorites});
    }
    return found;
}

/// \return whether the copy waits for the next start now.
bool makePending(WorkspaceSessionStorage& storage, const QString& path)
{
    const std::optional<QByteArray> bytes = storage.readCheckpoint(path);
    if (!bytes || !SessionCoding::decode(*bytes))
        return false;
    try {
        storage.writePendingRestore(*bytes);
    } catch (const SessionStorageError&) {
        return false;
    }
    return true;
}

} // namespace

Checkpoints::Checkpoints(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
}

Checkpoints::~Checkpoints() = default;

void Checkpoints::list(std::function<void(const QList<Checkpoint>&)> listed)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_dependencies.storage) {
        listed({});
        return;
    }
    m_listTask.start([this, listed = std::move(listed)](std::stop_token stop) { return listTask(listed, stop); });
}

async::Task<> Checkpoints::listTask(std::function<void(const QList<Checkpoint>&)> listed, std::stop_token stop)
{
    WorkspaceSessionStorage* const storage = m_dependencies.storage;
    auto job = [storage](std::stop_token jobStop) { return readCheckpoints(*storage, jobStop); };
    const QList<Checkpoint> found =
        co_await m_dependencies.executor.run(async::Priority::UserInitiated, stop, std::move(job));
    listed(found);
}

void Checkpoints::open(const QUrl& url)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (!m_dependencies.storage)
        return;
    const QString path = url.toLocalFile();
    m_openTask.start([this, path](std::stop_token stop) { return openTask(path, stop); });
}

async::Task<> Checkpoints::openTask(QString path, std::stop_token stop)
{
    WorkspaceSessionStorage* const storage = m_dependencies.storage;
    auto job = [storage, path](std::stop_token) { return makePending(*storage, path); };
    const bool isPending = co_await m_dependencies.executor.run(async::Priority::UserInitiated, stop, std::move(job));
    StatusLine& status = m_dependencies.status;
    if (isPending)
        status.showStatus(QStringLiteral("Копия откроется при следующем запуске"), StatusIcon::Done, Tone::Success,
                          kRestoreTextDuration);
    else
        status.showStatus(QStringLiteral("Копию не удалось прочитать"), StatusIcon::Warning, Tone::Warning,
                          kRestoreTextDuration);
}
