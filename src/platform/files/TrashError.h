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
        /// The folder of the file, or the Trash, does not let this user change it.
        noPermission,
        unavailable, ///< the file's volume has no Trash and none can be made there
        /// No room on the volume of the Trash, or the user's share of it is used up.
        outOfSpace,
        readOnlyVolume,
        /// Anything else; systemError() says more.
        unknown,
    };

    /// \param path in the bytes of the file system. \param systemError errno, 0 if there is none.
    TrashError(Case what, QByteArray path, int systemError = 0);
    /// The case for an errno of a call that changes something.
    static TrashError fromChange(int systemError, const QByteArray& path);

    Case which() const { return m_case; }
    /// Of the file that was to be moved, or to be put back, in the bytes of the file system.
    const QByteArray& path() const { return m_path; }
    /// The errno behind the case; 0 where there is none.
    int systemError() const { return m_systemError; }
    /// The text for people, localised; it names the file without its folder.
    QString message() const;
    const char* what() const noexcept override { return "trash error"; }

private:
    Case m_case;
    QByteArray m_path;
    int m_systemError;
};
