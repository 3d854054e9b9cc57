#pragma once

#include "platform/files/FileCalls.h"

#include <QByteArrayList>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <limits>

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

    int open(const QByteArray& path, int flags, mode_t mode = 0) override
    {
        return passes("open") ? Base::open(path, flags, mode) : -1;
    }
    int close(int file) override
    {
        // The descriptor goes in any case: it does so at the end of a process and after a failure as well.
        const bool isPassed = passes("close");
        const int failure = errno;
        const int result = Base::close(file);
        errno = failure;
        return isPassed ? result : -1;
    }
    ssize_t read(int file, void* target, size_t count, off_t offset) override
    {
        return passes("read") ? Base::read(file, target, std::min(count, transferLimit), offset) : -1;
    }
    ssize_t write(int file, const void* source, size_t count, off_t offset) override
    {
        return passes("write") ? Base::write(file, source, std::min(count, transferLimit), offset) : -1;
    }
    ssize_t copyRange(int from, off_t fromOffset, int to, off_t toOffset, size_t count) override
    {
        const size_t limited = std::min(count, transferLimit);
        return passes("copyRange") ? Base::copyRange(from, fromOffset, to, toOffset, limited) : -1;
    }
    int status(int file, struct stat* target) override { return passes("status") ? Base::status(file, target) : -1; }
    int changeMode(int file, mode_t mode) override { return passes("changeMode") ? Base::changeMode(file, mode) : -1; }
    int changeOwner(int file, uid_t user, gid_t group) override
    {
        return passes("changeOwner") ? Base::changeOwner(file, user, group) : -1;
    }
    ssize_t listAttributes(int file, char* names, size_t size) override
    {
        return passes("listAttributes") ? Base::listAttributes(file, names, size) : -1;
    }
    ssize_t readAttribute(int file, const char* name, void* value, size_t size) override
    {
        return passes("readAttribute") ? Base::readAttribute(file, name, value, size) : -1;
    }
    int writeAttribute(int file, const char* name, const void* value, size_t size) override
    {
        return passes("writeAttribute") ? Base::writeAttribute(file, name, value, size) : -1;
    }
    int removeAttribute(int file, const char* name) override
    {
        return passes("removeAttribute") ? Base::removeAttribute(file, name) : -1;
    }
    int inodeFlags(int file, int* flags) override { return passes("inodeFlags") ? Base::inodeFlags(file, flags) : -1; }
    int setInodeFlags(int file, int flags) override
    {
        return passes("setInodeFlags") ? Base::setInodeFlags(file, flags) : -1;
    }
    int sync(int file) override { return passes("sync") ? Base::sync(file) : -1; }
    int rename(const QByteArray& from, const QByteArray& to) override
    {
        return passes("rename") ? Base::rename(from, to) : -1;
    }
    int renameToFree(const QByteArray& from, const QByteArray& to) override
    {
        return passes("renameToFree") ? Base::renameToFree(from, to) : -1;
    }
    int facts(const QByteArray& path, int flags, struct statx* target) override
    {
        if (!passes("facts") || Base::facts(path, flags, target) != 0)
            return -1;
        if (!otherVolume.isEmpty() && (path + '/').startsWith(otherVolume + '/'))
            ++target->stx_dev_minor;
        return 0;
    }
    int makeFolder(const QByteArray& path, mode_t mode) override
    {
        return passes("makeFolder") ? Base::makeFolder(path, mode) : -1;
    }
    int remove(const QByteArray& path) override { return passes("remove") ? Base::remove(path) : -1; }

private:
    using Base = SystemFileCalls;

    bool passes(const char* name)
    {
        const int step = stepCount();
        m_names.append(name);
        const bool hasEnded = stopStep != kNever && step >= stopStep;
        if (!hasEnded && step != failingStep && failingName != name)
            return true;
        errno = error;
        return false;
    }

    QByteArrayList m_names;
};

/// The file calls that an operation makes, in order. \param otherVolume as above.
template <typename Operation>
QByteArrayList callsOf(const Operation& operation, const QByteArray& otherVolume = {})
{
    FailingFileCalls calls;
    calls.otherVolume = otherVolume;
    operation();
    return calls.names();
}

/// Lets an operation fail at each of its calls, and end before each of them. \param prepare stands before each time.
/// \param check gets the call's number, whether it was an end, and what the operation returned.
template <typename Prepare, typename Operation, typename Check>
void breakAtEveryCall(const QByteArrayList& names, const Prepare& prepare, const Operation& operation,
                      const Check& check, const QByteArray& otherVolume = {})
{
    for (int step = 0; step < names.size(); ++step) {
        for (const bool ends : {false, true}) {
            SCOPED_TRACE(names.at(step).toStdString() + " " + std::to_string(step) + (ends ? " ends" : " fails"));
            prepare();
            const auto broken = [&] {
                FailingFileCalls calls;
                calls.otherVolume = otherVolume;
                (ends ? calls.stopStep : calls.failingStep) = step;
                return operation();
            };
            check(step, ends, broken());
        }
    }
}
