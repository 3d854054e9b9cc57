#include "core/model/SupportedAudio.h"

#include <algorithm>

namespace SupportedAudio {

const QStringList& extensions()
{
    static const QStringList kExtensions{QStringLiteral("mp3"), QStringLiteral("m4a"),  QStringLiteral("aac"),
                                         QStringLiteral("wav"), QStringLiteral("aiff"), QStringLiteral("aif"),
                                         QStringLiteral("flac")};
    return kExtensions;
}

bool hasSupportedExtension(QStringView fileName)
{
    const qsizetype point = fileName.lastIndexOf(u'.');
    if (point <= 0) // a leading point marks a hidden file, not an extension
        return false;
    const QStringView extension = fileName.sliced(point + 1);
    return std::ranges::any_of(
        extensions(), [&](const QString& supported) { return extension.compare(supported, Qt::CaseInsensitive) == 0; });
}

} // namespace SupportedAudio
