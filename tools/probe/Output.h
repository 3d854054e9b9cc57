#pragma once

#include "Commands.h"

#include <QJsonObject>
#include <QString>

#include <system_error>

class FileError;

/// What a command prints: one JSON object per line, flushed, on standard output.
namespace Output {

void line(const QJsonObject& object);
/// For people, on standard error.
void diagnose(const QString& message);
/// The object of an error: its case and its message, domain and number where it has them.
QJsonObject described(const FileError& error);
QJsonObject described(const std::system_error& error);
template <typename Error>
QJsonObject described(const Error& error)
{
    return {{QStringLiteral("case"), QString(error.caseName())}, {QStringLiteral("message"), error.message()}};
}
/// The line of an item that failed; the next ones are still answered. \return what the program then ends with.
ExitStatus failure(const QString& path, const QJsonObject& error);
/// The answer to a line of input that cannot be understood; the next ones are still answered. \return what the program
/// then ends with.
ExitStatus noRequest();
/// Whether a word looks like an option that was not taken.
bool holdsOption(const QStringList& arguments);

} // namespace Output
