#include "core/library/session/WorkspaceSessionStorage.h"

#include "platform/files/AtomicFile.h"
#include "platform/files/FileCalls.h"
#include "platform/files/MakeFolders.h"
#include "platform/json/JsonReader.h"
#include "platform/json/StoredForms.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <limits>

namespace {

constexpr mode_t kFolderMode = 0700;
constexpr qint64 kMaximumBytes = qint64(1) << 30; // some two million rows; more is no session

// Names on disk, never change.
constexpr QLatin1StringView kAutomaticPrefix("workspace-session-backup-");
constexpr QLatin1StringView kManualPrefix("workspace-session-manual-");
constexpr QLatin1StringView kLeftOutPrefix("workspace-session-leftout-");
constexpr QLatin1StringView kEnding(".json");

QByteArray encoded(const QString& path)
{
    return QFile::encodeName(path);
}

QLatin1StringView prefixOf(WorkspaceSessionStorage::Kind kind)
{
    switch (kind) {
    case WorkspaceSessionStorage::Kind::Manual:
        return kManualPrefix;
    case WorkspaceSessionStorage::Kind::LeftOut:
        return kLeftOutPrefix;
    case WorkspaceSessionStorage::Kind::Automatic:
        break;
    }
    return kAutomaticPrefix;
}

QByteArray digestOf(const QByteArray& data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256);
}

std::optional<timespec> dateOf(const QString& path)
{
    struct statx facts;
    if (FileCalls::current().facts(encoded(path), 0, &facts) != 0)
        return std::nullopt;
    return timespec{static_cast<time_t>(facts.stx_mtime.tv_sec), static_cast<long>(facts.stx_mtime.tv_nsec)};
}

bool isNewer(const WorkspaceSessionStorage::Checkpoint& left, const WorkspaceSessionStorage::Checkpoint& right)
{
    if (left.date.tv_sec != right.date.tv_sec)
        return left.date.tv_sec > right.date.tv_sec;
    if (left.date.tv_nsec != right.date.tv_nsec)
        return left.date.tv_nsec > right.date.tv_nsec;
    return left.path > right.path;
}

double secondsSince(const timespec& date)
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<double>(now.tv_sec - date.tv_sec) + static_cast<double>(now.tv_nsec - date.tv_nsec) / 1e9;
}

} // namespace

SessionStorageError::SessionStorageError(Case which, int code)
    : std::runtime_error(which == Case::InvalidValue ? "the session is no JSON" : "the session could not be written")
    , m_which(which)
    , m_code(code)
{
}

WorkspaceSessionStorage::WorkspaceSessionStorage(QString folder, const Options& options)
    : m_folder(std::move(folder))
    , m_options(options)
{
}

bool WorkspaceSessionStorage::isTestProcess()
{
    return qgetenv("VELMORA_TESTING") == "1" || qEnvironmentVariableIsSet("XCTestConfigurationFilePath") ||
           qEnvironmentVariableIsSet("XCTestBundlePath") ||
           QFileInfo(QCoreApplication::applicationFilePath())
               .fileName()
               .contains(QLatin1StringView("xctest"), Qt::CaseInsensitive);
}

bool WorkspaceSessionStorage::isOff() const
{
    return m_options.isOff || (m_options.skipInTests && isTestProcess());
}

WorkspaceSessionStorage& WorkspaceSessionStorage::none()
{
    Options options;
    options.isOff = true;
    static WorkspaceSessionStorage storage(QString(), options);
    return storage;
}

QString WorkspaceSessionStorage::sessionFile() const
{
    return m_folder + QStringLiteral("/workspace-session-v1.json");
}

QString WorkspaceSessionStorage::pendingFile() const
{
    return m_folder + QStringLiteral("/workspace-session-restore-pending.json");
}

QString WorkspaceSessionStorage::backupFolder() const
{
    return m_folder + QStringLiteral("/Workspace Backups");
}

void WorkspaceSessionStorage::write(const QByteArray& data, qint64 revision)
{
    if (isOff())
        return;
    const std::lock_guard guard(m_lock);
    if (revision <= m_latestWrittenRevision)
        return;
    const std::optional<Counts> fresh = SessionCoding::counts(data);
    if (!fresh && !JsonReader::isValid(data))
        throw SessionStorageError(SessionStorageError::Case::InvalidValue, 0);
    makeFolderLocked(m_folder);
    keepOldFileLocked(fresh);
    if (const int error = AtomicFile::write(encoded(sessionFile()), data))
        throw SessionStorageError(SessionStorageError::Case::NotWritten, error);
    m_latestWrittenRevision = revision;
    noteWrittenLocked(fresh);
    if (std::exchange(m_clearPendingAfterWrite, false))
        FileCalls::current().remove(encoded(pendingFile()));
}

/// Makes a checkpoint of the present file if the new session holds less, or if the last checkpoint is old enough.
void WorkspaceSessionStorage::keepOldFileLocked(const std::optional<Counts>& fresh)
{
    std::optional<QByteArray> old;
    std::optional<Counts> held = knownCounts();
    if (!held) {
        old = AtomicFile::read(encoded(sessionFile()), kMaximumBytes);
        held = old ? SessionCoding::counts(*old) : std::nullopt;
    }
    if (!held || held->tracks < 1)
        return;
    const bool isShrinking = !fresh || fresh->tracks < held->tracks || fresh->favorites < held->favorites;
    if (!isShrinking && !isCheckpointDueLocked())
        return;
    if (!old)
        old = AtomicFile::read(encoded(sessionFile()), kMaximumBytes);
    if (!old || digestOf(*old) == m_copied)
        return;
    try {
        createCheckpointLocked(*old, Kind::Automatic);
    } catch (const SessionStorageError&) {
        // The write itself is worth more than the copy of what was.
    }
}

/// What the file holds if it is the one that was written last: reading it again would take as long as the write.
std::optional<SessionCoding::Counts> WorkspaceSessionStorage::knownCounts() const
{
    struct statx facts;
    if (!m_lastWritten || FileCalls::current().facts(encoded(sessionFile()), 0, &facts) != 0)
        return std::nullopt;
    const bool isSame =
        facts.stx_ino == m_lastWritten->inode && static_cast<qint64>(facts.stx_size) == m_lastWritten->size &&
        facts.stx_mtime.tv_sec == m_lastWritten->seconds && facts.stx_mtime.tv_nsec == m_lastWritten->nanoseconds;
    return isSame ? std::optional(m_lastWritten->counts) : std::nullopt;
}

void WorkspaceSessionStorage::noteWrittenLocked(const std::optional<Counts>& counts)
{
    m_lastWritten.reset();
    struct statx facts;
    if (!counts || FileCalls::current().facts(encoded(sessionFile()), 0, &facts) != 0)
        return;
    m_lastWritten = Stamp{facts.stx_ino, static_cast<qint64>(facts.stx_size), facts.stx_mtime.tv_sec,
                          facts.stx_mtime.tv_nsec, *counts};
}

bool WorkspaceSessionStorage::isCheckpointDueLocked() const
{
    const QList<Checkpoint> automatic = listLocked(Kind::Automatic);
    if (automatic.isEmpty())
        return true;
    const std::optional<timespec> date = dateOf(automatic.first().path);
    return !date || secondsSince(*date) >= m_options.checkpointInterval;
}

std::optional<QByteArray> WorkspaceSessionStorage::readSession()
{
    if (isOff())
        return std::nullopt;
    const std::lock_guard guard(m_lock);
    return AtomicFile::read(encoded(sessionFile()), kMaximumBytes);
}

std::optional<QByteArray> WorkspaceSessionStorage::readPendingRestore()
{
    if (isOff())
        return std::nullopt;
    const std::lock_guard guard(m_lock);
    return AtomicFile::read(encoded(pendingFile()), kMaximumBytes);
}

void WorkspaceSessionStorage::writePendingRestore(const QByteArray& data)
{
    if (isOff())
        return;
    const std::lock_guard guard(m_lock);
    if (!JsonReader::isValid(data))
        throw SessionStorageError(SessionStorageError::Case::InvalidValue, 0);
    makeFolderLocked(m_folder);
    if (const int error = AtomicFile::write(encoded(pendingFile()), data))
        throw SessionStorageError(SessionStorageError::Case::NotWritten, error);
    m_clearPendingAfterWrite = false; // it is for the next start; a write of this one must not take it away
}

void WorkspaceSessionStorage::discardPendingRestore()
{
    if (isOff())
        return;
    const std::lock_guard guard(m_lock);
    FileCalls::current().remove(encoded(pendingFile()));
    m_clearPendingAfterWrite = false;
}

void WorkspaceSessionStorage::clearPendingAfterWrite()
{
    const std::lock_guard guard(m_lock);
    m_clearPendingAfterWrite = true;
}

QList<WorkspaceSessionStorage::Checkpoint> WorkspaceSessionStorage::archives()
{
    if (isOff())
        return {};
    const std::lock_guard guard(m_lock);
    return listLocked();
}

QList<WorkspaceSessionStorage::Checkpoint> WorkspaceSessionStorage::automaticArchives()
{
    if (isOff())
        return {};
    const std::lock_guard guard(m_lock);
    return listLocked(Kind::Automatic);
}

std::optional<QByteArray> WorkspaceSessionStorage::readCheckpoint(const QString& path)
{
    if (isOff())
        return std::nullopt;
    const std::lock_guard guard(m_lock);
    const QList<Checkpoint> all = listLocked();
    if (std::ranges::find(all, path, &Checkpoint::path) == all.end())
        return std::nullopt;
    return AtomicFile::read(encoded(path), kMaximumBytes);
}

void WorkspaceSessionStorage::createCheckpoint(const QByteArray& data, Kind kind)
{
    if (isOff())
        return;
    const std::lock_guard guard(m_lock);
    if (kind != Kind::Automatic) {
        const QList<Checkpoint> own = listLocked(kind);
        if (!own.isEmpty() && AtomicFile::read(encoded(own.first().path), kMaximumBytes) == data)
            return;
    }
    createCheckpointLocked(data, kind);
    if (kind == Kind::Automatic)
        m_copied = digestOf(data);
}

void WorkspaceSessionStorage::createCheckpointLocked(const QByteArray& data, Kind kind)
{
    if (!JsonReader::isValid(data))
        throw SessionStorageError(SessionStorageError::Case::InvalidValue, 0);
    makeFolderLocked(backupFolder());
    const QString name = prefixOf(kind) + QString::fromLatin1(StoredForms::uuidText(freshID())) + kEnding;
    if (const int error = AtomicFile::write(encoded(backupFolder() + u'/' + name), data))
        throw SessionStorageError(SessionStorageError::Case::NotWritten, error);
    if (kind != Kind::Manual)
        pruneLocked(kind);
}

QList<WorkspaceSessionStorage::Checkpoint> WorkspaceSessionStorage::listLocked() const
{
    constexpr Kind kKinds[] = {Kind::Automatic, Kind::Manual, Kind::LeftOut};
    QList<Checkpoint> found;
    const QStringList names = QDir(backupFolder()).entryList(QDir::Files | QDir::Hidden, QDir::NoSort);
    for (const QString& name : names) {
        const auto kind = std::ranges::find_if(kKinds, [&](Kind each) { return name.startsWith(prefixOf(each)); });
        if (kind == std::end(kKinds) || !name.endsWith(kEnding))
            continue;
        const QString path = backupFolder() + u'/' + name;
        constexpr timespec kDistantPast{std::numeric_limits<time_t>::min(), 0};
        found.append({path, dateOf(path).value_or(kDistantPast), *kind});
    }
    std::ranges::sort(found, isNewer);
    return found;
}

QList<WorkspaceSessionStorage::Checkpoint> WorkspaceSessionStorage::listLocked(Kind kind) const
{
    QList<Checkpoint> found = listLocked();
    found.removeIf([kind](const Checkpoint& checkpoint) { return checkpoint.kind != kind; });
    return found;
}

/// Lets the oldest checkpoints of a kind go, and what stopped writes left beside them.
void WorkspaceSessionStorage::pruneLocked(Kind kind) const
{
    const QList<Checkpoint> own = listLocked(kind);
    for (qsizetype i = m_options.maximumCheckpoints; i < own.size(); ++i)
        FileCalls::current().remove(encoded(own[i].path));
    const QString unfinished =
        QStringLiteral("workspace-session-*") + kEnding + QLatin1StringView(AtomicFile::kUnfinishedEnding);
    for (const QString& name : QDir(backupFolder()).entryList({unfinished}, QDir::Files))
        FileCalls::current().remove(encoded(backupFolder() + u'/' + name));
}

void WorkspaceSessionStorage::makeFolderLocked(const QString& path) const
{
    if (const int error = makeFolders(encoded(path), kFolderMode))
        throw SessionStorageError(SessionStorageError::Case::NotWritten, error);
}
