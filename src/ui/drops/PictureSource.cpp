#include "ui/drops/PictureSource.h"

#include "core/library/artwork/ArtworkImage.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeData>

namespace {

constexpr int kExamined = 64; // chosen: a drag of thousands of files must not stall the pointer

/// Formats that hand over what the picture is written as; the toolkit converts all others from the pixels.
const std::array kExactFormats{QLatin1StringView("image/png"), QLatin1StringView("image/jpeg")};

bool isPictureFile(const QUrl& url)
{
    static const QList<QByteArray> kSuffixes = QImageReader::supportedImageFormats();
    const QString name = url.fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    return url.isLocalFile() && dot > 0 && kSuffixes.contains(name.mid(dot + 1).toLower().toLatin1());
}

std::optional<QUrl> pictureFile(const QMimeData& data)
{
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls.first(std::min<qsizetype>(urls.size(), kExamined))) {
        if (isPictureFile(url))
            return url;
    }
    return std::nullopt;
}

std::optional<QLatin1StringView> exactFormat(const QMimeData& data)
{
    for (const QLatin1StringView format : kExactFormats) {
        if (data.hasFormat(format))
            return format;
    }
    return std::nullopt;
}

} // namespace

namespace PictureSources {

bool hasPicture(const QMimeData& data)
{
    return pictureFile(data) || exactFormat(data) || data.hasImage();
}

std::optional<PictureSource> pictureOf(const QMimeData& data)
{
    if (const std::optional<QUrl> file = pictureFile(data))
        return *file;
    if (const std::optional<QLatin1StringView> format = exactFormat(data)) {
        const QByteArray bytes = data.data(*format);
        if (!bytes.isEmpty())
            return bytes;
    }
    const QImage pixels = qvariant_cast<QImage>(data.imageData());
    return pixels.isNull() ? std::nullopt : std::optional<PictureSource>(pixels);
}

QByteArray bytesOf(const PictureSource& source)
{
    if (const auto* bytes = std::get_if<QByteArray>(&source))
        return *bytes;
    if (const auto* url = std::get_if<QUrl>(&source)) {
        QFile file(url->toLocalFile());
        const bool isReadable = QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly);
        return isReadable ? file.read(ArtworkImage::kMaximumBytes + 1) : QByteArray();
    }
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    std::get<QImage>(source).save(&buffer, "PNG");
    return buffer.data();
}

} // namespace PictureSources
