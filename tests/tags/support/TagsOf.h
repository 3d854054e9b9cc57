#pragma once

#include "core/model/LoadedTrackMetadata.h"
#include "support/Machine.h"
#include "tags/AssetReader.h"

#include <QTemporaryDir>
#include <QUrl>

#include <ostream>

/// What the asset reader makes of these bytes.
Asset assetOf(const QByteArray& bytes, const QString& extension = {}, bool readsWindows1251 = true);

/// A folder with files that are gone at its end.
class FileFolder {
public:
    QUrl write(const QString& name, const QByteArray& bytes) const
    {
        return QUrl::fromLocalFile(writeFile(path(name), bytes));
    }
    /// What the loader makes of a file of these bytes.
    LoadedTrackMetadata load(const QString& name, const QByteArray& bytes, const AudioTags& fallbackTags = {}) const;
    QByteArray read(const QString& name) const { return readFile(path(name)); }
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// The names of all files, hidden ones too, sorted.
    QStringList names() const;
    /// Removes new files that took nobody's place. \return how many there were.
    int removeTemporaries() const;

private:
    QTemporaryDir m_folder;
};

inline QByteArray contentOf(const QUrl& url)
{
    return readFile(url.toLocalFile());
}

/// Lets messages of failed tests show texts.
inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}
