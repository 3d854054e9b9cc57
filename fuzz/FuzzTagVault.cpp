#include "FuzzWriters.h"

#include "tags/bytes/ByteReader.h"
#include "tags/vault/FileAnatomy.h"
#include "tags/vault/VaultEntry.h"

#include <optional>

namespace {

FileAnatomy anatomyOf(const QByteArray& file, const QString& extension)
{
    return withSource(file, [&](const RewriteSource& source) { return FileAnatomy::read(source, extension); });
}

VaultEntry entryOf(const QByteArray& file, const QString& extension)
{
    return withSource(file, [&](const RewriteSource& source) {
        return VaultEntry::make(QStringLiteral("/a"), source, FileAnatomy::read(source, extension));
    });
}

/// By the file's begin, so that the seeds are files as they are.
QString extensionOf(const QByteArray& bytes)
{
    if (bytes.startsWith("fLaC"))
        return QStringLiteral("flac");
    if (bytes.startsWith("RIFF"))
        return QStringLiteral("wav");
    if (bytes.startsWith("FORM"))
        return QStringLiteral("aiff");
    return bytes.mid(4, 4) == "ftyp" ? QStringLiteral("m4a") : QStringLiteral("mp3");
}

RewritePlan planWrite(const RewriteSource& source, const Writer& writer)
{
    AudioTags tags;
    tags.title = QStringLiteral("Title");
    return writer.write(source, tags);
}

RewritePlan planClean(const RewriteSource& source, const Writer& writer)
{
    return writer.clean(source, {CleanerFields::fromInt(1023), QStringLiteral("New"), QStringLiteral("Album")});
}

/// \return the file as a writer leaves it; nothing where it refuses.
template <typename Plan>
std::optional<QByteArray> changed(const QByteArray& file, const Plan& plan)
{
    std::optional<QByteArray> result;
    isTaken([&] {
        result =
            withSource(file, [&](const RewriteSource& source) { return plan(source, writerOf(file)).toBytes(source); });
    });
    return result;
}

/// A file that a writer takes can be kept, and comes back from what the writer made of it.
template <typename Plan>
void checkFile(const QByteArray& file, const QString& extension, const Plan& plan)
{
    const std::optional<QByteArray> present = changed(file, plan);
    if (!present)
        return;
    const std::optional<VaultEntry> entry = VaultEntry::fromBytes(entryOf(file, extension).toBytes());
    require(entry.has_value());
    const FileAnatomy anatomy = anatomyOf(*present, extension);
    require(anatomy.soundDigest == entry->label().soundDigest);
    require(anatomy.otherDigest == entry->label().otherDigest);
    const QByteArray restored =
        withSource(*present, [&](const RewriteSource& source) { return entry->planRestore(anatomy).toBytes(source); });
    require(restored == file);
}

void checkAnatomy(const QByteArray& file, const QString& extension)
{
    isTaken([&] {
        const VaultEntry entry = entryOf(file, extension);
        const FileAnatomy anatomy = anatomyOf(file, extension);
        const QByteArray same =
            withSource(file, [&](const RewriteSource& source) { return entry.planRestore(anatomy).toBytes(source); });
        require(same == file);
    });
}

void setChecksum(QByteArray& bytes, qint64 end)
{
    constexpr qint64 kSize = 4;
    if (end < kSize || end > bytes.size())
        return;
    const quint32 sum = VaultEntry::checksum(QByteArrayView(bytes).first(end - kSize));
    qToLittleEndian(sum, bytes.data() + end - kSize);
}

/// What passes for an entry is one: it can be written and read again. Checksums are made to fit.
void checkEntry(QByteArray bytes)
{
    constexpr qsizetype kLabelSizeAt = 12;
    ByteReader reader(bytes);
    reader.skip(kLabelSizeAt);
    setChecksum(bytes, reader.u32le());
    setChecksum(bytes, bytes.size());
    const std::optional<VaultEntry> entry = VaultEntry::fromBytes(bytes);
    if (!entry)
        return;
    const std::optional<VaultEntry> again = VaultEntry::fromBytes(entry->toBytes());
    require(again && again->toBytes() == entry->toBytes());
}

} // namespace

/// The input is an entry or a file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (bytes.startsWith("VelmTags")) {
        checkEntry(bytes);
        return 0;
    }
    const QString extension = extensionOf(bytes);
    checkAnatomy(bytes, extension);
    if (extension == QStringLiteral("mp3")) // its writer has no plan
        return 0;
    checkFile(bytes, extension, planWrite);
    checkFile(bytes, extension, planClean);
    return 0;
}
