#pragma once

#include "async/Executor.h"
#include "core/library/files/FileLocks.h"
#include "core/model/CleanerFields.h"

#include <optional>

class TagFiles;

/// Changes of single tags, one writer at a time at a file. Thread: main; the writing itself happens on workers.
class MetadataWriteCoordinator {
public:
    using HeldPath = FileLocks::HeldPath;

    /// All outlive it.
    MetadataWriteCoordinator(FileLocks& locks, async::Executor& executor, TagFiles& files)
        : m_locks(locks)
        , m_executor(executor)
        , m_files(files)
    {
    }

    /// As FileLocks has them.
    async::Task<> acquire(QString path, std::stop_token stop) { return m_locks.acquire(std::move(path), stop); }
    /// \param path one that acquire() gave
    void release(const QString& path) { m_locks.release(path); }
    async::Task<HeldPath> hold(QUrl url, std::stop_token stop) { return m_locks.hold(std::move(url), stop); }

    /// Writes the album alone; an empty one takes it out. Throws TagFileError.
    async::Task<> assignAlbum(QString album, QUrl url, std::stop_token stop);
    /// Takes fields out of the file's tags. \param title set if the title is among the fields. Throws TagFileError.
    async::Task<> clean(CleanerFields fields, std::optional<QString> title, QUrl url, std::stop_token stop);

private:
    async::Task<> cleanHeld(CleanerFields fields, std::optional<QString> title, std::optional<QString> album, QUrl url,
                            std::stop_token stop);

    FileLocks& m_locks;
    async::Executor& m_executor;
    TagFiles& m_files;
};
