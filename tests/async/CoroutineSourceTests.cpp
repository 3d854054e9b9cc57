#include "support/Machine.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <gtest/gtest.h>

// GCC 12 copies a lambda with captures, or a braced aggregate, that stands inside a co_await expression bit by bit into
// the frame and destroys it twice. No warning says so, therefore the sources are searched.

namespace {

/// The expression that begins at \p start, up to the semicolon or the bracket that ends it.
QString expressionFrom(const QString& text, qsizetype start)
{
    int depth = 0;
    for (qsizetype end = start; end < text.size(); ++end) {
        const QChar letter = text.at(end);
        if (letter == u'(' || letter == u'{' || letter == u'[')
            ++depth;
        else if (letter == u')' || letter == u'}' || letter == u']')
            --depth;
        if (depth < 0 || (depth == 0 && letter == u';'))
            return text.mid(start, end - start);
    }
    return text.mid(start);
}

/// Line numbers of the co_await expressions that hold such a temporary.
std::vector<int> faultyLines(QString text)
{
    static const QRegularExpression comment(QStringLiteral("//[^\n]*"));
    static const QRegularExpression await(QStringLiteral("\\bco_await\\b"));
    static const QRegularExpression temporary(
        QStringLiteral("[(,=\\s]\\[[^\\]\\[]+\\]\\s*[({]|\\b[A-Z]\\w*\\{\\s*[^}\\s]"));
    text.remove(comment);
    std::vector<int> lines;
    for (auto matches = await.globalMatch(text); matches.hasNext();) {
        const qsizetype start = matches.next().capturedStart();
        if (temporary.match(expressionFrom(text, start)).hasMatch())
            lines.push_back(int(text.left(start).count(u'\n')) + 1);
    }
    return lines;
}

} // namespace

TEST(CoroutineSources, TheSearchKnowsTheFaultWhenItSeesIt)
{
    const std::vector<std::pair<const char*, std::vector<int>>> cases = {
        {"co_await run(stop, [text](std::stop_token) { return text; });", {1}},
        {"\nconst int a = co_await run(\n    stop, [=] { return b; });", {2}},
        {"co_await load(Request{name, 1}, stop);", {1}},
        {"f(co_await wait(), [a] { b(); });", {1}},
        {"co_await run(stop, [](std::stop_token) { return 1; });", {}},
        {"co_await run(stop, items[index]); const auto job = [a] { b(); };", {}},
        {"const auto job = [a] { b(); };\nco_await run(stop, job);", {}},
        {"// co_await run(stop, [a] { b(); });", {}},
        {"co_await load(Request{}, QString(name), stop);", {}},
    };
    for (const auto& [text, lines] : cases)
        EXPECT_EQ(faultyLines(QString::fromUtf8(text)), lines) << text;
}

TEST(CoroutineSources, NoTemporaryWithContentsInsideAnAwait)
{
    int count = 0;
    for (const char* folder : {"/src", "/tests", "/tools", "/bench"}) {
        QDirIterator files(QStringLiteral(VELMORA_SOURCE_DIR) + QString::fromUtf8(folder),
                           {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            if (path.endsWith(QStringLiteral("/CoroutineSourceTests.cpp")))
                continue;
            ++count;
            for (const int line : faultyLines(QString::fromUtf8(readFile(path))))
                ADD_FAILURE() << qPrintable(path) << ":" << line << ": name it on a line before the co_await";
        }
    }
    EXPECT_GT(count, 20) << "the sources were not found";
}
