#include "platform/json/JsonWriter.h"

#include "platform/json/StoredForms.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr qsizetype kNumberWidth = 32;    // the longest shortest form of a double has 24 characters
constexpr qsizetype kBytesPerUnit = 6;    // a control character: \u001f
constexpr char16_t kReplacement = 0xfffd; // stands for half a surrogate pair, which UTF-8 cannot hold

char* writeEscaped(char* at, char16_t unit)
{
    *at++ = '\\';
    switch (unit) {
    case u'"':
    case u'\\':
        *at++ = static_cast<char>(unit);
        return at;
    case u'\n':
        *at++ = 'n';
        return at;
    case u'\r':
        *at++ = 'r';
        return at;
    case u'\t':
        *at++ = 't';
        return at;
    default:
        *at++ = 'u';
        for (int shift = 12; shift >= 0; shift -= 4)
            *at++ = kHexDigits[(unit >> shift) & 0xf];
        return at;
    }
}

char* writeUtf8(char* at, char32_t c)
{
    if (c < 0x80) {
        *at++ = static_cast<char>(c);
    } else if (c < 0x800) {
        *at++ = static_cast<char>(0xc0 | (c >> 6));
        *at++ = static_cast<char>(0x80 | (c & 0x3f));
    } else if (c < 0x10000) {
        *at++ = static_cast<char>(0xe0 | (c >> 12));
        *at++ = static_cast<char>(0x80 | ((c >> 6) & 0x3f));
        *at++ = static_cast<char>(0x80 | (c & 0x3f));
    } else {
        *at++ = static_cast<char>(0xf0 | (c >> 18));
        *at++ = static_cast<char>(0x80 | ((c >> 12) & 0x3f));
        *at++ = static_cast<char>(0x80 | ((c >> 6) & 0x3f));
        *at++ = static_cast<char>(0x80 | (c & 0x3f));
    }
    return at;
}

} // namespace

JsonWriter::JsonWriter(qsizetype expectedSize)
    : m_text(expectedSize, Qt::Uninitialized)
{
}

/// Room for more bytes; the caller says through m_size how many it used.
char* JsonWriter::grow(qsizetype count)
{
    if (m_text.size() - m_size < count)
        m_text.resize(std::max(m_text.size() * 2, m_size + count));
    return m_text.data() + m_size;
}

void JsonWriter::append(QByteArrayView text)
{
    std::memcpy(grow(text.size()), text.data(), static_cast<size_t>(text.size()));
    m_size += text.size();
}

void JsonWriter::separate()
{
    if (m_wantsComma)
        append(",");
    m_wantsComma = true;
}

void JsonWriter::open(char bracket)
{
    separate();
    append(QByteArrayView(&bracket, 1));
    m_wantsComma = false;
}

void JsonWriter::close(char bracket)
{
    append(QByteArrayView(&bracket, 1));
    m_wantsComma = true;
}

void JsonWriter::key(QLatin1StringView name)
{
    separate();
    append("\"");
    append(QByteArrayView(name.data(), name.size()));
    append("\":");
    m_wantsComma = false;
}

void JsonWriter::key(const QString& name)
{
    separate();
    quoted(name);
    append(":");
    m_wantsComma = false;
}

void JsonWriter::string(QStringView text)
{
    separate();
    quoted(text);
}

void JsonWriter::quoted(QStringView text)
{
    char* const begin = grow(text.size() * kBytesPerUnit + 2);
    char* at = begin;
    *at++ = '"';
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (unit < 0x20 || unit == u'"' || unit == u'\\') {
            at = writeEscaped(at, unit);
        } else if (!QChar::isSurrogate(unit)) {
            at = writeUtf8(at, unit);
        } else if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            at = writeUtf8(at, QChar::surrogateToUcs4(unit, text[++i].unicode()));
        } else {
            at = writeUtf8(at, kReplacement);
        }
    }
    *at++ = '"';
    m_size += at - begin;
}

void JsonWriter::uuid(const QUuid& id)
{
    separate();
    char* const at = grow(StoredForms::kUUIDLength + 2);
    at[0] = '"';
    StoredForms::writeUUID(id, at + 1);
    at[StoredForms::kUUIDLength + 1] = '"';
    m_size += StoredForms::kUUIDLength + 2;
}

void JsonWriter::url(const QUrl& url)
{
    separate();
    append("\"");
    append(StoredForms::urlText(url)); // the escapes leave nothing in it that JSON escapes
    append("\"");
}

void JsonWriter::number(double value)
{
    separate();
    char* const at = grow(kNumberWidth);
    m_size += std::to_chars(at, at + kNumberWidth, std::isfinite(value) ? value : 0.0).ptr - at;
}

void JsonWriter::number(qint64 value)
{
    separate();
    char* const at = grow(kNumberWidth);
    m_size += std::to_chars(at, at + kNumberWidth, value).ptr - at;
}

void JsonWriter::boolean(bool value)
{
    separate();
    append(value ? QByteArrayView("true") : QByteArrayView("false"));
}

QByteArray JsonWriter::take()
{
    m_text.truncate(m_size);
    return std::move(m_text);
}
