#include "ui/theme/Icons.h"

#include <QFile>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace {

QByteArray source(const QString& name)
{
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qWarning("no icon %s", qPrintable(name));
    return file.readAll();
}

QPixmap render(const QString& name, const QColor& colour, const QSize& pixels)
{
    const QString key = QStringLiteral("velmora-icon/%1/%2/%3x%4")
                            .arg(name, colour.name(QColor::HexArgb))
                            .arg(pixels.width())
                            .arg(pixels.height());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    QByteArray svg = source(name);
    if (colour.isValid())
        svg.replace("#000000", colour.name().toLatin1());
    QSvgRenderer renderer(svg);
    pixmap = QPixmap(pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(colour.isValid() ? colour.alphaF() : 1);
    renderer.render(&painter, QRectF(QPointF(), QSizeF(pixels)));
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

void paintSharp(QPainter& painter, const QRect& rect, const QString& name, const QColor& colour)
{
    const double ratio = painter.device()->devicePixelRatioF();
    QPixmap pixmap = render(name, colour, (QSizeF(rect.size()) * ratio).toSize());
    pixmap.setDevicePixelRatio(ratio);
    painter.drawPixmap(rect.topLeft(), pixmap);
}

} // namespace

namespace Icons {

QString of(StatusIcon icon)
{
    switch (icon) {
    case StatusIcon::Info:
        return QStringLiteral("info");
    case StatusIcon::Done:
        return QStringLiteral("check");
    case StatusIcon::Warning:
        return QStringLiteral("warning");
    case StatusIcon::Undo:
        return QStringLiteral("undo");
    case StatusIcon::Redo:
        return QStringLiteral("redo");
    case StatusIcon::Trash:
        return QStringLiteral("trash");
    case StatusIcon::Playlist:
        return QStringLiteral("playlist");
    case StatusIcon::Favorite:
    case StatusIcon::FavoriteRemoved:
        return QStringLiteral("heart");
    case StatusIcon::FavoriteAdded:
        return QStringLiteral("heart-filled");
    case StatusIcon::Cover:
        return QStringLiteral("picture-add");
    case StatusIcon::Covers:
        return QStringLiteral("pictures");
    case StatusIcon::Conversion:
        return QStringLiteral("convert");
    case StatusIcon::Key:
        return QStringLiteral("note");
    case StatusIcon::Tempo:
        return QStringLiteral("pulse");
    case StatusIcon::Genre:
        return QStringLiteral("guitar");
    case StatusIcon::Comment:
        return QStringLiteral("bubble");
    case StatusIcon::Album:
        return QStringLiteral("stack");
    case StatusIcon::Tag:
        return QStringLiteral("tag");
    case StatusIcon::Sound:
        return QStringLiteral("speaker-high");
    case StatusIcon::SoundOff:
        return QStringLiteral("speaker-muted");
    }
    Q_UNREACHABLE();
}

void paint(QPainter& painter, const QRect& rect, const QString& name, const QColor& colour)
{
    paintSharp(painter, rect, name, colour);
}

QIcon icon(const QString& name, const QColor& colour, const QColor& selected)
{
    QIcon result;
    for (int size : {16, 18, 24, 32, 36, 48}) {
        result.addPixmap(render(name, colour, {size, size}));
        if (selected.isValid())
            result.addPixmap(render(name, selected, {size, size}), QIcon::Selected);
    }
    return result;
}

void paintMark(QPainter& painter, const QRect& rect)
{
    paintSharp(painter, rect, QStringLiteral("velmora"), {});
}

QIcon applicationIcon()
{
    return icon(QStringLiteral("velmora"), {});
}

} // namespace Icons
