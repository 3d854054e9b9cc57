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
    QString path(const QString& name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
};

/// Runs a program to its end. \return whether it could be run and succeeded.
bool runProgram(const QString& program, const QStringList& arguments);

/// Lets messages of failed tests show texts.
inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}
