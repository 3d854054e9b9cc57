#include "tags/vault/TagVault.h"

#include "platform/FileURL.h"
#include "tags/vault/FileAnatomy.h"
#include "tags/vault/VaultEntry.h"
#include "tags/vault/VaultError.h"
#include "tags/vault/VaultFolder.h"
#include "tags/writing/FileRewrite.h"
#include "tags/writing/RewritePlan.h"
#include "tags/writing/RewriteSource.h"
#include "tags/writing/SourceFile.h"
#include "tags/writing/WriteErrors.h"

#include <QSet>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <mutex>

namespace {

QString extensionOf(const QUrl& url)
{
    return FileURL::pathExtension(url).toLower();
}

bool hasSoundOf(const FileAnatomy& file, const VaultEntry::Label& label)
{
    return file.soundDigest == label.soundDigest &&
           std::ranges::equal(file.sound, label.soundLengths, {}, &FileAnatomy::Stretch::length);
}

/// What the system said; an entry that the vault itself finds too large has no room either.
int systemErrorOf(const FileError& error)
{
    return error.systemError() == 0 && error.which() == FileError::Case::fileWriteOutOfSpace ? EFBIG
                                                                                             : error.systemError();
}

QByteArray entryBytes(const QString& path, const RewriteSource& source, const FileAnatomy& anatomy)
{
    try {
        return VaultEntry::make(path, source, anatomy).toBytes();
    } catch (const FileError& error) {
        if (error.which() != FileError::Case::fileWriteOutOfSpace)
            throw; // the file cannot be read
        throw VaultError(VaultError::Case::cannotKeep, path, systemErrorOf(error));
    }
}

/// Gives a file the tags of an entry. \param entryOf finds the entry by the digest of the file's sound.
template <typename EntryOf>
void putEntryBack(const QUrl& url, const EntryOf& entryOf)
{
    const QString extension = extensionOf(url);
    const QString path = FileURL::standardizedPath(url);
    FileRewrite rewrite(path, FileURL::pathExtension(url));
    SourceBytes bytes(rewrite.sourceSize(), [&](qint64 offset, qint64 count) { return rewrite.read(offset, count); });
    const FileAnatomy present = FileAnatomy::read(RewriteSource(bytes, path), extension);
    const VaultEntry entry = entryOf(present.soundDigest);
    if (entry.label().path != path || !hasSoundOf(present, entry.label()))
        throw VaultError(VaultError::Case::noEntry, path);
    if (present.otherDigest != entry.label().otherDigest)
        throw WriteError(WriteError::Case::rewriteFailed, extension);
    const RewritePlan plan = entry.planRestore(present);
    plan.writeTo(rewrite);
    rewrite.commit(plan.sound(), extension);
}

} // namespace

struct TagVault::State {
    State(const QString& path, qint64 limit)
        : folder(path, limit)
    {
    }

    /// Whether there is an entry that can be put back onto the file. Its label is looked at every time, the rest once:
    /// a disk loses bytes between two runs, hardly within one.
    bool hasEntry(const VaultFolder::Key& key, const FileAnatomy& file)
    {
        const std::optional<VaultEntry::Label> label = labelOf(key);
        if (!label || label->path != key.path || !hasSoundOf(file, *label))
            return false;
        const QString name = folder.fileFor(key);
        const std::lock_guard lock(mutex);
        if (checked.contains(name))
            return true;
        const std::optional<VaultFolder::Found> found = folder.read(key, VaultEntry::kMaximumSize);
        if (!found || !VaultEntry::isWhole(found->bytes))
            return false;
        checked.insert(name);
        return true;
    }

    std::optional<VaultEntry::Label> labelOf(const VaultFolder::Key& key) const
    {
        constexpr qint64 kUsualLabel = 8192; // a path and a stretch of sound
        std::optional<VaultEntry::Label> label;
        for (const qint64 count : {kUsualLabel, VaultEntry::kMaximumLabel}) {
            const std::optional<VaultFolder::Found> found = folder.read(key, count);
            label = found ? VaultEntry::labelOf(found->bytes, found->size) : std::nullopt;
            if (label || !found || found->size <= count)
                break;
        }
        return label;
    }

    /// The whole entry; VaultError without a good one.
    VaultEntry entryOf(const VaultFolder::Key& key) const
    {
        std::optional<VaultFolder::Found> found;
        try {
            found = folder.read(key, VaultEntry::kMaximumSize);
        } catch (const FileError& error) {
            throw VaultError(VaultError::Case::damaged, key.path, error.systemError());
        }
        if (!found)
            throw VaultError(VaultError::Case::noEntry, key.path);
        std::optional<VaultEntry> entry = VaultEntry::fromBytes(found->bytes);
        if (!entry)
            throw VaultError(VaultError::Case::damaged, key.path);
        return *std::move(entry);
    }

    VaultFolder folder;
    std::mutex mutex;      ///< of the next
    QSet<QString> checked; ///< the entries that were found whole in this run
};

TagVault::TagVault(const QString& folder, qint64 limit)
    : m_state(std::make_unique<State>(folder, limit))
{
}

TagVault::~TagVault() = default;

QString TagVault::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Velmora/TagVault");
}

void TagVault::keep(const QUrl& url)
{
    const QString extension = extensionOf(url);
    if (!FileAnatomy::isKnown(extension))
        return;
    const QString path = FileURL::standardizedPath(url);
    const SourceFile file(path);
    SourceBytes bytes(file.size(), [&](qint64 offset, qint64 count) { return file.read(offset, count); });
    const RewriteSource source(bytes, path);
    const FileAnatomy anatomy = FileAnatomy::read(source, extension);
    const VaultFolder::Key key{path, anatomy.soundDigest};
    try {
        if (m_state->hasEntry(key, anatomy))
            return;
    } catch (const FileError& error) {
        throw VaultError(VaultError::Case::cannotKeep, path, error.systemError());
    }
    const QByteArray entry = entryBytes(path, source, anatomy);
    if (!file.isUnchanged()) // half of one and half of another state
        throw WriteError(WriteError::Case::rewriteFailed, extension);
    try {
        m_state->folder.put(key, entry);
    } catch (const FileError& error) {
        throw VaultError(VaultError::Case::cannotKeep, path, systemErrorOf(error));
    }
}

bool TagVault::holds(const QUrl& url) const
{
    return m_state->folder.holds(FileURL::standardizedPath(url));
}

void TagVault::restore(const QUrl& url)
{
    const QString path = FileURL::standardizedPath(url);
    if (!FileAnatomy::isKnown(extensionOf(url)) || !m_state->folder.holds(path))
        throw VaultError(VaultError::Case::noEntry, path);
    putEntryBack(url, [&](const QByteArray& sound) { return m_state->entryOf({path, sound}); });
}

QByteArray TagVault::present(const QUrl& url)
{
    const QString extension = extensionOf(url);
    if (!FileAnatomy::isKnown(extension))
        return {};
    const QString path = FileURL::standardizedPath(url);
    const SourceFile file(path);
    SourceBytes bytes(file.size(), [&](qint64 offset, qint64 count) { return file.read(offset, count); });
    const RewriteSource source(bytes, path);
    const QByteArray entry = entryBytes(path, source, FileAnatomy::read(source, extension));
    if (!file.isUnchanged()) // half of one and half of another state
        throw WriteError(WriteError::Case::rewriteFailed, extension);
    return entry;
}

void TagVault::putBack(const QByteArray& tags, const QUrl& url)
{
    const QString path = FileURL::standardizedPath(url);
    std::optional<VaultEntry> entry = VaultEntry::fromBytes(tags);
    if (!entry || !FileAnatomy::isKnown(extensionOf(url)))
        throw VaultError(VaultError::Case::noEntry, path);
    putEntryBack(url, [&](const QByteArray&) { return *entry; });
}
