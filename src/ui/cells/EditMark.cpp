#include "ui/cells/EditMark.h"

#include "core/model/Track.h"
#include "ui/text/Texts.h"
#include "ui/theme/Metrics.h"
#include "ui/theme/Paint.h"

namespace EditMark {

QString fieldName(TagField field)
{
    switch (field) {
    case TagField::Title:
        return Texts::localized(QStringLiteral("Название"));
    case TagField::Artist:
        return Texts::localized(QStringLiteral("Исполнитель"));
    case TagField::Album:
        return Texts::localized(QStringLiteral("Альбом"));
    case TagField::AlbumArtist:
        return Texts::localized(QStringLiteral("Исполнитель альбома"));
    case TagField::Genre:
        return Texts::localized(QStringLiteral("Жанр"));
    case TagField::Year:
        return Texts::localized(QStringLiteral("Год"));
    case TagField::Track:
        return Texts::localized(QStringLiteral("Трек"));
    case TagField::Tempo:
        return Texts::localized(QStringLiteral("BPM"));
    case TagField::MusicalKey:
        return Texts::localized(QStringLiteral("Тональность"));
    case TagField::Comment:
        return Texts::localized(QStringLiteral("Комментарий"));
    }
    Q_UNREACHABLE();
}

QString text(const Track& track)
{
    const TagFields edited = track.editedFields();
    QStringList names;
    for (const TagField field : TagFieldSet::list()) {
        if (edited.testFlag(field))
            names.append(fieldName(field));
    }
    if (names.isEmpty())
        return {};
    return VelmoraLocalization::format(QStringLiteral("Не записано в файл: %@"), {names.join(QStringLiteral(", "))});
}

QRect paint(QPainter& painter, const QRect& line, const ThemeColours& colours)
{
    constexpr int kDot = 7;
    const QRectF dot(line.right() - kDot, line.center().y() - kDot / 2.0 + 0.5, kDot, kDot);
    Paint::roundedFill(painter, dot, kDot / 2.0, colours.warning);
    return line.adjusted(0, 0, -kDot - Metrics::kSpace2, 0);
}

} // namespace EditMark
