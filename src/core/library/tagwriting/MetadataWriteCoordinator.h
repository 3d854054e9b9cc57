#pragma once

#include "async/Executor.h"
#include "core/model/CleanerFields.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>
#include <stop_token>

class TagFiles;

/// Lets one writer at a time at a file; who comes later waits, in order of arrival. Files are told apart by their
/// standardized path. Thread: main; the writing itself happens on workers.
class MetadataWriteCoordinator {
public:
    /// Gives a path back when the last of its owners goes.
    class Held;
    using HeldPath = std::shared_ptr<Held>;

    MetadataWriteCoordinator(async::Executor& executor, TagFiles& files);
    ~MetadataWriteCoordinator();
    MetadataWriteCoordinator(const MetadataWriteCoordinator&) = delete;
    MetadataWriteCoordinator& operator=(const MetadataWriteCoordinator&) = delete;

    /// Returns when the caller holds the path. Throws Cancelled after a stop request; the path is not held then.
    async::Task<> acquire(QString path, std::stop_token stop);
    /// Gives a held path to whoever has waited longest.
    void release(const QString& path);
    /// The same with an owner that releases whatever happens.
    async::Task<HeldPath> hold(QUrl url, std::stop_token stop);

    /// Writes the album alone; an empty one takes it out. Throws TagFileError.
    async::Task<> assignAlbum(QString album, QUrl url, std::stop_token stop);
    /// Takes fields out of the file's tags. \param title set if the title is among the fields. Throws TagFileError.
    async::Task<> clean(CleanerFields fields, std::optional<QString> title, QUrl url, std::stop_token stop);

private:
    struct State;
    async::Task<> cleanHeld(CleanerFields fields, std::optional<QString> title, std::optional<QString> album, QUrl url,
                            std::stop_token stop);

    async::Executor& m_executor;
    TagFiles& m_files;
    std::shared_ptr<State> m_state;
};
