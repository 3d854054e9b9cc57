#include "support/TagsOf.h"

#include "tags/AudioMetadataLoader.h"
#include "tags/bytes/ByteSource.h"

#include <QFile>
#include <QProcess>

Asset assetOf(const QByteArray& bytes, const QString& extension, bool readsWindows1251)
{
    MemoryBytes source(bytes);
    return AssetReader::read(source, extension, {readsWindows1251});
}

QUrl FileFolder::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a test file");
    return QUrl::fromLocalFile(path(name));
}

LoadedTrackMetadata FileFolder::load(const QString& name, const QByteArray& bytes, const AudioTags& fallbackTags) const
{
    return AudioMetadataLoader::load(write(name, bytes), fallbackTags);
}

bool runProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForStarted() && process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}
