#include "tags/AssetReader.h"
#include "tags/MP3Header.h"
#include "tags/bytes/ByteSource.h"
#include "tags/fields/MusicalKeyItem.h"

#include <cstdlib>

namespace {

/// What every reading must keep to; a breach is a find like a crash.
void check(const Asset& asset, qsizetype byteCount)
{
    for (const MetadataItem& item : asset.items) {
        if (item.dataValue && item.dataValue->size() > byteCount)
            std::abort();
        if (item.stringValue && item.stringValue->size() > 3 * byteCount)
            std::abort();
        MusicalKeyItem::value(item);
    }
}

} // namespace

/// The input is the file; its last byte picks the extension of its name as well.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const QString kExtensions[] = {QString(), QStringLiteral("mp3"), QStringLiteral("aac")};
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    MemoryBytes source(bytes);
    check(AssetReader::read(source, kExtensions[data[size - 1] % std::size(kExtensions)], {}), bytes.size());
    MP3Header::bitRate(bytes);
    return 0;
}
