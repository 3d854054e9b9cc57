#include "Commands.h"
#include "Output.h"

#include "core/library/session/SessionCoding.h"
#include "tags/writing/WriteErrors.h"

#include <QFile>

#include <cerrno>

ExitStatus Commands::session(const QStringList& arguments)
{
    if (arguments.size() != 1)
        return ExitStatus::Usage;
    const QString& path = arguments.first();
    QFile file(path);
    errno = 0;
    if (!file.open(QIODevice::ReadOnly))
        return Output::failure(path, Output::described(FileError::fromReading(errno, path)));
    const std::optional<SessionRecord> record = SessionCoding::decode(file.readAll());
    if (!record)
        return Output::failure(path, Output::described(FileError(FileError::Case::fileReadCorruptFile, path)));
    const auto favorites = std::ranges::count_if(record->tracks, &Track::isFavorite);
    Output::line({{QStringLiteral("tracks"), record->tracks.size()},
                  {QStringLiteral("favorites"), static_cast<qint64>(favorites)},
                  {QStringLiteral("activeTab"), record->activeTab},
                  {QStringLiteral("rewritten"), QString::fromLatin1(SessionCoding::encode(*record).toBase64())}});
    return ExitStatus::Success;
}
