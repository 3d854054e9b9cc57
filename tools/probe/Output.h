#pragma once

#include "Commands.h"

#include <QJsonObject>
#include <QString>

/// What a command prints: one JSON object per line, flushed, on standard output.
namespace Output {

void line(const QJsonObject& object);
/// For people, on standard error.
void diagnose(const QString& message);
/// The answer to a line of input that cannot be understood; the next ones are still answered. \return what the program
/// then ends with.
ExitStatus noRequest();
/// Whether a word looks like an option that nobody took.
bool holdsOption(const QStringList& arguments);

} // namespace Output
