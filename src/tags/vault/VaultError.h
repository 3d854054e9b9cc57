#pragma once

#include <QLatin1StringView>
#include <QString>

#include <exception>

/// A failure of the tag vault, as opposed to one of the file whose tags it keeps.
class VaultError : public std::exception {
public:
    enum class Case {
        noEntry,    ///< none for this path and sound
        cannotKeep, ///< the tags are not safe, so the file must not be changed
        damaged,    ///< the entry is there, but cannot be read whole
    };

    /// \param path of the file whose tags they are. \param systemError errno, 0 if there is none.
    VaultError(Case what, const QString& path, int systemError = 0);

    Case which() const { return m_case; }
    /// The name of the case in reports, e.g. "noEntry".
    QLatin1StringView caseName() const;
    /// Of the file whose tags they are.
    const QString& path() const { return m_path; }
    /// The errno; 0 where no call failed.
    int systemError() const { return m_systemError; }
    /// The text for people, localised, with the system's reason behind it.
    QString message() const;
    const char* what() const noexcept override { return "vault error"; }

private:
    Case m_case;
    QString m_path;
    int m_systemError;
};
