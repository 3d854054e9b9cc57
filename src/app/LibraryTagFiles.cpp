#include "app/LibraryTagFiles.h"

#include "tags/keeping/KeepingWriter.h"
#include "tags/keeping/TagInventoryReader.h"
#include "tags/vault/VaultError.h"
#include "tags/writing/MetadataWriter.h"
#include "tags/writing/WriteErrors.h"

namespace {

/// Runs an operation; its failures become the store's.
template <typename Operation>
void run(const Operation& operation)
{
    try {
        operation();
    } catch (const FileError& error) {
        throw TagFileError(error.message(), error.which() == FileError::Case::fileNoSuchFile);
    } catch (const WriteError& error) {
        throw TagFileError(error.message(), false);
    } catch (const VaultError& error) {
        throw TagFileError(error.message(), false);
    }
}

} // namespace

LibraryTagFiles::LibraryTagFiles(const QString& vaultFolder)
    : m_vault(vaultFolder)
{
}

void LibraryTagFiles::write(const TagWrite& write)
{
    run([&] {
        m_vault.keep(write.url);
        if (write.keepsOthers)
            KeepingWriter::write(write.tags, write.fields, write.url);
        else
            MetadataWriter::write(write.tags, false, write.url);
    });
}

void LibraryTagFiles::assignArtwork(const QByteArray& artwork, const TagWrite& write)
{
    run([&] {
        m_vault.keep(write.url);
        if (write.keepsOthers)
            KeepingWriter::assignArtwork(artwork, write.tags, write.fields, write.url);
        else
            MetadataWriter::assignArtwork(artwork, write.tags, write.url);
    });
}

void LibraryTagFiles::clean(CleanerFields fields, const std::optional<QString>& title,
                            const std::optional<QString>& album, const QUrl& url)
{
    run([&] {
        m_vault.keep(url);
        MetadataWriter::clean(fields, title, album, url);
    });
}

TagInventory LibraryTagFiles::inventory(const QUrl& url)
{
    return TagInventoryReader::read(url);
}

bool LibraryTagFiles::holdsOriginal(const QUrl& url) const
{
    return m_vault.holds(url);
}

void LibraryTagFiles::restoreOriginal(const QUrl& url)
{
    run([&] { m_vault.restore(url); });
}

QByteArray LibraryTagFiles::present(const QUrl& url)
{
    QByteArray tags;
    run([&] { tags = TagVault::present(url); });
    return tags;
}

void LibraryTagFiles::putBack(const QByteArray& tags, const QUrl& url)
{
    run([&] { TagVault::putBack(tags, url); });
}
