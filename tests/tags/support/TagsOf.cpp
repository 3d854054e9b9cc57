#include "support/TagsOf.h"

#include "platform/TemporaryName.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/bytes/ByteSource.h"

#include <QDir>
#include <QFile>

Asset assetOf(const QByteArray& bytes, const QString& extension, bool readsWindows1251)
{
    MemoryBytes source(bytes);
    return AssetReader::read(source, extension, {readsWindows1251});
}

LoadedTrackMetadata FileFolder::load(const QString& name, const QByteArray& bytes, const AudioTags& fallbackTags) const
{
    return AudioMetadataLoader::load(write(name, bytes), fallbackTags);
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
