#include "Commands.h"
#include "Output.h"

#include "core/library/session/SessionCoding.h"

#include <QFile>

ExitStatus Commands::session(const QStringList& arguments)
{
    if (arguments.size() != 1)
        return ExitStatus::Usage;
    QFile file(arguments.first());
    const std::optional<SessionRecord> record =
        file.open(QIODevice::ReadOnly) ? SessionCoding::decode(file.readAll()) : std::nullopt;
    if (!record) {
        Output::diagnose(QStringLiteral("no session: ") + arguments.first());
        return ExitStatus::ItemFailed;
    }
    const auto favorites = std::ranges::count_if(record->tracks, &Track::isFavorite);
    Output::line({{QStringLiteral("tracks"), record->tracks.size()},
                  {QStringLiteral("favorites"), static_cast<qint64>(favorites)},
                  {QStringLiteral("activeTab"), record->activeTab},
                  {QStringLiteral("rewritten"), QString::fromLatin1(SessionCoding::encode(*record).toBase64())}});
    return ExitStatus::Success;
}
