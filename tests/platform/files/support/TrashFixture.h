#pragma once

#include "platform/files/Trash.h"
#include "platform/files/TrashError.h"

#include <QByteArrayList>
#include <QMap>
#include <gtest/gtest.h>

#include <functional>
#include <optional>

/// A music folder, another one that can count as a volume, and a home trash that is not there yet. Names and paths are
/// bytes.
class TrashFixture : public testing::Test {
protected:
    TrashFixture();
    ~TrashFixture() override;

    QByteArray path(const QByteArray& relative) const { return m_root + '/' + relative; }
    /// Makes a file and its folders. \return its path.
    QByteArray write(const QByteArray& relative, const QByteArray& bytes = "music") const;
    void makeFolder(const QByteArray& relative, unsigned mode = 0755) const;
    void link(const QByteArray& relative, const QByteArray& target) const;
    /// Names in a folder, sorted; none if it is not there.
    QByteArrayList names(const QByteArray& relative) const;

    Trash trash() const { return Trash(path("home/Trash")); }

private:
    QByteArray m_root; ///< links resolved
};

/// The bytes of a file; nothing if there is none.
std::optional<QByteArray> contents(const QByteArray& path);
/// Whether anything stands there, a link to nothing included.
bool isThere(const QByteArray& path);
/// The permission bits.
unsigned modeOf(const QByteArray& path);
/// The case of the TrashError that a call throws, if it throws one.
std::optional<TrashError::Case> errorOf(const std::function<void()>& call);

/// An info file as another reader understands it.
struct ReadInfo {
    QByteArray path;
    qint64 age = 0; ///< seconds since the date of deletion
};
/// Reads the info files of a trash with read_trash.py. \return by the names of the kept files.
QMap<QByteArray, ReadInfo> readByAnother(const QByteArray& trash);
