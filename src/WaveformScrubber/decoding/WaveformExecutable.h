#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// The `ffmpeg` program that decodes for envelopes.
namespace WaveformExecutable {

/// Where to look.
struct Places {
    QStringList resourceFolders = {}; ///< the program's own, in their order
    QString workingDirectory = {};    ///< absolute
    QString searchPath = {}; ///< the variable PATH: folders between colons; relative ones from workingDirectory
};

/// Paths in the order in which they are tried: the program's own, that of a source tree in the working directory, the
/// usual places of package managers, then the search path.
QStringList candidates(const Places& places);
/// The first candidate that \p isExecutable accepts.
std::optional<QString> find(const Places& places, const std::function<bool(const QString& path)>& isExecutable);
/// find() on this computer, for files that this user may execute. Needs the application object. Thread: any.
std::optional<QString> path();

} // namespace WaveformExecutable
