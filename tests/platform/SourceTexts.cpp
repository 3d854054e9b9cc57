#include "SourceTexts.h"

#include <QDirIterator>
#include <QFile>
#include <QSet>

#include <algorithm>

namespace SourceTexts {

namespace {

bool isWordByte(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// One pass over a source.
class Lexer {
public:
    explicit Lexer(const QByteArray& code)
        : m_code(code)
    {
    }

    QList<Text> run(const QString& file)
    {
        while (m_place < m_code.size())
            step();
        endText();
        QList<Text> result;
        for (const Piece& piece : m_texts) {
            if (!m_exemptLines.contains(piece.firstLine) && !m_exemptLines.contains(piece.lastLine))
                result.append({QString::fromUtf8(piece.bytes), file, piece.firstLine});
        }
        return result;
    }

private:
    struct Piece {
        QByteArray bytes;
        int firstLine = 0;
        int lastLine = 0;
    };

    char at(qsizetype offset = 0) const
    {
        return m_place + offset < m_code.size() ? m_code.at(m_place + offset) : '\0';
    }
    bool startsWith(QByteArrayView text) const { return QByteArrayView(m_code).sliced(m_place).startsWith(text); }
    char take()
    {
        const char c = m_code.at(m_place++);
        m_line += c == '\n';
        return c;
    }
    void takeUntil(QByteArrayView end)
    {
        while (m_place < m_code.size() && !startsWith(end))
            take();
    }

    void step()
    {
        if (startsWith("//")) {
            const qsizetype begin = m_place;
            takeUntil("\n");
            if (QByteArrayView(m_code).sliced(begin, m_place - begin).trimmed() == "// not shown")
                m_exemptLines.insert(m_line);
        } else if (startsWith("/*")) {
            takeUntil("*/");
            m_place = std::min(m_place + 2, m_code.size());
        } else if (at() == ' ' || at() == '\t' || at() == '\n' || at() == '\r') {
            take();
        } else if (at() == '"') {
            takeString();
        } else if (at() == '\'') {
            takeCharacter();
        } else {
            takeToken();
        }
    }

    void takeToken()
    {
        if (isDigit(at())) {
            endText();
            while (isWordByte(at()) || at() == '.' || (at() == '\'' && isWordByte(at(1))))
                take();
            return;
        }
        QByteArray word;
        while (m_place < m_code.size() && isWordByte(at()))
            word.append(take());
        const bool isPrefix = word == "u" || word == "U" || word == "L" || word == "u8";
        const bool isRawPrefix = word.endsWith('R') && word.size() <= 3;
        if (isRawPrefix && at() == '"') {
            takeRawString();
        } else if (!(isPrefix && at() == '"')) {
            endText();
            if (word.isEmpty())
                take();
        }
    }

    void takeCharacter()
    {
        endText();
        take();
        while (m_place < m_code.size() && at() != '\'') {
            if (take() == '\\' && m_place < m_code.size())
                take();
        }
        if (m_place < m_code.size())
            take();
    }

    void takeString()
    {
        beginPiece();
        take();
        while (m_place < m_code.size() && at() != '"') {
            if (at() == '\\')
                takeEscape();
            else
                m_text.bytes.append(take());
        }
        if (m_place < m_code.size())
            take();
        m_text.lastLine = m_line;
    }

    void takeRawString()
    {
        beginPiece();
        take();
        QByteArray end = ")";
        while (m_place < m_code.size() && at() != '(')
            end.append(take());
        end.append('"');
        m_place = std::min(m_place + 1, m_code.size());
        while (m_place < m_code.size() && !startsWith(end))
            m_text.bytes.append(take());
        m_place = std::min(m_place + end.size(), m_code.size());
        m_text.lastLine = m_line;
    }

    void takeEscape()
    {
        take();
        const char kind = m_place < m_code.size() ? take() : '\\';
        constexpr QByteArrayView kLetters = "ntr0";
        constexpr QByteArrayView kMeanings("\n\t\r\0", 4);
        if (kind == 'u' || kind == 'U' || kind == 'x') {
            const qsizetype limit = kind == 'U' ? 8 : 4;
            QByteArray digits;
            while (digits.size() < limit && QByteArrayView("0123456789abcdefABCDEF").contains(at()) && at() != '\0')
                digits.append(take());
            const char32_t codePoint = digits.toUInt(nullptr, 16);
            m_text.bytes.append(QString::fromUcs4(&codePoint, 1).toUtf8());
        } else if (const qsizetype place = kLetters.indexOf(kind); place >= 0) {
            m_text.bytes.append(kMeanings.at(place));
        } else if (kind != '\n') {
            m_text.bytes.append(kind);
        }
    }

    void beginPiece()
    {
        if (!m_isInText)
            m_text = {QByteArray(), m_line, m_line};
        m_isInText = true;
    }
    void endText()
    {
        if (m_isInText)
            m_texts.append(m_text);
        m_isInText = false;
    }

    const QByteArray& m_code;
    qsizetype m_place = 0;
    int m_line = 1;
    bool m_isInText = false;
    Piece m_text;
    QList<Piece> m_texts;
    QSet<int> m_exemptLines;
};

bool isCyrillic(QChar c)
{
    return c.unicode() >= 0x0400 && c.unicode() <= 0x04FF;
}

} // namespace

QList<Text> inCode(const QByteArray& code, const QString& file)
{
    return Lexer(code).run(file);
}

QList<Text> cyrillicBelow(const QString& folder)
{
    QList<Text> result;
    QDirIterator files(folder, {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const Text& text : inCode(file.readAll(), QDir(folder).relativeFilePath(file.fileName()))) {
            if (std::ranges::any_of(text.text, isCyrillic))
                result.append(text);
        }
    }
    return result;
}

} // namespace SourceTexts
