#include "WaveformScrubber/cache/EnvelopeKey.h"

#include "WaveformScrubber/shape/Envelope.h"
#include "platform/FileURL.h"

#include <QCryptographicHash>
#include <QFile>

#include <array>
#include <charconv>

#include <sys/stat.h>

namespace {

/// On disk: goes up with every change of what envelopes look like.
constexpr int kFormatVersion = 2;

/// The shortest decimal that reads back as the same number, always with a point.
QByteArray decimal(double value)
{
    std::array<char, 400> digits; // room for the largest number without exponent
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed).ptr;
    QByteArray text(digits.data(), end - digits.data());
    return text.contains('.') ? text : text + ".0";
}

} // namespace

std::optional<FileStamp> fileStamp(const QUrl& url)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(FileURL::standardizedPath(url)).constData(), &status) != 0)
        return std::nullopt;
    return FileStamp{.byteCount = qint64(status.st_size),
                     .modifiedAt = double(status.st_mtim.tv_sec) + double(status.st_mtim.tv_nsec) / 1e9};
}

QString envelopeKey(const QUrl& url, const FileStamp& stamp)
{
    const QByteArray fields = FileURL::standardizedPath(url).toUtf8() + '|' + QByteArray::number(stamp.byteCount) +
                              '|' + decimal(stamp.modifiedAt.value_or(-1.0)) + '|' +
                              QByteArray::number(kEnvelopeSampleCount) + '|' + QByteArray::number(kFormatVersion);
    return QString::fromLatin1(QCryptographicHash::hash(fields, QCryptographicHash::Sha256).toHex());
}
