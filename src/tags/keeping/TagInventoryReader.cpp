#include "tags/keeping/TagInventoryReader.h"

#include "platform/FileURL.h"
#include "tags/keeping/Inventories.h"
#include "tags/writing/PlannedRewrite.h"
#include "tags/writing/WriteErrors.h"

#include <algorithm>

namespace TagInventoryReader {

namespace {

struct Format {
    QLatin1StringView extension;
    void (*take)(const RewriteSource& source, TagInventory& inventory);
};
constexpr Format kFormats[] = {
    {QLatin1StringView("mp3"), &Inventories::takeMp3},  {QLatin1StringView("flac"), &Inventories::takeFlac},
    {QLatin1StringView("wav"), &Inventories::takeWav},  {QLatin1StringView("aiff"), &Inventories::takeAiff},
    {QLatin1StringView("aif"), &Inventories::takeAiff}, {QLatin1StringView("m4a"), &Inventories::takeM4a},
};

} // namespace

TagInventory read(const QUrl& url)
{
    const QString extension = FileURL::pathExtension(url).toLower();
    const auto format = std::ranges::find(kFormats, extension, &Format::extension);
    TagInventory inventory;
    if (format == std::end(kFormats))
        return inventory;
    // What was found before a failure counts: such a file is refused by every save. Any other failure, of memory for
    // one, says nothing about what a save would do.
    try {
        PlannedRewrite::look(url.toLocalFile(), [&](const RewriteSource& source) { format->take(source, inventory); });
    } catch (const FileError&) {
    } catch (const WriteError&) {
    } catch (const std::exception&) {
        inventory.isUnknown = true;
    }
    return inventory;
}

} // namespace TagInventoryReader
