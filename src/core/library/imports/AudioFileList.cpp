#include "core/library/imports/AudioFileList.h"

#include "core/model/SupportedAudio.h"
#include "platform/Collation.h"
#include "platform/DeepWalk.h"

#include <algorithm>
#include <vector>

namespace AudioFileList {

namespace {

struct Entry {
    QByteArray key;
    QUrl url;
};

} // namespace

Expansion expand(const QList<QUrl>& urls, bool (*isWanted)(QStringView name), std::stop_token stop)
{
    DeepWalk::Result walk = DeepWalk::walk(urls, isWanted, stop);
    std::vector<Entry> entries;
    entries.reserve(walk.files.size());
    for (QUrl& url : walk.files)
        entries.push_back({Collation::standardSortKey(url.path(QUrl::FullyDecoded)), std::move(url)});
    std::ranges::stable_sort(entries, [](const Entry& left, const Entry& right) { return left.key < right.key; });

    Expansion expansion;
    expansion.notTaken = walk.notTaken;
    for (const QUrl& url : walk.strayTemporaries) {
        if (!expansion.strayTemporaries.contains(url)) // given twice, or given with its folder
            expansion.strayTemporaries.append(url);
    }
    expansion.files.reserve(static_cast<qsizetype>(entries.size()));
    size_t runBegin = 0; // of entries with an equal key: one file given twice is among them
    qsizetype runFiles = 0;
    for (size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].key != entries[runBegin].key) {
            runBegin = i;
            runFiles = expansion.files.size();
        }
        if (!expansion.files.sliced(runFiles).contains(entries[i].url))
            expansion.files.append(std::move(entries[i].url));
    }
    return expansion;
}

bool isPlayable(QStringView fileName)
{
    return SupportedAudio::hasSupportedExtension(fileName);
}

bool isConvertible(QStringView fileName)
{
    return isPlayable(fileName) ||
           (fileName.size() > 4 && fileName.endsWith(QLatin1StringView(".ogg"), Qt::CaseInsensitive));
}

} // namespace AudioFileList
