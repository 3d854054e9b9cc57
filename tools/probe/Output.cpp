#include "Output.h"

#include <QJsonDocument>

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

} // namespace Output
