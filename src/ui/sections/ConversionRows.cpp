#include "ui/sections/ConversionRows.h"

#include "core/library/LibraryStore.h"
#include "core/library/workspace/Workspace.h"
#include "ui/text/Texts.h"

namespace {

QString statusText(const ConversionItem::Status& status)
{
    using Case = ConversionItem::Status::Case;
    switch (status.value) {
    case Case::Waiting:
        return Texts::localized(QStringLiteral("В очереди"));
    case Case::Converting:
        return Texts::localized(QStringLiteral("Конвертируется…"));
    case Case::Completed:
        return Texts::localized(QStringLiteral("Готово"));
    case Case::Failed:
        return Texts::localized(status.message);
    }
    Q_UNREACHABLE();
}

} // namespace

namespace ConversionRows {

QList<Track> rows(LibraryStore& library, const QList<Track>& before)
{
    QHash<TrackID, Track> known;
    known.reserve(before.size());
    for (const Track& track : before)
        known.insert(track.id(), track);
    QList<Track> rows;
    const QList<ConversionItem>& items = library.workspace().conversionItems();
    rows.reserve(items.size());
    for (const ConversionItem& item : items) {
        const auto track = known.constFind(item.id);
        rows.append(track != known.constEnd() ? *track : Track(item.id, item.url));
    }
    return rows;
}

QHash<TrackID, QString> statusTexts(const LibraryStore& library)
{
    QHash<TrackID, QString> texts;
    for (const ConversionItem& item : library.workspace().conversionItems())
        texts.insert(item.id, statusText(item.status));
    return texts;
}

} // namespace ConversionRows
