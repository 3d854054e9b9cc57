#include "WaveformScrubber/decoding/WaveformExecutable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace WaveformExecutable {

namespace {

bool isExecutableFile(const QString& path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace

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
    for (QString& path : paths)
        path = QDir::cleanPath(path);
    return paths;
}

std::optional<QString> find(const Places& places, const std::function<bool(const QString& path)>& isExecutable)
{
    for (const QString& path : candidates(places)) {
        if (isExecutable(path))
            return path;
    }
    return std::nullopt;
}

std::optional<QString> path()
{
    const QString program = QCoreApplication::applicationDirPath();
    const Places places{
        .resourceFolders = {program + QStringLiteral("/Resources"), program + QStringLiteral("/../share/velmora")},
        .workingDirectory = QDir::currentPath(),
        .searchPath = qEnvironmentVariable("PATH")};
    return find(places, &isExecutableFile);
}

} // namespace WaveformExecutable
