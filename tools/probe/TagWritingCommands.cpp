#include "Commands.h"
#include "Output.h"

#include "core/model/AudioTags.h"
#include "platform/FileURL.h"
#include "tags/keeping/KeepingWriter.h"
#include "tags/vault/TagVault.h"
#include "tags/vault/VaultError.h"
#include "tags/writing/MetadataWriter.h"
#include "tags/writing/WriteErrors.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>

#include <functional>

namespace {

/// Takes an option with its value out of the arguments; nothing if it is not there.
std::optional<QString> takeOption(QStringList& arguments, const QString& name)
{
    const qsizetype index = arguments.indexOf(name);
    if (index < 0 || index + 1 >= arguments.size())
        return std::nullopt;
    const QString value = arguments.at(index + 1);
    arguments.remove(index, 2);
    return value;
}

/// Fields that the text does not name are empty; nothing if it is no JSON object of texts under names of fields.
std::optional<AudioTags> tagsFrom(const std::optional<QString>& text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.value_or(QString()).toUtf8());
    if (!document.isObject())
        return std::nullopt;
    QJsonObject object = AudioTags().toJson();
    const QStringList names = object.keys();
    const QJsonObject given = document.object();
    for (auto field = given.begin(); field != given.end(); ++field) {
        if (!names.contains(field.key()))
            return std::nullopt;
        object.insert(field.key(), field.value());
    }
    return AudioTags::fromJson(object);
}

std::optional<QByteArray> contentsOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        Output::diagnose(QStringLiteral("cannot read ") + path);
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        Output::diagnose(QStringLiteral("cannot read ") + path);
        return std::nullopt;
    }
    return bytes;
}

/// Makes one call for a file and prints how it ended.
ExitStatus change(const QString& path, const std::function<void(const QUrl&)>& call)
{
    try {
        call(FileURL::fromPath(QDir::current().absoluteFilePath(path)));
    } catch (const FileError& error) {
        return Output::failure(path, Output::described(error));
    } catch (const WriteError& error) {
        return Output::failure(path, Output::described(error));
    } catch (const VaultError& error) {
        return Output::failure(path, Output::described(error));
    }
    Output::line({{QStringLiteral("path"), path}, {QStringLiteral("ok"), true}});
    return ExitStatus::Success;
}

/// The same, with the file's tags kept in a vault before if one is named.
ExitStatus keepAndChange(const QString& path, const std::optional<QString>& vault,
                         const std::function<void(const QUrl&)>& call)
{
    return change(path, [&](const QUrl& url) {
        if (vault)
            TagVault(QDir::current().absoluteFilePath(*vault)).keep(url);
        call(url);
    });
}

std::optional<QString> takeVault(QStringList& arguments)
{
    return takeOption(arguments, QStringLiteral("--vault"));
}

} // namespace

ExitStatus Commands::write(const QStringList& given)
{
    QStringList arguments = given;
    const std::optional<QString> vault = takeVault(arguments);
    const std::optional<AudioTags> tags = tagsFrom(takeOption(arguments, QStringLiteral("--tags")));
    const bool keeps = arguments.removeAll(QStringLiteral("--keep")) > 0;
    if (!tags || arguments.size() != 1)
        return ExitStatus::Usage;
    if (!keeps)
        return keepAndChange(arguments.first(), vault,
                             [&](const QUrl& url) { MetadataWriter::write(*tags, false, url); });
    // The others cannot have been seen in the file, so an empty one is no wish to take it out.
    const TagFields fields = TagFieldSet::kAll & ~(TagFieldSet::kNeverRead & ~TagFieldSet::filled(*tags));
    return keepAndChange(arguments.first(), vault, [&](const QUrl& url) { KeepingWriter::write(*tags, fields, url); });
}

ExitStatus Commands::artwork(const QStringList& given)
{
    QStringList arguments = given;
    const std::optional<QString> vault = takeVault(arguments);
    const std::optional<AudioTags> tags = tagsFrom(takeOption(arguments, QStringLiteral("--tags")));
    if (!tags || arguments.size() != 2)
        return ExitStatus::Usage;
    const std::optional<QByteArray> picture = contentsOf(arguments.last());
    if (!picture)
        return ExitStatus::Usage;
    return keepAndChange(arguments.first(), vault,
                         [&](const QUrl& url) { MetadataWriter::assignArtwork(*picture, *tags, url); });
}

ExitStatus Commands::clean(const QStringList& given)
{
    QStringList arguments = given;
    const std::optional<QString> vault = takeVault(arguments);
    const std::optional<QString> title = takeOption(arguments, QStringLiteral("--title"));
    const std::optional<QString> album = takeOption(arguments, QStringLiteral("--album"));
    bool isNumber = false;
    const int fields = takeOption(arguments, QStringLiteral("--fields")).value_or(QString()).toInt(&isNumber);
    if (!isNumber || fields < 0 || arguments.size() != 1)
        return ExitStatus::Usage;
    return keepAndChange(arguments.first(), vault,
                         [&](const QUrl& url) { MetadataWriter::clean(CleanerFields(fields), title, album, url); });
}

ExitStatus Commands::restore(const QStringList& given)
{
    QStringList arguments = given;
    const QString folder = takeVault(arguments).value_or(TagVault::defaultFolder());
    if (arguments.size() != 1)
        return ExitStatus::Usage;
    TagVault vault(QDir::current().absoluteFilePath(folder));
    return change(arguments.first(), [&](const QUrl& url) { vault.restore(url); });
}

ExitStatus Commands::id3(const QStringList& given)
{
    QStringList arguments = given;
    const std::optional<AudioTags> tags = tagsFrom(takeOption(arguments, QStringLiteral("--tags")));
    const std::optional<QString> picturePath = takeOption(arguments, QStringLiteral("--artwork"));
    if (!tags || !arguments.isEmpty())
        return ExitStatus::Usage;
    std::optional<QByteArray> picture;
    if (picturePath) {
        picture = contentsOf(*picturePath);
        if (!picture)
            return ExitStatus::Usage;
    }
    const QByteArray tag = MetadataWriter::id3Tag(*tags, picture);
    Output::line({{QStringLiteral("base64"), QString::fromLatin1(tag.toBase64())}});
    return ExitStatus::Success;
}
