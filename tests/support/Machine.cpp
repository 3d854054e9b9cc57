#include "support/Machine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <thread>

namespace {

bool isDone(QProcess& process, const QString& program, const QStringList& arguments)
{
    process.start(program, arguments);
    return process.waitForStarted() && process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

} // namespace

QString writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool runProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    return isDone(process, program, arguments);
}

QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    return isDone(process, program, arguments) ? process.readAllStandardOutput() : QByteArray();
}

bool comesTrue(const std::function<bool()>& condition, std::chrono::duration<double> limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return condition();
}
