#pragma once

#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

/// The `ffmpeg` program that decodes and converts.
namespace FFmpegExecutable {

/// Where to look.
struct Places {
    QStringList resourceFolders = {}; ///< the program's own, in their order
    QString workingDirectory = {};    ///< absolute
    QString searchPath = {}; ///< the variable PATH: folders between colons; relative ones from workingDirectory
};

/// The first of all candidates that \p isExecutable accepts, as an absolute file URL: the program's own, that of a
/// source tree in the working directory, the usual places of package managers, then the search path.
std::optional<QUrl> find(const Places& places, const std::function<bool(const QString& path)>& isExecutable);
/// Whether \p path is a file, not a folder, that this user may execute.
bool isExecutableFile(const QString& path);
/// find() on this computer. Needs the application object. Thread: any.
std::optional<QUrl> url();

} // namespace FFmpegExecutable
