#include "core/library/tagwriting/MetadataWriteCoordinator.h"

#include "core/library/files/FinishedJob.h"
#include "core/library/tagwriting/TagFiles.h"

async::Task<> MetadataWriteCoordinator::assignAlbum(QString album, QUrl url, std::stop_token stop)
{
    return cleanHeld(CleanerField::Album, std::nullopt, album, url, std::move(stop));
}

async::Task<> MetadataWriteCoordinator::clean(CleanerFields fields, std::optional<QString> title, QUrl url,
                                              std::stop_token stop)
{
    return cleanHeld(fields, title, std::nullopt, url, std::move(stop));
}

async::Task<> MetadataWriteCoordinator::cleanHeld(CleanerFields fields, std::optional<QString> title,
                                                  std::optional<QString> album, QUrl url, std::stop_token stop)
{
    async::Executor& executor = m_executor;
    TagFiles& files = m_files;
    const FileLocks::HeldPath held = co_await m_locks.hold(url, stop);
    auto job = [&files, fields, title, album, url](const std::stop_token&) -> std::optional<TagFileError> {
        try {
            files.clean(fields, title, album, url);
            return std::nullopt;
        } catch (const TagFileError& error) {
            return error;
        }
    };
    const std::optional<TagFileError> failure = co_await finishedJob(executor, stop, std::move(job));
    if (failure)
        throw TagFileError(*failure);
}
