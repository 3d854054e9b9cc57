#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QUuid>

/// Builds JSON text member by member, in the order of the calls, without a tree. The caller closes what it opens.
class JsonWriter {
public:
    /// \param expectedSize bytes that are set aside.
    explicit JsonWriter(qsizetype expectedSize);

    /// '{' or '['. A comma comes in front where one is due.
    void open(char bracket);
    /// '}' or ']', as it was opened; that is not checked.
    void close(char bracket);
    /// The key of a member; written as it is, so it holds nothing that needs an escape.
    void key(QLatin1StringView name);
    /// The same with escapes where they are needed.
    void key(const QString& name);
    /// A value with escapes; half a surrogate pair becomes U+FFFD.
    void string(QStringView text);
    /// Upper-case canonical form.
    void uuid(const QUuid& id);
    /// Absolute URL text with percent escapes.
    void url(const QUrl& url);
    /// The shortest text that reads back as the same value. JSON has no word for what is not finite: that becomes 0.
    void number(double value);
    void number(qint64 value);
    void boolean(bool value);

    /// The text; the writer is of no use afterwards.
    QByteArray take();

private:
    void separate();
    char* grow(qsizetype count);
    void append(QByteArrayView text);
    void quoted(QStringView text);

    QByteArray m_text;
    qsizetype m_size = 0;
    bool m_wantsComma = false;
};
