#pragma once

#include <QByteArray>

#include <dirent.h>
#include <sys/stat.h>

#include <compare>
#include <optional>

/// An open directory. Its path may be longer than the system takes in one call. Thread: one at a time.
class OpenFolder {
public:
    /// What a directory is, whatever its path.
    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;
        auto operator<=>(const Identity&) const = default;
    };

    OpenFolder() = default;
    /// \param path absolute, in the bytes of the file system. Check isOpen(); error() says why not.
    explicit OpenFolder(const QByteArray& path);
    ~OpenFolder();
    OpenFolder(OpenFolder&& other) noexcept;
    OpenFolder& operator=(OpenFolder&& other) noexcept;

    bool isOpen() const { return m_stream != nullptr; }
    int error() const { return m_error; } ///< errno of the failure
    /// As of the opening; zeros if it failed.
    Identity identity() const { return m_identity; }

    /// The next entry but "." and "..", valid until the next call; null at the end or after a failure, which error()
    /// tells apart.
    const dirent* next();
    /// For calls relative to this folder. It belongs to this object; only while isOpen().
    int descriptor() const { return dirfd(m_stream); }

private:
    DIR* m_stream = nullptr;
    int m_error = 0;
    Identity m_identity;
};

/// Files by a name relative to an open folder, or by an absolute path where the folder is AT_FDCWD.
namespace FileAt {

/// What stands under the name, links followed; nothing where that cannot be told, whatever the reason.
std::optional<struct stat> facts(int folder, const char* name);
/// The first bytes of a regular file, links followed; fewer where there are not so many, none if it cannot be read.
/// Pipes and devices are not waited for.
QByteArray head(int folder, const char* name, qsizetype size);

} // namespace FileAt
