#pragma once

#include "platform/files/FileCalls.h"

#include <QByteArrayList>

#include <limits>
#include <optional>

/// The system's file calls, counted and recorded; one can fail, or the process can "end" before one: then no later call
/// does anything, as if nobody was there to make it. Installed while it lives.
class FailingFileCalls final : public SystemFileCalls {
public:
    static constexpr int kNever = -1;
    static constexpr size_t kNoLimit = std::numeric_limits<size_t>::max();

    FailingFileCalls() { install(this); }
    ~FailingFileCalls() override { install(nullptr); }

    int failingStep = kNever; ///< counted from 0
    int stopStep = kNever;
    /// Every call of this name fails too; empty for none.
    QByteArray failingName;
    int error = EIO;
    /// The most bytes that one call moves.
    size_t transferLimit = kNoLimit;
    /// A folder that counts as the top of another volume; empty for none.
    QByteArray otherVolume;

    int stepCount() const { return static_cast<int>(m_names.size()); }
    /// The names of the calls made, in order.
    const QByteArrayList& names() const { return m_names; }

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

private:
    bool passes(const char* name);

    QByteArrayList m_names;
};
