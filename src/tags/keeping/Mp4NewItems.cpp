#include "tags/keeping/Mp4NewItems.h"

#include "tags/writing/ByteOrder.h"
#include "tags/writing/Mp4Atoms.h"
#include "tags/writing/Mp4Tags.h"

#include <QStringList>

#include <cmath>
#include <optional>

namespace Mp4NewItems {

namespace {

using ByteOrder::big32;
using Mp4Atoms::atom;

// Kinds of a "data" atom. Source: Apple, QuickTime File Format, "Well-Known Types".
constexpr quint32 kBinary = 0;
constexpr quint32 kUtf8 = 1;
constexpr quint32 kInteger = 21;

QByteArray data(quint32 type, const QByteArray& value)
{
    return atom("data", big32(type) + big32(0) /* locale */ + value);
}

QByteArray freeItem(const char* name, const QString& text)
{
    return atom("----", atom("mean", big32(0) + "com.apple.iTunes") + atom("name", big32(0) + name) +
                            data(kUtf8, text.toUtf8()));
}

QByteArray big16(quint32 value)
{
    return big32(value).sliced(2);
}

std::optional<quint32> number16(const QString& text)
{
    bool isNumber = false;
    const uint number = text.trimmed().toUInt(&isNumber);
    return isNumber && number <= 0xFFFF ? std::optional<quint32>(number) : std::nullopt;
}

QByteArray trackItem(const QString& text)
{
    const QStringList parts = text.split(u'/');
    const std::optional<quint32> track = number16(parts.first());
    const std::optional<quint32> count = parts.size() == 2 ? number16(parts.last()) : 0;
    if (parts.size() > 2 || !track || !count)
        return freeItem("TRACKNUMBER", text);
    return atom("trkn", data(kBinary, big16(0) + big16(*track) + big16(*count) + big16(0)));
}

QByteArray tempoItems(const QString& text)
{
    constexpr double kHighest = 0x7FFF;
    bool isNumber = false;
    const double tempo = QString(text).replace(u',', u'.').toDouble(&isNumber);
    const bool fits = isNumber && tempo > 0 && tempo <= kHighest;
    const auto rounded = fits ? static_cast<quint32>(std::lround(tempo)) : 0;
    const QByteArray whole = rounded > 0 ? atom("tmpo", data(kInteger, big16(rounded))) : QByteArray();
    return QString::number(rounded) == text ? whole : whole + freeItem("BPM", text);
}

} // namespace

QByteArray items(const AudioTags& tags)
{
    QByteArray list = Mp4Tags::textItem("\251nam", tags.title) + Mp4Tags::textItem("\251ART", tags.artist) +
                      Mp4Tags::textItem("\251alb", tags.album) + Mp4Tags::textItem("aART", tags.albumArtist) +
                      Mp4Tags::textItem("\251gen", tags.genre) + Mp4Tags::textItem("\251day", tags.year) +
                      Mp4Tags::textItem("\251cmt", tags.comment);
    if (!tags.track.isEmpty())
        list += trackItem(tags.track);
    if (!tags.bpm.isEmpty())
        list += tempoItems(tags.bpm);
    if (!tags.musicalKey.isEmpty())
        list += freeItem("initialkey", tags.musicalKey);
    return list;
}

} // namespace Mp4NewItems
