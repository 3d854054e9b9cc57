#include "Commands.h"
#include "Output.h"

#include "core/model/Track.h"
#include "platform/FileURL.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/writing/WriteErrors.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonObject>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace {

QJsonValue artworkObject(const ArtworkData& artwork)
{
    if (artwork.isNull())
        return QJsonValue::Null;
    const QByteArray digest = QCryptographicHash::hash(artwork.bytes(), QCryptographicHash::Sha256);
    return QJsonObject{{QStringLiteral("bytes"), artwork.byteCount()},
                       {QStringLiteral("sha256"), QString::fromLatin1(digest.toHex())}};
}

/// Why the file cannot be opened; 0 if it can. A pipe is not waited for.
int openingError(const QString& path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return errno;
    ::close(file);
    return 0;
}

QJsonObject tagsOfFile(const QString& path)
{
    const QUrl url = FileURL::fromPath(QDir::current().absoluteFilePath(path));
    const LoadedTrackMetadata metadata = AudioMetadataLoader::load(url, Track::fallbackTags(url));
    return {{QStringLiteral("path"), path},
            {QStringLiteral("tags"), metadata.tags.toJson()},
            {QStringLiteral("duration"), metadata.duration},
            {QStringLiteral("bitRate"), metadata.bitRate},
            {QStringLiteral("bitDepth"), metadata.bitDepth},
            {QStringLiteral("format"), metadata.format},
            {QStringLiteral("artwork"), artworkObject(metadata.artworkData)}};
}

} // namespace

ExitStatus Commands::tags(const QStringList& arguments)
{
    if (arguments.isEmpty())
        return ExitStatus::Usage;
    ExitStatus status = ExitStatus::Success;
    for (const QString& path : arguments) {
        if (const int error = openingError(path))
            status = Output::failure(path, Output::described(FileError::fromReading(error, path)));
        else
            Output::line(tagsOfFile(path)); // what the file does not tell is what its name suggests
    }
    return status;
}
