#pragma once

#include "core/model/LoadedTrackMetadata.h"
#include "tags/AssetReader.h"

#include <QTemporaryDir>
#include <QUrl>

#include <ostream>

/// What the asset reader makes of these bytes.
Asset assetOf(const QByteArray& bytes, const QString& extension = {}, bool readsWindows1251 = true);

/// A folder with files that are gone at its end.
class FileFolder {
public:
    QUrl write(const QString& name, const QByteArray& bytes) const;
    /// What the loader makes of a file of these bytes.
    LoadedTrackMetadata load(const QString& name, const QByteArray& bytes, const AudioTags& fallbackTags = {}) const;
    QByteArray read(const QString& name) const;
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// The names of all files, hidden ones too, sorted.
    QStringList names() const;
    /// Removes new files that took nobody's place. \return how many there were.
    int removeTemporaries() const;

private:
    QTemporaryDir m_folder;
};

QByteArray contentOf(const QUrl& url);

/// Runs a program to its end. \return whether it could be run and succeeded.
bool runProgram(const QString& program, const QStringList& arguments);

/// Lets messages of failed tests show texts.
inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}
