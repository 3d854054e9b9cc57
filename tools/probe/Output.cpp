#include "Output.h"

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
