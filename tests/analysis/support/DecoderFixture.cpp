#include "support/DecoderFixture.h"

#include "analysis/decoding/FFmpegExecutable.h"

#include <QDir>
#include <QFile>
#include <QProcess>

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
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QUrl DecoderFixture::script(const QString& body) const
{
    QFile file(path(QStringLiteral("decoder")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\nfor out; do :; done\ncd '" + QFile::encodeName(m_folder.path()) + "'\n");
    file.write("echo $$ > pid.new && mv pid.new pid\n" + body.toUtf8() + '\n');
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QUrl::fromLocalFile(file.fileName());
}

QUrl DecoderFixture::encoded(const QString& name, const QStringList& arguments) const
{
    const QString output = path(name);
    const QStringList all =
        QStringList{QStringLiteral("-v"), QStringLiteral("error")} + arguments + QStringList{output};
    EXPECT_EQ(QProcess::execute(realDecoder().toLocalFile(), all), 0) << qPrintable(all.join(u' '));
    return QUrl::fromLocalFile(output);
}

QUrl DecoderFixture::realDecoder()
{
    const std::optional<QUrl> url = FFmpegExecutable::url();
    EXPECT_TRUE(url) << "these tests need ffmpeg";
    return url.value_or(QUrl());
}

std::vector<float> DecoderFixture::decode(const QUrl& file, const QUrl& decoder, const Options& options)
{
    return AudioPCMDecoder::monoSamples(file, options.sampleRate, options.maximumDuration, options.lowImpact, decoder,
                                        options.timeout, options.stop, options.clock);
}

QString DecoderFixture::errorOf(const QUrl& file, const QUrl& decoder, const Options& options)
{
    try {
        decode(file, decoder, options);
        return QStringLiteral("samples");
    } catch (const AudioPCMDecoder::DecoderError& error) {
        return error.caseName();
    }
}
