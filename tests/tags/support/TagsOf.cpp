#include "support/TagsOf.h"

#include "platform/TemporaryName.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/bytes/ByteSource.h"

#include <QDir>
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

QByteArray FileFolder::read(const QString& name) const
{
    return contentOf(QUrl::fromLocalFile(path(name)));
}

QStringList FileFolder::names() const
{
    return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

int FileFolder::removeTemporaries() const
{
    const QStringList present = names();
    return static_cast<int>(std::ranges::count_if(present, [this](const QString& name) {
        return TemporaryName::matches(name.toUtf8()) && QFile::remove(path(name));
    }));
}

QByteArray contentOf(const QUrl& url)
{
    QFile file(url.toLocalFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool runProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForStarted() && process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}
