#pragma once

#include <QProcess>
#include <QStringList>

/// Real files by the real encoder.
namespace Encoder {

/// \param arguments all but the output's path, with blanks between. \return whether the file was made.
inline bool encode(const QString& arguments, const QString& path)
{
    const QStringList words =
        QStringLiteral("-v error -y -f lavfi -i ").append(arguments).split(u' ', Qt::SkipEmptyParts);
    return QProcess::execute(QStringLiteral("ffmpeg"), words + QStringList{path}) == 0;
}

} // namespace Encoder
