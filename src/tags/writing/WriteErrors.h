#pragma once

#include <QLatin1StringView>
#include <QString>

#include <exception>

/// A failure of the file system or of a file's form, with the case names that the rest of the program knows.
class FileError : public std::exception {
public:
    /// Named as in reports. Every other error of reading is fileReadCorruptFile, every other one of writing
    /// fileWriteUnknown.
    enum class Case {
        fileNoSuchFile,
        fileReadCorruptFile,
        fileReadNoPermission,
        fileWriteNoPermission,
        fileWriteOutOfSpace,
        fileWriteVolumeReadOnly,
        fileWriteUnknown,
    };

    FileError(Case what, const QString& path, int systemError = 0);
    /// The case for an errno of a call that reads, respectively writes.
    static FileError fromReading(int systemError, const QString& path);
    static FileError fromWriting(int systemError, const QString& path);

    Case which() const { return m_case; }
    /// The name of the case in reports, e.g. "fileNoSuchFile".
    QLatin1StringView caseName() const;
    /// Of the file that was to be changed, never of the new one beside it.
    const QString& path() const { return m_path; }
    int systemError() const { return m_systemError; } ///< errno, 0 if there is none
    /// The text for people, localised.
    QString message() const;
    const char* what() const noexcept override { return "file error"; }

private:
    Case m_case;
    QString m_path;
    int m_systemError;
};

/// A failure of a tag writer, as opposed to one of the file system.
class WriteError : public std::exception {
public:
    enum class Case { unsupportedFormat, rewriteFailed, artworkVerificationFailed };

    /// \param payload the file's extension or a tag's name; for artworkVerificationFailed the file's name.
    WriteError(Case what, const QString& payload);

    Case which() const { return m_case; }
    /// The name of the case in reports, e.g. "rewriteFailed".
    QLatin1StringView caseName() const;
    /// See the constructor; it fills the place in message().
    const QString& payload() const { return m_payload; }
    /// The text for people, localised.
    QString message() const;
    const char* what() const noexcept override { return "write error"; }

private:
    Case m_case;
    QString m_payload;
};
