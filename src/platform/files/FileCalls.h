#pragma once

#include <QByteArray>

#include <sys/stat.h>
#include <sys/types.h>

/// The system's calls that a change of a file consists of, so that a test can let each of them fail. Every function
/// behaves as the call it names: a negative result with errno set is a failure. Thread: any.
class FileCalls {
public:
    virtual ~FileCalls() = default;

    /// Closes itself on exec.
    virtual int open(const QByteArray& path, int flags, mode_t mode = 0) = 0;
    /// Closes for good, even where it fails; a disk that is full may show only here.
    virtual int close(int file) = 0;
    /// Bytes from an offset on (pread, pwrite), may be fewer than asked for.
    virtual ssize_t read(int file, void* target, size_t count, off_t offset) = 0;
    virtual ssize_t write(int file, const void* source, size_t count, off_t offset) = 0;
    /// Copying inside the kernel, which may share the blocks instead.
    virtual ssize_t copyRange(int from, off_t fromOffset, int to, off_t toOffset, size_t count) = 0;
    /// What an open file is and whom it belongs to (fstat), and changes of that.
    virtual int status(int file, struct stat* target) = 0;
    virtual int changeMode(int file, mode_t mode) = 0;
    virtual int changeOwner(int file, uid_t user, gid_t group) = 0;
    /// The extended attributes of an open file, as flistxattr and its like. \param size 0 asks for the size alone.
    virtual ssize_t listAttributes(int file, char* names, size_t size) = 0;
    virtual ssize_t readAttribute(int file, const char* name, void* value, size_t size) = 0;
    virtual int writeAttribute(int file, const char* name, const void* value, size_t size) = 0;
    virtual int removeAttribute(int file, const char* name) = 0;
    /// The FS_*_FL flags of the inode.
    virtual int inodeFlags(int file, int* flags) = 0;
    virtual int setInodeFlags(int file, int flags) = 0;
    /// Returns when the file's bytes are on the disk (fsync).
    virtual int sync(int file) = 0;
    /// Takes the place of what stands under the new name, in one step.
    virtual int rename(const QByteArray& from, const QByteArray& to) = 0;
    /// Fails with EEXIST where the new name is taken, and with EINVAL where the file system cannot promise that.
    virtual int renameToFree(const QByteArray& from, const QByteArray& to) = 0;
    /// What stands at a path, with the mount it is on. \param flags AT_SYMLINK_NOFOLLOW for a link itself, or 0.
    virtual int facts(const QByteArray& path, int flags, struct statx* target) = 0;
    /// Fails with EEXIST where something stands already. \param mode less the process's mask.
    virtual int makeFolder(const QByteArray& path, mode_t mode) = 0;
    /// Takes a name away, of a file and not of a folder (unlink).
    virtual int remove(const QByteArray& path) = 0;

    /// The calls of the process: those of the system unless others are installed.
    static FileCalls& current();
    /// \param calls null for those of the system; otherwise must live until the next install. Not while a change runs.
    static void install(FileCalls* calls);
};

/// The calls themselves.
class SystemFileCalls : public FileCalls {
public:
    int open(const QByteArray& path, int flags, mode_t mode = 0) override;
    int close(int file) override;
    ssize_t read(int file, void* target, size_t count, off_t offset) override;
    ssize_t write(int file, const void* source, size_t count, off_t offset) override;
    ssize_t copyRange(int from, off_t fromOffset, int to, off_t toOffset, size_t count) override;
    int status(int file, struct stat* target) override;
    int changeMode(int file, mode_t mode) override;
    int changeOwner(int file, uid_t user, gid_t group) override;
    ssize_t listAttributes(int file, char* names, size_t size) override;
    ssize_t readAttribute(int file, const char* name, void* value, size_t size) override;
    int writeAttribute(int file, const char* name, const void* value, size_t size) override;
    int removeAttribute(int file, const char* name) override;
    int inodeFlags(int file, int* flags) override;
    int setInodeFlags(int file, int flags) override;
    int sync(int file) override;
    int rename(const QByteArray& from, const QByteArray& to) override;
    int renameToFree(const QByteArray& from, const QByteArray& to) override;
    int facts(const QByteArray& path, int flags, struct statx* target) override;
    int makeFolder(const QByteArray& path, mode_t mode) override;
    int remove(const QByteArray& path) override;

    /// Leaves sync() out in the whole process: for measurements of everything else. On at the start.
    static void setSyncing(bool isOn);
};
