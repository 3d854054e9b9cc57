#include "Commands.h"
#include "Output.h"

#include "core/model/Track.h"
#include "platform/FileURL.h"
#include "tags/AudioMetadataLoader.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonObject>

namespace {

QJsonValue artworkObject(const ArtworkData& artwork)
{
    if (artwork.isNull())
        return QJsonValue::Null;
    const QByteArray digest = QCryptographicHash::hash(artwork.bytes(), QCryptographicHash::Sha256);
    return QJsonObject{{QStringLiteral("bytes"), artwork.byteCount()},
                       {QStringLiteral("sha256"), QString::fromLatin1(digest.toHex())}};
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
    for (const QString& path : arguments)
        Output::line(tagsOfFile(path));
    return ExitStatus::Success; // a read never fails: what cannot be read keeps what the name suggests
}
