#include "ui/theme/Icons.h"

#include <QFile>
#include <QHash>
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

QString nameForSymbol(const QString& symbol)
{
    static const QHash<QString, QString> kNames{
        {QStringLiteral("music.note.list"), QStringLiteral("playlist")},
        {QStringLiteral("music.note"), QStringLiteral("note-single")},
        {QStringLiteral("waveform.path.ecg"), QStringLiteral("pulse")},
        {QStringLiteral("waveform"), QStringLiteral("pulse")},
        {QStringLiteral("photo.on.rectangle.angled"), QStringLiteral("pictures")},
        {QStringLiteral("photo"), QStringLiteral("picture")},
        {QStringLiteral("music.quarternote.3"), QStringLiteral("note")},
        {QStringLiteral("arrow.triangle.2.circlepath"), QStringLiteral("convert")},
        {QStringLiteral("text.bubble.fill"), QStringLiteral("bubble")},
        {QStringLiteral("text.bubble"), QStringLiteral("bubble")},
        {QStringLiteral("heart.fill"), QStringLiteral("heart-filled")},
        {QStringLiteral("heart"), QStringLiteral("heart")},
        {QStringLiteral("heart.slash"), QStringLiteral("heart")},
        {QStringLiteral("exclamationmark.triangle"), QStringLiteral("warning")},
        {QStringLiteral("exclamationmark.triangle.fill"), QStringLiteral("warning")},
        {QStringLiteral("arrow.uturn.backward"), QStringLiteral("undo")},
        {QStringLiteral("checkmark.circle"), QStringLiteral("check")},
        {QStringLiteral("checkmark.circle.fill"), QStringLiteral("check")},
        {QStringLiteral("mic.slash"), QStringLiteral("mic-off")},
        {QStringLiteral("mic"), QStringLiteral("mic")},
        {QStringLiteral("folder"), QStringLiteral("folder")},
        {QStringLiteral("trash"), QStringLiteral("trash")},
        {QStringLiteral("doc.on.doc"), QStringLiteral("copies")},
        {QStringLiteral("slider.horizontal.3"), QStringLiteral("sliders")},
        {QStringLiteral("speaker.slash"), QStringLiteral("speaker-muted")},
        {QStringLiteral("speaker.wave.2"), QStringLiteral("speaker-high")},
        {QStringLiteral("arrow.up"), QStringLiteral("arrow-up")},
        {QStringLiteral("arrow.down"), QStringLiteral("arrow-down")},
    };
    return kNames.value(symbol, QStringLiteral("info"));
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
