#pragma once

#include <QStringList>

/// How the program ends.
enum class ExitStatus { Success = 0, ItemFailed = 1, Usage = 2 };

/// The sub-commands: each reads its arguments, makes one call of the engine per item, and prints what that returns.
namespace Commands {

ExitStatus tags(const QStringList& arguments);
ExitStatus fallback(const QStringList& arguments);
ExitStatus import(const QStringList& arguments);
ExitStatus pcm(const QStringList& arguments);
ExitStatus key(const QStringList& arguments);
ExitStatus camelot(const QStringList& arguments);
ExitStatus tempo(const QStringList& arguments);
ExitStatus waveform(const QStringList& arguments);
ExitStatus resample(const QStringList& arguments);
ExitStatus write(const QStringList& arguments);
ExitStatus artwork(const QStringList& arguments);
ExitStatus clean(const QStringList& arguments);
ExitStatus restore(const QStringList& arguments);
ExitStatus id3(const QStringList& arguments);
ExitStatus sort(const QStringList& arguments);
ExitStatus favoritesOrder(const QStringList& arguments);
ExitStatus session(const QStringList& arguments);

} // namespace Commands
