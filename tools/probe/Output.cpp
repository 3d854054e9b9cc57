#include "Output.h"

#include "tags/writing/WriteErrors.h"

#include <QJsonDocument>

#include <algorithm>
#include <cstdio>

namespace Output {

void line(const QJsonObject& object)
{
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    std::fflush(stdout);
}

void diagnose(const QString& message)
{
    std::fprintf(stderr, "velmora-probe: %s\n", qUtf8Printable(message));
}

QJsonObject described(const FileError& error)
{
    QJsonObject object{{QStringLiteral("case"), QString(error.caseName())},
                       {QStringLiteral("message"), error.message()}};
    if (error.systemError() != 0) {
        object.insert(QStringLiteral("domain"), QStringLiteral("errno"));
        object.insert(QStringLiteral("code"), error.systemError());
    }
    return object;
}

QJsonObject described(const std::system_error& error)
{
    return {{QStringLiteral("case"), QStringLiteral("systemError")},
            {QStringLiteral("domain"), QString::fromLatin1(error.code().category().name())},
            {QStringLiteral("code"), error.code().value()},
            {QStringLiteral("message"), QString::fromLocal8Bit(error.what())}};
}

ExitStatus failure(const QString& path, const QJsonObject& error)
{
    line({{QStringLiteral("path"), path}, {QStringLiteral("error"), error}});
    return ExitStatus::ItemFailed;
}

ExitStatus noRequest()
{
    const QJsonObject error{{QStringLiteral("case"), QStringLiteral("noRequest")},
                            {QStringLiteral("message"), QStringLiteral("this line is no request")}};
    line({{QStringLiteral("error"), error}});
    return ExitStatus::ItemFailed;
}

bool holdsOption(const QStringList& arguments)
{
    return std::ranges::any_of(arguments, [](const QString& word) { return word.startsWith(QStringLiteral("--")); });
}

} // namespace Output
