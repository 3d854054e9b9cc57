#include "Commands.h"
#include "Output.h"

#include "core/model/Track.h"

#include <QFile>

ExitStatus Commands::fallback(const QStringList& arguments)
{
    if (!arguments.isEmpty())
        return ExitStatus::Usage;
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return ExitStatus::Usage;
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        if (line.endsWith('\n'))
            line.chop(1);
        const AudioTags tags = Track::fallbackTags(QUrl::fromLocalFile(u'/' + QString::fromUtf8(line)));
        Output::line({{QStringLiteral("artist"), tags.artist}, {QStringLiteral("title"), tags.title}});
    }
    return ExitStatus::Success;
}
