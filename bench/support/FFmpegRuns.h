#pragma once

#include <QString>
#include <QStringList>

/// Runs of the decoder program by itself, for files to measure with and as the limit to measure against. A run that
/// fails ends the benchmark.
namespace FFmpegRuns {

/// The words of a command, which are parted by single blanks.
QStringList words(const char* text);
void run(const QString& program, const QStringList& arguments);
/// Makes a file of pink noise with two beats a second, so that nothing is easier to decode than music.
/// \param options of its encoder. \return \p path.
QString makeFile(const QString& program, const QString& path, int seconds, const QStringList& options);
/// Decodes as the analyses do. \param seconds   from the start; 0 for all. \param output   gets float samples of one
/// channel.
void decodeBarely(const QString& program, const QString& path, int seconds, int sampleRate, const QString& output);

} // namespace FFmpegRuns
