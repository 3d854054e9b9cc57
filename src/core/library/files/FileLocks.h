#pragma once

#include "async/Task.h"

#include <QString>
#include <QUrl>

#include <memory>
#include <stop_token>

/// Lets one at a time at a file: who comes later waits, in order of arrival. Files are told apart by their
/// standardized path. All who write, rename or move files hold them meanwhile. Thread: main.
class FileLocks {
public:
    /// Gives a path back when the last of its owners goes.
    class Held;
    using HeldPath = std::shared_ptr<Held>;

    FileLocks();
    ~FileLocks();
    FileLocks(const FileLocks&) = delete;
    FileLocks& operator=(const FileLocks&) = delete;

    /// Returns when the caller holds the path. Throws Cancelled when a stop ends its waiting; the path is not held
    /// then. A path that is free is given at once, even after a stop request. \param path standardized.
    async::Task<> acquire(QString path, std::stop_token stop);
    /// Gives a held path to the caller that has waited longest; frees it where none waits.
    void release(const QString& path);
    /// As acquire(), with an owner that releases the path whatever happens, even when it goes after the locks.
    async::Task<HeldPath> hold(QUrl url, std::stop_token stop);

private:
    struct State;
    std::shared_ptr<State> m_state;
};
