#include "support/WriterFolder.h"

#include "platform/TemporaryName.h"
#include "support/FailingFileCalls.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

QString WriterFolder::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write a test file");
    return path(name);
}

QByteArray WriterFolder::read(const QString& name) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read a test file");
    return file.readAll();
}

QStringList WriterFolder::names() const
{
    return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

int WriterFolder::removeTemporaries() const
{
    int count = 0;
    for (const QString& name : names()) {
        if (TemporaryName::matches(name.toUtf8()) && QFile::remove(path(name)))
            ++count;
    }
    return count;
}

QString errorOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const FileError& error) {
        return error.caseName();
    } catch (const WriteError& error) {
        return QString(error.caseName()) + u' ' + error.payload();
    }
    return {};
}

void expectWholeAtEveryStep(const QString& name, const QByteArray& original, const Change& change, bool keepsTemporary)
{
    const WriterFolder folder;
    const QString path = folder.write(name, original);
    QByteArrayList steps;
    {
        FailingFileCalls calls;
        change(path);
        steps = calls.names();
    }
    const QByteArray changed = folder.read(name);
    ASSERT_NE(changed, original) << "the change changes nothing";
    const qsizetype swap = steps.indexOf("rename");
    ASSERT_GT(swap, 0);

    for (int step = 0; step < steps.size(); ++step) {
        SCOPED_TRACE(QStringLiteral("step %1, %2").arg(step).arg(QLatin1StringView(steps.at(step))).toStdString());
        folder.write(name, original);
        bool hasFailed = false;
        {
            FailingFileCalls calls;
            calls.failingStep = step;
            hasFailed = !errorOf([&] { change(path); }).isEmpty();
        }
        // What the kernel cannot copy is read and written instead.
        EXPECT_EQ(hasFailed, step <= swap && steps.at(step) != "copyRange");
        EXPECT_TRUE(folder.read(name) == (hasFailed ? original : changed));
        if (keepsTemporary)
            folder.removeTemporaries();
        EXPECT_EQ(folder.names(), QStringList{name});

        folder.write(name, original);
        {
            FailingFileCalls calls;
            calls.stopStep = step;
            errorOf([&] { change(path); });
        }
        EXPECT_TRUE(folder.read(name) == (step <= swap ? original : changed));
        folder.removeTemporaries();
    }
}
