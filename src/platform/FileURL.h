#pragma once

#include <QString>
#include <QUrl>

/// The compares and cuts of file locations, in one place.
namespace FileURL {

/// The file URL of a local path, standardized; a relative one counts from the current folder.
QUrl fromPath(const QString& path);
/// The URL with an absolute path without ".", "..", doubled slashes and a trailing slash. Links are not resolved and
/// nothing is asked of the file system, so the file need not exist. Letters keep their normalisation form.
QUrl standardized(const QUrl& url);
/// The path of standardized(url).
QString standardizedPath(const QUrl& url);
/// The file's name, e.g. "a.mp3".
QString lastPathComponent(const QUrl& url);
/// The extension as written, without the point; empty for a name without one and for a hidden file such as ".mp3".
QString pathExtension(const QUrl& url);
/// The same of a file name.
QString extensionOf(const QString& name);
/// The standardized path of the folder that holds the file.
QString folderPath(const QUrl& url);

/// folderPath() and lastPathComponent() at the price of one.
struct Place {
    QString folder;
    QString name;
};
/// Both of the standardized path.
Place place(const QUrl& url);

} // namespace FileURL
