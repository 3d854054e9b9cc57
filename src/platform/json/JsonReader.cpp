#include "platform/json/JsonReader.h"

#include "platform/json/Utf8.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The value of four hexadecimal digits; negative if one is none.
int hexUnit(const char* at)
{
    int value = 0;
    for (int i = 0; i < 4; ++i) {
        const char c = at[i];
        const char lower = static_cast<char>(c | 0x20);
        if (isDigit(c))
            value = value * 16 + (c - '0');
        else if (lower >= 'a' && lower <= 'f')
            value = value * 16 + (lower - 'a' + 10);
        else
            return -1;
    }
    return value;
}

/// The character that a backslash and a letter stand for; zero if they stand for none.
char simpleEscape(char letter)
{
    switch (letter) {
    case '"':
    case '\\':
    case '/':
        return letter;
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return 0;
    }
}

} // namespace

JsonReader::JsonReader(QByteArrayView bytes)
    : m_at(bytes.data())
    , m_end(bytes.data() + bytes.size())
{
}

bool JsonReader::isValid(QByteArrayView bytes)
{
    if (!Utf8::isValid(bytes))
        return false;
    JsonReader reader(bytes);
    reader.skip();
    return reader.atEnd() && !reader.hasFailed();
}

void JsonReader::blanks()
{
    while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\r' || *m_at == '\t'))
        ++m_at;
}

bool JsonReader::take(char c)
{
    blanks();
    if (m_failed || m_at == m_end || *m_at != c)
        return false;
    ++m_at;
    return true;
}

bool JsonReader::takeWord(QByteArrayView word)
{
    blanks();
    if (m_failed || m_end - m_at < word.size() || QByteArrayView(m_at, word.size()) != word)
        return false;
    m_at += word.size();
    return true;
}

JsonReader::Kind JsonReader::peek()
{
    blanks();
    if (m_failed || m_at == m_end)
        return Kind::Invalid;
    switch (*m_at) {
    case '{':
        return Kind::Object;
    case '[':
        return Kind::Array;
    case '"':
        return Kind::String;
    case 't':
        return Kind::True;
    case 'f':
        return Kind::False;
    case 'n':
        return Kind::Null;
    default:
        return *m_at == '-' || isDigit(*m_at) ? Kind::Number : Kind::Invalid;
    }
}

bool JsonReader::enter(char open)
{
    if (!take(open) || ++m_depth > kMaximumDepth) {
        fail();
        return false;
    }
    if (take(open == '{' ? '}' : ']')) {
        --m_depth;
        return false;
    }
    return !m_failed;
}

bool JsonReader::next(char close)
{
    if (take(close)) {
        --m_depth;
        return false;
    }
    if (!take(','))
        fail();
    return !m_failed;
}

QByteArrayView JsonReader::key()
{
    const QByteArrayView text = stringBytes();
    if (!take(':'))
        fail();
    return m_failed ? QByteArrayView() : text;
}

JsonReader::Raw JsonReader::rawString()
{
    if (!take('"')) {
        fail();
        return {};
    }
    const char* const begin = m_at;
    bool hasEscapes = false;
    for (; m_at != m_end && *m_at != '"'; ++m_at) {
        if (static_cast<unsigned char>(*m_at) < 0x20)
            break;
        if (*m_at != '\\')
            continue;
        hasEscapes = true;
        if (++m_at == m_end)
            break;
        if (*m_at == 'u') {
            if (m_end - m_at < 5 || hexUnit(m_at + 1) < 0)
                break;
            m_at += 4;
        } else if (simpleEscape(*m_at) == 0) {
            break;
        }
    }
    if (m_at == m_end || *m_at != '"') {
        fail();
        return {};
    }
    const QByteArrayView bytes(begin, m_at - begin);
    ++m_at;
    return {bytes, hasEscapes};
}

QString JsonReader::unescaped(QByteArrayView raw)
{
    QString text;
    text.reserve(raw.size());
    for (qsizetype i = 0; i < raw.size();) {
        if (raw[i] != '\\') {
            qsizetype end = raw.indexOf('\\', i);
            end = end < 0 ? raw.size() : end;
            text.append(QString::fromUtf8(raw.sliced(i, end - i)));
            i = end;
        } else if (raw[i + 1] == 'u') {
            text.append(QChar(static_cast<char16_t>(hexUnit(raw.data() + i + 2))));
            i += 6;
        } else {
            text.append(QLatin1Char(simpleEscape(raw[i + 1])));
            i += 2;
        }
    }
    return text;
}

QByteArrayView JsonReader::stringBytes()
{
    const Raw raw = rawString();
    if (!raw.hasEscapes)
        return raw.bytes;
    m_decoded = unescaped(raw.bytes).toUtf8();
    return m_decoded;
}

QString JsonReader::string()
{
    const Raw raw = rawString();
    return raw.hasEscapes ? unescaped(raw.bytes) : QString::fromUtf8(raw.bytes);
}

QByteArrayView JsonReader::rawNumber()
{
    blanks();
    const char* const begin = m_at;
    const auto digits = [this] {
        const char* const first = m_at;
        while (m_at != m_end && isDigit(*m_at))
            ++m_at;
        return m_at != first;
    };
    if (m_at != m_end && *m_at == '-')
        ++m_at;
    const char* const whole = m_at;
    bool isNumber = digits() && (*whole != '0' || m_at - whole == 1);
    if (isNumber && m_at != m_end && *m_at == '.') {
        ++m_at;
        isNumber = digits();
    }
    if (isNumber && m_at != m_end && (*m_at == 'e' || *m_at == 'E')) {
        ++m_at;
        if (m_at != m_end && (*m_at == '+' || *m_at == '-'))
            ++m_at;
        isNumber = digits();
    }
    if (!isNumber)
        fail();
    return m_failed ? QByteArrayView() : QByteArrayView(begin, m_at - begin);
}

double JsonReader::number()
{
    const QByteArrayView text = rawNumber();
    double value = 0;
    const auto [end, error] = std::from_chars(text.begin(), text.end(), value);
    if (m_failed || error != std::errc() || end != text.end()) {
        fail();
        return 0;
    }
    return value;
}

qint64 JsonReader::integer()
{
    const QByteArrayView text = rawNumber();
    qint64 value = 0;
    const auto [end, error] = std::from_chars(text.begin(), text.end(), value);
    if (!m_failed && error == std::errc() && end == text.end())
        return value;
    double real = 0;
    const auto [realEnd, realError] = std::from_chars(text.begin(), text.end(), real);
    constexpr double kLimit = 9'007'199'254'740'992.0; // 2^53: whole numbers are exact below
    if (m_failed || realError != std::errc() || realEnd != text.end() || std::trunc(real) != real ||
        std::abs(real) > kLimit) {
        fail();
        return 0;
    }
    return static_cast<qint64>(real);
}

bool JsonReader::boolean()
{
    if (takeWord("true"))
        return true;
    if (!takeWord("false"))
        fail();
    return false;
}

bool JsonReader::takeNull()
{
    if (peek() != Kind::Null)
        return false;
    if (!takeWord("null"))
        fail();
    return !m_failed;
}

void JsonReader::skipMembers(char open, char close)
{
    for (bool more = enter(open); more; more = next(close)) {
        if (open == '{') {
            rawString();
            if (!take(':'))
                fail();
        }
        skip();
    }
}

void JsonReader::skip()
{
    switch (peek()) {
    case Kind::Object:
        skipMembers('{', '}');
        return;
    case Kind::Array:
        skipMembers('[', ']');
        return;
    case Kind::String:
        rawString();
        return;
    case Kind::Number:
        rawNumber();
        return;
    case Kind::True:
    case Kind::False:
        boolean();
        return;
    case Kind::Null:
        takeNull();
        return;
    case Kind::Invalid:
        fail();
        return;
    }
}

bool JsonReader::atEnd()
{
    blanks();
    return !m_failed && m_at == m_end;
}
