#include "tags/AudioTechnicalInfo.h"

#include "platform/FileURL.h"
#include "tags/AssetReader.h"
#include "tags/bytes/FileBytes.h"

namespace AudioTechnicalInfo {

std::optional<Details> read(const QUrl& url)
{
    const std::unique_ptr<FileBytes> file = FileBytes::open(url);
    if (!file)
        return std::nullopt;
    const Asset asset = AssetReader::read(*file, FileURL::pathExtension(url), AssetReader::Options());
    return asset.sound ? std::optional(asset.sound->details) : std::nullopt;
}

} // namespace AudioTechnicalInfo
