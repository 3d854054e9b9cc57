#include "platform/FileURL.h"

#include <QDir>

namespace FileURL {

namespace {

// QDir::cleanPath keeps a leading "/.." and knows resource paths, so the cleaning is done here.
QString cleaned(const QString& path)
{
    const bool isRelative = !path.startsWith(u'/');
    const QString whole = isRelative ? QDir::currentPath() + u'/' + path : path;
    QList<QStringView> parts;
    for (QStringView part : QStringView(whole).tokenize(u'/', Qt::SkipEmptyParts)) {
        if (part == u"..") {
            if (!parts.isEmpty())
                parts.removeLast();
        } else if (part != u".") {
            parts.append(part);
        }
    }
    QString result;
    result.reserve(whole.size());
    for (QStringView part : parts)
        result.append(u'/').append(part);
    return result.isEmpty() ? QStringLiteral("/") : result;
}

/// Whether cleaned() would give the path back as it is: nearly every path. One pass, for walks meet many.
bool isClean(QStringView path)
{
    if (path.size() < 2 || path.front() != u'/')
        return path == u"/";
    const auto endsAt = [path](qsizetype place) { return place == path.size() || path[place] == u'/'; };
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (path[i] != u'/')
            continue;
        const bool isDot = i + 1 < path.size() && path[i + 1] == u'.';
        const bool isTwoDots = isDot && i + 2 < path.size() && path[i + 2] == u'.';
        if (endsAt(i + 1) || (isDot && endsAt(i + 2)) || (isTwoDots && endsAt(i + 3)))
            return false;
    }
    return true;
}

QUrl withPath(const QString& path)
{
    QUrl url;
    url.setScheme(QStringLiteral("file"));
    // Without a percent sign both modes mean the same, and this one spares a copy of the path.
    url.setPath(path, path.contains(u'%') ? QUrl::DecodedMode : QUrl::TolerantMode);
    return url;
}

} // namespace

QUrl fromPath(const QString& path)
{
    return withPath(isClean(path) ? path : cleaned(path));
}

QUrl standardized(const QUrl& url)
{
    return withPath(standardizedPath(url));
}

QString standardizedPath(const QUrl& url)
{
    const QString path = url.path(QUrl::FullyDecoded);
    return isClean(path) ? path : cleaned(path);
}

QString lastPathComponent(const QUrl& url)
{
    const QString path = url.path(QUrl::FullyDecoded);
    if (!path.endsWith(u'/'))
        return path.sliced(path.lastIndexOf(u'/') + 1);
    const QString standard = standardizedPath(url);
    return standard.sliced(standard.lastIndexOf(u'/') + 1);
}

QString pathExtension(const QUrl& url)
{
    return extensionOf(lastPathComponent(url));
}

QString extensionOf(const QString& name)
{
    const qsizetype point = name.lastIndexOf(u'.');
    return point > 0 ? name.sliced(point + 1) : QString();
}

QString folderPath(const QUrl& url)
{
    return place(url).folder;
}

Place place(const QUrl& url)
{
    const QString path = standardizedPath(url);
    const qsizetype slash = path.lastIndexOf(u'/');
    return {slash > 0 ? path.first(slash) : QStringLiteral("/"), path.sliced(slash + 1)};
}

} // namespace FileURL
