#include "platform/json/StoredForms.h"

#include <algorithm>
#include <array>

namespace StoredForms {

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr QByteArrayView kFileScheme = "file://";

/// Places of the bytes of a UUID in its text.
constexpr std::array<int, 16> kPlaces{0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};

/// What stands in a path without an escape: the characters that RFC 3986 leaves free there, but for the semicolon,
/// which older readers take for the begin of parameters.
constexpr std::array<bool, 256> kPlain = [] {
    std::array<bool, 256> plain{};
    for (int c = 'a'; c <= 'z'; ++c)
        plain[c] = plain[c - 0x20] = true;
    for (int c = '0'; c <= '9'; ++c)
        plain[c] = true;
    for (const char c : {'-', '.', '_', '~', '!', '$', '&', '\'', '(', ')', '*', '+', ',', '=', ':', '@', '/'})
        plain[static_cast<unsigned char>(c)] = true;
    return plain;
}();

/// The value of a hexadecimal digit; negative for anything else.
int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

int hexByte(const char* at)
{
    const int high = hexValue(at[0]);
    const int low = hexValue(at[1]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

std::array<uchar, 16> bytesOf(const QUuid& id)
{
    std::array<uchar, 16> bytes{};
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<uchar>(id.data1 >> (24 - 8 * i));
    for (int i = 0; i < 2; ++i) {
        bytes[4 + i] = static_cast<uchar>(id.data2 >> (8 - 8 * i));
        bytes[6 + i] = static_cast<uchar>(id.data3 >> (8 - 8 * i));
    }
    std::copy(std::begin(id.data4), std::end(id.data4), bytes.begin() + 8);
    return bytes;
}

/// The path of a "file:///..." text; nothing where an escape is broken or a part follows that no file has.
std::optional<QString> decodedPath(QByteArrayView text)
{
    QByteArray path(text.size(), Qt::Uninitialized);
    char* target = path.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '?' || c == '#' || c == 0)
            return std::nullopt;
        if (c != '%') {
            *target++ = c;
            continue;
        }
        const int byte = text.size() - i > 2 ? hexByte(text.data() + i + 1) : -1;
        if (byte <= 0)
            return std::nullopt;
        *target++ = static_cast<char>(byte);
        i += 2;
    }
    return QString::fromUtf8(path.constData(), target - path.constData());
}

} // namespace

void writeUUID(const QUuid& id, char* target)
{
    const std::array<uchar, 16> bytes = bytesOf(id);
    for (size_t i = 0; i < bytes.size(); ++i) {
        target[kPlaces[i]] = kHexDigits[bytes[i] >> 4];
        target[kPlaces[i] + 1] = kHexDigits[bytes[i] & 0xf];
    }
    for (const int dash : {8, 13, 18, 23})
        target[dash] = '-';
}

QByteArray uuidText(const QUuid& id)
{
    QByteArray text(kUUIDLength, Qt::Uninitialized);
    writeUUID(id, text.data());
    return text;
}

std::optional<QUuid> uuidFromText(QByteArrayView text)
{
    if (text.size() != kUUIDLength || text[8] != '-' || text[13] != '-' || text[18] != '-' || text[23] != '-')
        return std::nullopt;
    std::array<uchar, 16> b{};
    for (size_t i = 0; i < b.size(); ++i) {
        const int byte = hexByte(text.data() + kPlaces[i]);
        if (byte < 0)
            return std::nullopt;
        b[i] = static_cast<uchar>(byte);
    }
    const auto word = [&b](int at) { return static_cast<ushort>(b[at] << 8 | b[at + 1]); };
    return QUuid(uint(word(0)) << 16 | word(2), word(4), word(6), b[8], b[9], b[10], b[11], b[12], b[13], b[14], b[15]);
}

QByteArray urlText(const QUrl& url)
{
    if (!url.isLocalFile() || !url.host().isEmpty())
        return url.toEncoded();
    const QByteArray path = url.path(QUrl::FullyDecoded).toUtf8();
    constexpr qsizetype kEscapeLength = 3;
    QByteArray text(kFileScheme.size() + path.size() * kEscapeLength, Qt::Uninitialized);
    char* target = std::copy(kFileScheme.begin(), kFileScheme.end(), text.data());
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (kPlain[byte]) {
            *target++ = c;
            continue;
        }
        *target++ = '%';
        *target++ = kHexDigits[byte >> 4];
        *target++ = kHexDigits[byte & 0xf];
    }
    text.truncate(target - text.constData());
    return text;
}

std::optional<QString> pathFromText(QByteArrayView text)
{
    const bool isPlainFile =
        text.startsWith(kFileScheme) && text.size() > kFileScheme.size() && text[kFileScheme.size()] == '/';
    return isPlainFile ? decodedPath(text.sliced(kFileScheme.size())) : std::nullopt;
}

std::optional<QUrl> urlFromText(QByteArrayView text)
{
    if (const std::optional<QString> path = pathFromText(text)) {
        QUrl url;
        url.setScheme(QStringLiteral("file"));
        // Without a percent sign both modes mean the same, and this one spares a copy of the path.
        url.setPath(*path, path->contains(u'%') ? QUrl::DecodedMode : QUrl::TolerantMode);
        return url;
    }
    if (text.startsWith("file:///"))
        return std::nullopt;
    const QUrl url = QUrl::fromEncoded(QByteArray(text.data(), text.size()), QUrl::StrictMode);
    return url.isValid() && !url.isRelative() ? std::optional(url) : std::nullopt;
}

} // namespace StoredForms
