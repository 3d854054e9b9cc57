#include "support/DecoderFixture.h"

#include "platform/process/FFmpegExecutable.h"
#include "support/Encoder.h"
#include "support/Machine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

const QString DecoderFixture::kHanging = QStringLiteral(": > ready; printf 12345678 > \"$out\"; exec sleep 60");
const QString DecoderFixture::kStubborn = QStringLiteral("trap '' TERM; : > ready; while :; do sleep 0.02; done");

WorkerClock FastTime::clock()
{
    return {.now = [this] { return now; },
            .wait =
                [this](async::Duration duration, int) {
                    now += duration;
                    waits.push_back(duration);
                    std::this_thread::yield();
                }};
}

void DecoderFixture::SetUp()
{
    ASSERT_TRUE(m_folder.isValid());
    m_temporaryFolderBefore = qgetenv("TMPDIR");
    ASSERT_TRUE(QDir().mkdir(path(QStringLiteral("temporary"))));
    qputenv("TMPDIR", QFile::encodeName(path(QStringLiteral("temporary"))));
}

void DecoderFixture::TearDown()
{
    const QDir temporary(path(QStringLiteral("temporary")));
    EXPECT_TRUE(temporary.isEmpty()) << qPrintable(temporary.entryList(QDir::Files).join(u' '));
    const QByteArray id = contents(QStringLiteral("pid")).trimmed();
    if (!id.isEmpty()) {
        EXPECT_FALSE(QFile::exists(QStringLiteral("/proc/") + QString::fromLatin1(id))) << "the decoder is left";
    }
    if (m_temporaryFolderBefore.isNull())
        qunsetenv("TMPDIR");
    else
        qputenv("TMPDIR", m_temporaryFolderBefore);
}

QByteArray DecoderFixture::contents(const QString& name) const
{
    return readFile(path(name));
}

QUrl DecoderFixture::script(const QString& body) const
{
    const QByteArray begin = "#!/bin/sh\nfor out; do :; done\ncd '" + QFile::encodeName(m_folder.path()) + "'\n";
    const QString program = path(QStringLiteral("decoder"));
    writeFile(program, begin + "echo $$ > pid.new && mv pid.new pid\n" + body.toUtf8() + '\n');
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QUrl::fromLocalFile(program);
}

QUrl DecoderFixture::encoded(const QString& name, const QString& arguments) const
{
    EXPECT_TRUE(Encoder::encode(arguments, path(name))) << qPrintable(arguments);
    return file(name);
}

QUrl DecoderFixture::realDecoder()
{
    const std::optional<QUrl> url = FFmpegExecutable::url();
    EXPECT_TRUE(url) << "these tests need ffmpeg";
    return url.value_or(QUrl());
}

std::string DecoderFixture::told(const char* prefix) const
{
    const QByteArray all = contents(QStringLiteral("told"));
    const qsizetype outputAt = all.lastIndexOf('\n', -2) + 1;
    const QFileInfo output(QString::fromUtf8(all.sliced(outputAt).trimmed()));
    EXPECT_EQ(output.path(), path(QStringLiteral("temporary")));
    EXPECT_TRUE(output.fileName().startsWith(QLatin1StringView(prefix))) << qPrintable(output.fileName());
    EXPECT_EQ(output.suffix(), QStringLiteral("pcm"));
    return all.first(outputAt).toStdString();
}

std::jthread DecoderFixture::stopWhenReady(std::stop_source& source) const
{
    return std::jthread([&source, ready = path(QStringLiteral("ready"))](std::stop_token end) {
        while (!QFile::exists(ready) && !end.stop_requested())
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        source.request_stop();
    });
}
