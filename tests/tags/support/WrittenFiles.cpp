#include "support/WrittenFiles.h"

#include "core/model/AudioTags.h"
#include "tags/keeping/KeepingWriter.h"
#include "tags/vault/VaultError.h"
#include "tags/writing/MetadataWriter.h"
#include "tags/writing/WriteErrors.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    const bool isDone = process.waitForStarted() && process.waitForFinished() && process.exitCode() == 0;
    return isDone ? process.readAllStandardOutput() : QByteArray();
}

QString nameOf(const FileError& error)
{
    switch (error.which()) {
    case FileError::Case::fileReadCorruptFile:
        return QStringLiteral("fileReadCorruptFile");
    case FileError::Case::fileWriteUnknown:
        return QStringLiteral("fileWriteUnknown");
    default:
        return QStringLiteral("another file error");
    }
}

QString nameOf(const WriteError& error)
{
    switch (error.which()) {
    case WriteError::Case::unsupportedFormat:
        return QStringLiteral("unsupportedFormat ") + error.payload();
    case WriteError::Case::rewriteFailed:
        return QStringLiteral("rewriteFailed ") + error.payload();
    default:
        return QStringLiteral("artworkVerificationFailed ") + error.payload();
    }
}

} // namespace

AudioTags tagsWith(const TagTexts& texts)
{
    AudioTags tags;
    for (const auto& [field, text] : texts)
        tags.*field = text;
    return tags;
}

AudioTags fullTags()
{
    return {QStringLiteral("Название"), QStringLiteral("Ärtist"), QStringLiteral("専辑"), QStringLiteral("Various"),
            QStringLiteral("House"),    QStringLiteral("1999"),   QStringLiteral("3/9"),  QStringLiteral("Note"),
            QStringLiteral("124.5"),    QStringLiteral("8A")};
}

AudioTags readableTags()
{
    AudioTags tags = fullTags();
    for (QString AudioTags::*field : {&AudioTags::albumArtist, &AudioTags::year, &AudioTags::track, &AudioTags::bpm})
        (tags.*field).clear();
    return tags;
}

QStringList filesBelow(const QString& folder)
{
    QStringList paths;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext())
        paths += files.next();
    return paths;
}

QByteArray contentOf(const QUrl& url)
{
    QFile file(url.toLocalFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray changed(const QString& name, const QByteArray& bytes, const Change& change)
{
    const FileFolder folder;
    const QUrl url = folder.write(name, bytes);
    EXPECT_EQ(failureOf(change, url), QStringLiteral("none")) << name.toStdString();
    return contentOf(url);
}

Change writing(const AudioTags& tags)
{
    return [=](const QUrl& url) { MetadataWriter::write(tags, false, url); };
}

Change assigning(const QByteArray& artwork, const AudioTags& tags)
{
    return [=](const QUrl& url) { MetadataWriter::assignArtwork(artwork, tags, url); };
}

Change keeping(const AudioTags& tags, TagFields fields)
{
    return [=](const QUrl& url) { KeepingWriter::write(tags, fields, url); };
}

Change keepingWithPicture(const QByteArray& artwork, const AudioTags& tags, TagFields fields)
{
    return [=](const QUrl& url) { KeepingWriter::assignArtwork(artwork, tags, fields, url); };
}

Change cleaning(CleanerFields fields, const QString& title, const QString& album)
{
    return [=](const QUrl& url) { MetadataWriter::clean(fields, title, album, url); };
}

QString failureOf(const Change& change, const QUrl& url)
{
    try {
        change(url);
    } catch (const FileError& error) {
        return nameOf(error);
    } catch (const WriteError& error) {
        return nameOf(error);
    } catch (const VaultError& error) {
        return error.caseName();
    }
    return QStringLiteral("none");
}

void expectRefused(const QString& name, const QByteArray& bytes, const Change& change, const QString& failure,
                   const char* what)
{
    const FileFolder folder;
    const QUrl url = folder.write(name, bytes);
    EXPECT_EQ(failureOf(change, url), failure) << what;
    EXPECT_EQ(contentOf(url), bytes) << what;
    const QDir around = QFileInfo(url.toLocalFile()).dir();
    EXPECT_EQ(around.entryList(QDir::Files | QDir::Hidden), QStringList{name}) << what;
}

QUrl makeSound(const FileFolder& folder, const QString& name, const QStringList& arguments)
{
    const QString path = folder.path(name);
    const QString noise = QStringLiteral("anoisesrc=d=1:seed=7:r=44100,aformat=channel_layouts=stereo");
    const QStringList input{QStringLiteral("-v"),    QStringLiteral("error"), QStringLiteral("-f"),
                            QStringLiteral("lavfi"), QStringLiteral("-i"),    noise};
    if (!runProgram(QStringLiteral("ffmpeg"), input + arguments + QStringList{path}))
        ADD_FAILURE() << "cannot make " << name.toStdString();
    return QUrl::fromLocalFile(path);
}

QByteArray packetDigest(const QUrl& url)
{
    return outputOf(QStringLiteral("ffmpeg"),
                    {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), url.toLocalFile(),
                     QStringLiteral("-map"), QStringLiteral("0:a"), QStringLiteral("-c"), QStringLiteral("copy"),
                     QStringLiteral("-f"), QStringLiteral("md5"), QStringLiteral("-")});
}

QString foreignTag(const QUrl& url, const QString& key)
{
    // Lists of one value and texts come out alike.
    const QString script = QStringLiteral("import sys, mutagen\n"
                                          "tags = mutagen.File(sys.argv[1]).tags or {}\n"
                                          "value = tags.get(sys.argv[2], '')\n"
                                          "value = value[0] if isinstance(value, list) else value\n"
                                          "sys.stdout.buffer.write(str(value).encode())\n");
    return QString::fromUtf8(
        outputOf(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), script, url.toLocalFile(), key}));
}
