#include "ui/thumbnails/CoverPaint.h"

#include "core/model/Track.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Paint.h"
#include "ui/theme/Theme.h"
#include "ui/thumbnails/ThumbnailCache.h"

namespace CoverPaint {

void paint(QPainter& painter, const WindowContext& context, const QRect& square, int radius, const Track* track)
{
    const double ratio = painter.device()->devicePixelRatioF();
    if (track) {
        const QPixmap cover = context.thumbnails.thumbnail(*track, {square.width(), radius, ratio});
        if (!cover.isNull()) {
            painter.drawPixmap(square, cover);
            return;
        }
    }
    const ThemeColours& c = context.theme.colours();
    Paint::card(painter, square, radius, c.raised, c.line);
    const int side = std::min(square.width() / 2, Metrics::kIconLarge);
    const QRect glyph(square.center().x() - side / 2, square.center().y() - side / 2, side, side);
    Icons::paint(painter, glyph, QStringLiteral("note-single"), c.text3);
}

} // namespace CoverPaint
