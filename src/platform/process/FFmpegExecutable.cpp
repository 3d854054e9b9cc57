#include "platform/process/FFmpegExecutable.h"

#include "platform/FileURL.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace FFmpegExecutable {

namespace {

QStringList candidates(const Places& places)
{
    const QDir workingDirectory(places.workingDirectory);
    QStringList paths;
    for (const QString& folder : places.resourceFolders)
        paths.append(folder + QStringLiteral("/MP3Converter/ffmpeg"));
    paths.append({workingDirectory.filePath(QStringLiteral("Sources/Velmora/Resources/MP3Converter/ffmpeg")),
                  QStringLiteral("/opt/homebrew/bin/ffmpeg"), QStringLiteral("/usr/local/bin/ffmpeg"),
                  QStringLiteral("/usr/bin/ffmpeg")});
    for (const QString& folder : places.searchPath.split(u':', Qt::SkipEmptyParts))
        paths.append(workingDirectory.filePath(folder) + QStringLiteral("/ffmpeg"));
    return paths;
}

} // namespace

std::optional<QUrl> find(const Places& places, const std::function<bool(const QString& path)>& isExecutable)
{
    for (const QString& path : candidates(places)) {
        if (isExecutable(path))
            return FileURL::standardized(FileURL::fromPath(path));
    }
    return std::nullopt;
}

bool isExecutableFile(const QString& path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

std::optional<QUrl> url()
{
    const QString program = QCoreApplication::applicationDirPath();
    const Places places{
        .resourceFolders = {program + QStringLiteral("/Resources"), program + QStringLiteral("/../share/velmora")},
        .workingDirectory = QDir::currentPath(),
        .searchPath = qEnvironmentVariable("PATH")};
    return find(places, &isExecutableFile);
}

} // namespace FFmpegExecutable
