#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// Walks over JSON bytes without building a tree: lists of 100,000 rows are read in place. Strict by RFC 8259. After
/// the first failure every later call fails, so that a caller asks once at the end. The bytes outlive it.
class JsonReader {
public:
    enum class Kind { Object, Array, String, Number, True, False, Null, Invalid };

    /// Nesting beyond this fails, so that hostile input cannot use up the stack.
    static constexpr int kMaximumDepth = 512;

    explicit JsonReader(QByteArrayView bytes);

    /// Whether the bytes are one valid JSON value in valid UTF-8, whole.
    static bool isValid(QByteArrayView bytes);

    /// Whether anything read so far was not what was asked for.
    bool hasFailed() const { return m_failed; }
    /// For callers to whom a value means nothing: all later calls fail as well.
    void fail() { m_failed = true; }
    /// The kind of the value that comes next, told by its first character; Invalid at the end and after a failure.
    Kind peek();

    /// Steps into an object or an array; the loop is
    /// `for (bool more = reader.enter('{'); more; more = reader.next('}'))`. \return whether there is an element.
    bool enter(char open);
    /// Behind an element. \return whether another one follows.
    bool next(char close);
    /// The key of a member with its colon; read with an open key it stays valid until the next call.
    QByteArrayView key();

    /// A string with its escapes undone; empty after a failure.
    QString string();
    /// Fails for a number beyond the range of a double.
    double number();
    /// A number that is a whole one, written in any way: 3, 3.0, 3e0. One with a point or an exponent fails beyond
    /// 2^53, where it would not be exact.
    qint64 integer();
    /// False after a failure.
    bool boolean();
    /// A string's bytes between its quotes where it holds no escapes, else decoded. Valid until the next call.
    QByteArrayView stringBytes();
    /// Over a value of any kind.
    void skip();
    /// Over a null. \return whether there was one.
    bool takeNull();
    /// Nothing but blanks is left.
    bool atEnd();

private:
    /// A string's raw content; whether it holds a backslash.
    struct Raw {
        QByteArrayView bytes;
        bool hasEscapes = false;
    };

    void blanks();
    bool take(char c);
    bool takeWord(QByteArrayView word);
    Raw rawString();
    QByteArrayView rawNumber();
    void skipMembers(char open, char close);
    static QString unescaped(QByteArrayView raw);

    const char* m_at;
    const char* m_end;
    int m_depth = 0;
    bool m_failed = false;
    QByteArray m_decoded;
};
