#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>

// What tests need of the machine they run on: files, other programs, time that passes.

/// Makes a file of these bytes, and its folders. \return its path.
QString writeFile(const QString& path, const QByteArray& bytes = {});
/// The bytes of a file; none if it cannot be read.
QByteArray readFile(const QString& path);

/// Runs a program to its end. \return whether it could be run and succeeded.
bool runProgram(const QString& program, const QStringList& arguments);
/// What a program prints; nothing if it cannot be run or fails.
QByteArray outputOf(const QString& program, const QStringList& arguments);

/// Looks again and again. The limit only keeps a fault from hanging the program.
bool comesTrue(const std::function<bool()>& condition, std::chrono::duration<double> limit = std::chrono::seconds(10));
