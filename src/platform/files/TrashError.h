#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

/// Why a file could not go to the Trash or come back from it. The file stands where it stood.
class TrashError : public std::exception {
public:
    enum class Case {
        noSuchFile, ///< nothing stands at the path
        fileExists, ///< the place to restore to is taken
        noPermission,
        unavailable, ///< the file's volume has no Trash and none can be made there
        outOfSpace,
        readOnlyVolume,
        unknown,
    };

    /// \param path in the bytes of the file system. \param systemError errno, 0 if there is none.
    TrashError(Case what, QByteArray path, int systemError = 0);
    /// The case for an errno of a call that changes something.
    static TrashError fromChange(int systemError, const QByteArray& path);

    Case which() const { return m_case; }
    const QByteArray& path() const { return m_path; }
    int systemError() const { return m_systemError; }
    /// The text for people, localised.
    QString message() const;
    const char* what() const noexcept override { return "trash error"; }

private:
    Case m_case;
    QByteArray m_path;
    int m_systemError;
};
