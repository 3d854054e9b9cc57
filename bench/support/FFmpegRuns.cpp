#include "FFmpegRuns.h"

#include <QProcess>

namespace FFmpegRuns {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(u' ');
}

void run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("ffmpeg failed");
}

QString makeFile(const QString& program, const QString& path, int seconds, const QStringList& options)
{
    const QString source =
        QStringLiteral("anoisesrc=color=pink:amplitude=0.5:duration=%1:sample_rate=44100,tremolo=f=2:d=0.8,"
                       "aformat=channel_layouts=stereo")
            .arg(seconds);
    run(program, words("-nostdin -y -v error -f lavfi -i") + QStringList{source} + options + QStringList{path});
    return path;
}

void decodeBarely(const QString& program, const QString& path, int seconds, int sampleRate, const QString& output)
{
    const QStringList limit = seconds > 0 ? QStringList{QStringLiteral("-t"), QString::number(seconds)} : QStringList();
    run(program, words("-nostdin -y -v error -threads 1 -filter_threads 1 -fflags +discardcorrupt -err_detect "
                       "ignore_err -i") +
                     QStringList{path} + words("-map 0:a:0 -vn -sn -dn") + limit +
                     QStringList{QStringLiteral("-ac"), QStringLiteral("1"), QStringLiteral("-ar"),
                                 QString::number(sampleRate), QStringLiteral("-f"), QStringLiteral("f32le"), output});
}

} // namespace FFmpegRuns
