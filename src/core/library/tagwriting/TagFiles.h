#pragma once

#include "core/model/CleanerFields.h"
#include "core/model/TagInventory.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <exception>
#include <optional>

/// A failed change of a file, with the text for people.
class TagFileError : public std::exception {
public:
    /// \param message localised. \param isMissing the file is not there any more.
    TagFileError(const QString& message, bool isMissing)
        : m_message(message)
        , m_isMissing(isMissing)
    {
    }
    const QString& message() const { return m_message; }
    /// Whether the file is gone, which its rows will show by themselves.
    bool isMissing() const { return m_isMissing; }
    const char* what() const noexcept override { return "tag file error"; }

private:
    QString m_message;
    bool m_isMissing;
};

/// One save.
struct TagWrite {
    QUrl url;
    AudioTags tags;
    /// What a keeping save replaces; a plain one writes all ten.
    TagFields fields = TagFieldSet::kAll;
    /// Keeps the picture and all other entries of the file's tags.
    bool keepsOthers = false;
};

/// The files' tags as the store sees them: the narrow seam between the workspace and the disk. Everything but
/// holdsOriginal() blocks, is called on worker threads and throws TagFileError; calls on one file never overlap.
class TagFiles {
public:
    virtual ~TagFiles() = default;

    /// Writes the tags into the file. The file is as it was when this throws.
    virtual void write(const TagWrite& write) = 0;
    /// The same with a picture in place of the file's cover. \param artwork bytes that ArtworkImage made.
    virtual void assignArtwork(const QByteArray& artwork, const TagWrite& write) = 0;
    /// Takes fields out, and sets the title and album where their field is among them.
    virtual void clean(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
                       const QUrl& url) = 0;
    /// What a plain save may take away. Does not throw.
    virtual TagInventory inventory(const QUrl& url) = 0;
    /// Whether the tags that the file had before the first change are kept. Cheap, any thread.
    virtual bool holdsOriginal(const QUrl& url) const = 0;
    /// Puts the tags back that the file had before the first change, byte for byte.
    virtual void restoreOriginal(const QUrl& url) = 0;
    /// The tags as they stand in the file now, byte for byte in a form of its own; empty for kinds of files whose tags
    /// cannot be put back.
    virtual QByteArray present(const QUrl& url) = 0;
    /// Puts tags back that present() gave.
    virtual void putBack(const QByteArray& tags, const QUrl& url) = 0;
};
