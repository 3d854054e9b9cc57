#pragma once

#include "platform/process/Descriptor.h"

#include <QString>

#include <chrono>

/// A temporary file that this process lets another program fill. Its owner holds a lock on it that the system drops
/// when the owner ends, however it ends; so the files of owners that were killed can be told from those in use.
/// Thread: any, one at a time.
class OwnedTemporaryFile {
public:
    /// Names of one kind: prefix, a UUID in upper case, suffix.
    struct Naming {
        QString prefix;
        QString suffix;
        /// Whether a file name has exactly this form.
        bool matches(const QString& fileName) const;
    };

    /// Creates an empty file that only this user can read, under a name that is free. Throws std::system_error.
    OwnedTemporaryFile(const QString& folder, const Naming& naming);
    /// Deletes the file; a failure of that is ignored.
    ~OwnedTemporaryFile();
    OwnedTemporaryFile(const OwnedTemporaryFile&) = delete;
    OwnedTemporaryFile& operator=(const OwnedTemporaryFile&) = delete;

    /// Absolute where the folder was; stays the same however the file is written.
    const QString& path() const { return m_path; }

    /// Deletes the files in \p folder that match the naming, are regular files of this user, were last written more
    /// than \p age ago and have no living owner. Whatever cannot be deleted stays. \return the number of deleted files.
    static int removeStale(const QString& folder, const Naming& naming, std::chrono::seconds age);

private:
    QString m_path;
    Descriptor m_lock;
};
