#pragma once

#include <QString>
#include <QUrl>

#include <memory>

/// Keeps the tags that files had before the program first changed them, in a folder of its own, and puts them back byte
/// for byte. An entry belongs to a path and to the sound of the file there; another sound under the same path has an
/// entry of its own. Bounded: the oldest entries go first.
/// Thread: any; blocks, for workers, but for holds().
class TagVault {
public:
    /// \param folder created with the first entry. \param limit bytes of all entries. Chosen: 500 MB hold the covers
    /// and tags of some thousand files.
    explicit TagVault(const QString& folder, qint64 limit = kDefaultLimit);
    ~TagVault();
    TagVault(const TagVault&) = delete;
    TagVault& operator=(const TagVault&) = delete;

    static constexpr qint64 kDefaultLimit = 500 * 1000 * 1000;
    /// The vault of the program: "Velmora/TagVault" in the user's data folder. Not created here.
    static QString defaultFolder();

    /// Keeps the file's tags as they are now, unless an entry of this path and this sound exists. Durable on return.
    /// A damaged entry could never be put back, so the present tags take its place. Nothing for kinds of files whose
    /// tags the program does not write. Throws FileError and WriteError where the file cannot be read, VaultError
    /// (cannotKeep); a failure means that the tags are not safe.
    void keep(const QUrl& url);
    /// Whether there is an entry for the path; its sound is not looked at. Cheap, for the main thread.
    bool holds(const QUrl& url) const;
    /// Puts the kept tags back: the file is then what it was, byte for byte. VaultError (noEntry) without an entry for
    /// this path and sound, (damaged) for one that cannot be read; WriteError (rewriteFailed with the extension) if
    /// something besides tags has been changed in the file since; FileError and WriteError as all writers of tags. The
    /// entry stays.
    void restore(const QUrl& url);

    /// The tags as they stand in the file now: an entry of its own, kept by the caller; empty for kinds of files whose
    /// tags the program does not write. Throws FileError and WriteError where the file cannot be read, VaultError
    /// (cannotKeep) where the tags are too large for an entry.
    static QByteArray present(const QUrl& url);
    /// Puts tags back that present() gave for this file, as restore() does.
    static void putBack(const QByteArray& tags, const QUrl& url);

private:
    struct State;
    std::unique_ptr<State> m_state;
};
