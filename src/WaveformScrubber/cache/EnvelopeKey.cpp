#include "WaveformScrubber/cache/EnvelopeKey.h"

#include "WaveformScrubber/shape/Envelope.h"
#include "platform/FileURL.h"

#include <QCryptographicHash>

#include <array>
#include <charconv>

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

QString envelopeKey(const QUrl& url, const FileStamp& stamp)
{
    const double modifiedAt = double(stamp.modifiedAt.tv_sec) + double(stamp.modifiedAt.tv_nsec) / 1e9;
    const QByteArray fields = FileURL::standardizedPath(url).toUtf8() + '|' + QByteArray::number(stamp.byteCount) +
                              '|' + decimal(modifiedAt) + '|' + QByteArray::number(kEnvelopeSampleCount) + '|' +
                              QByteArray::number(kFormatVersion);
    return QString::fromLatin1(QCryptographicHash::hash(fields, QCryptographicHash::Sha256).toHex());
}
