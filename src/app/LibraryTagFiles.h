#pragma once

#include "core/library/tagwriting/TagFiles.h"
#include "tags/vault/TagVault.h"

/// The files on disk: the tag writers, with the vault before every first change. What writers, readers and vault
/// throw arrives as TagFileError with a text for people. Thread: workers.
class LibraryTagFiles final : public TagFiles {
public:
    /// \param vaultFolder where original tags are kept.
    explicit LibraryTagFiles(const QString& vaultFolder);

    void write(const TagWrite& write) override;
    void assignArtwork(const QByteArray& artwork, const TagWrite& write) override;
    void clean(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
               const QUrl& url) override;
    TagInventory inventory(const QUrl& url) override;
    bool holdsOriginal(const QUrl& url) const override;
    void restoreOriginal(const QUrl& url) override;
    QByteArray present(const QUrl& url) override;
    void putBack(const QByteArray& tags, const QUrl& url) override;

private:
    TagVault m_vault;
};
