#pragma once

#include <QJsonObject>
#include <QString>

/// What a command prints: one JSON object per line, flushed, on standard output.
namespace Output {

void line(const QJsonObject& object);
/// For people, on standard error.
void diagnose(const QString& message);

} // namespace Output
