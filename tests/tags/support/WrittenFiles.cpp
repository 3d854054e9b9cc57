#include "support/WrittenFiles.h"

#include "core/model/AudioTags.h"
#include "support/Encoder.h"
#include "support/FailingFileCalls.h"
#include "tags/keeping/KeepingWriter.h"
#include "tags/vault/VaultError.h"
#include "tags/writing/MetadataWriter.h"
#include "tags/writing/WriteErrors.h"

#include <QDirIterator>

#include <gtest/gtest.h>

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

QByteArray changed(const QString& name, const QByteArray& bytes, const Change& change)
{
    const FileFolder folder;
    const QUrl url = folder.write(name, bytes);
    EXPECT_EQ(failureOf(change, url), QString()) << name.toStdString();
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

Change cleaning(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album)
{
    return [=](const QUrl& url) { MetadataWriter::clean(fields, title, album, url); };
}

QString errorOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const FileError& error) {
        return error.caseName();
    } catch (const WriteError& error) {
        return QString(error.caseName()) + u' ' + error.payload();
    } catch (const VaultError& error) {
        return error.caseName();
    }
    return {};
}

QString failureOf(const Change& change, const QUrl& url)
{
    return errorOf([&] { change(url); });
}

void expectChanges(const QString& name, const std::vector<ChangeCase>& cases)
{
    for (const ChangeCase& c : cases) {
        const QByteArray after = changed(name, c.before, c.change);
        EXPECT_EQ(after.toHex(' '), c.after.toHex(' ')) << c.what;
        EXPECT_TRUE(changed(name, after, c.change) == after) << c.what << ", again";
    }
}

void expectRefusals(const QString& name, const std::vector<Refusal>& cases)
{
    for (const Refusal& c : cases) {
        const FileFolder folder;
        EXPECT_EQ(failureOf(c.change, folder.write(name, c.bytes)), c.failure) << c.what;
        EXPECT_TRUE(folder.read(name) == c.bytes) << c.what;
        EXPECT_EQ(folder.names(), QStringList{name}) << c.what;
    }
}

void expectWholeAtEveryStep(const QString& name, const QByteArray& original, const Change& change, bool keepsTemporary)
{
    const FileFolder folder;
    const QUrl url = folder.write(name, original);
    const QByteArrayList steps = callsOf([&] { change(url); });
    const QByteArray changed = folder.read(name);
    ASSERT_NE(changed, original) << "the change changes nothing";
    const qsizetype swap = steps.indexOf("rename");
    ASSERT_GT(swap, 0);
    const auto check = [&](int step, bool ends, const QString& failure) {
        // What the kernel cannot copy is read and written instead.
        const bool isNeeded = step <= swap && (ends || steps.at(step) != "copyRange");
        EXPECT_TRUE(ends || failure.isEmpty() != isNeeded);
        EXPECT_TRUE(folder.read(name) == (isNeeded ? original : changed));
        if (ends || keepsTemporary)
            folder.removeTemporaries();
        EXPECT_EQ(folder.names(), QStringList{name});
    };
    breakAtEveryCall(
        steps, [&] { folder.write(name, original); }, [&] { return failureOf(change, url); }, check);
}

QUrl makeSound(const FileFolder& folder, const QString& name, const QString& arguments)
{
    const QString path = folder.path(name);
    const QString noise = QStringLiteral("anoisesrc=d=1:seed=7:r=44100,aformat=channel_layouts=stereo ");
    EXPECT_TRUE(Encoder::encode(noise + arguments, path)) << "cannot make " << name.toStdString();
    return QUrl::fromLocalFile(path);
}

QByteArray packetDigest(const QUrl& url)
{
    return outputOf(QStringLiteral("ffmpeg"), QStringList{QStringLiteral("-i"), url.toLocalFile()} +
                                                  QStringLiteral("-v error -map 0:a -c copy -f md5 -").split(u' '));
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
