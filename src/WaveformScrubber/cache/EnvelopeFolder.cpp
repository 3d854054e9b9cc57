#include "WaveformScrubber/cache/EnvelopeFolder.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <functional>

namespace EnvelopeFolder {

namespace {

/// A file that a write was about to put in place has six random letters behind its name.
bool isEntry(const QString& name)
{
    static const QRegularExpression kName(QStringLiteral("\\A[0-9a-f]{64}\\.waveform(\\.[A-Za-z]{6})?\\z"));
    return kName.match(name).hasMatch();
}

void forEachEntry(const QString& folder, const std::stop_token& stop,
                  const std::function<void(const QFileInfo&)>& visit)
{
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (files.hasNext() && !stop.stop_requested()) {
        files.next();
        if (isEntry(files.fileName()))
            visit(files.fileInfo());
    }
}

} // namespace

QString entryPath(const QString& folder, const QString& key)
{
    return folder + u'/' + key + QStringLiteral(".waveform");
}

EnvelopeCacheSize size(const QString& folder, const std::stop_token& stop)
{
    EnvelopeCacheSize size;
    forEachEntry(folder, stop, [&size](const QFileInfo& file) {
        size.byteCount += file.size();
        ++size.entryCount;
    });
    return size;
}

void empty(const QString& folder, const std::stop_token& stop)
{
    forEachEntry(folder, stop, [](const QFileInfo& file) { QFile::remove(file.filePath()); });
}

void sweep(const QString& folder, const QDateTime& unusedSince, const std::stop_token& stop)
{
    forEachEntry(folder, stop, [&unusedSince](const QFileInfo& file) {
        if (qMax(file.lastRead(), file.lastModified()) < unusedSince)
            QFile::remove(file.filePath());
    });
}

} // namespace EnvelopeFolder
