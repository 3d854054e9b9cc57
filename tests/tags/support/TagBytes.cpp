#include "support/TagBytes.h"

#include <QtEndian>

namespace TagBytes {

QByteArray big(quint64 value, int byteCount)
{
    QByteArray bytes(8, Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes.last(byteCount);
}

QByteArray little(quint64 value, int byteCount)
{
    QByteArray bytes(8, Qt::Uninitialized);
    qToLittleEndian(value, bytes.data());
    return bytes.first(byteCount);
}

QByteArray syncsafe(quint32 value)
{
    QByteArray bytes;
    for (int shift = 21; shift >= 0; shift -= 7)
        bytes.append(static_cast<char>(value >> shift & 0x7f));
    return bytes;
}

QByteArray noise(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char& byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

QByteArray utf16(const QString& text)
{
    QByteArray bytes("\xFF\xFE");
    for (const QChar c : text)
        bytes += little(c.unicode(), 2);
    return bytes;
}

QByteArray frame(const char* id, const QByteArray& body, int version, quint16 flags)
{
    const auto size = static_cast<quint32>(body.size());
    return QByteArray(id) + (version == 4 ? syncsafe(size) : big(size, 4)) + big(flags, 2) + body;
}

QByteArray textFrame(const char* id, const QByteArray& text, int version)
{
    return frame(id, '\0' + text, version);
}

QByteArray describedFrame(const char* id, const QByteArray& description, const QByteArray& text)
{
    const QByteArray language = qstrcmp(id, "COMM") == 0 ? QByteArray("eng") : QByteArray();
    return frame(id, '\0' + language + description + '\0' + text);
}

QByteArray shortFrame(const char* id, const QByteArray& body)
{
    return id + big(static_cast<quint64>(body.size()), 3) + body;
}

QByteArray pictureFrame(const QByteArray& picture)
{
    return frame("APIC", QByteArray("\0image/png\0\3\0", 13) + picture);
}

QByteArray id3v2(const QByteArray& frames, int version, quint8 flags)
{
    return "ID3" + QByteArray(1, static_cast<char>(version)) + '\0' + static_cast<char>(flags) +
           syncsafe(static_cast<quint32>(frames.size())) + frames;
}

QByteArray id3v1(const Id3v1Fields& fields)
{
    const auto padded = [](const QByteArray& text, int size) { return text.leftJustified(size, '\0', true); };
    return "TAG" + padded(fields.title, 30) + padded(fields.artist, 30) + padded(fields.album, 30) + padded({}, 4) +
           padded(fields.comment, 30) + static_cast<char>(fields.genre);
}

QByteArray ape(const QByteArrayList& items)
{
    QByteArray body;
    for (const QByteArray& item : items) {
        const qsizetype equals = item.indexOf('=');
        const QByteArray value = item.sliced(equals + 1);
        body += little(static_cast<quint64>(value.size()), 4) + little(0, 4) + item.first(equals) + '\0' + value;
    }
    const auto edge = [&](quint32 flags) {
        return "APETAGEX" + little(2000, 4) + little(static_cast<quint64>(body.size()) + 32, 4) +
               little(static_cast<quint64>(items.size()), 4) + little(flags, 4) + QByteArray(8, '\0');
    };
    return edge(0xA0000000) + body + edge(0x80000000);
}

QByteArray withSize(QByteArray ape, quint32 size)
{
    return ape.replace(ape.size() - 20, 4, little(size, 4));
}

QByteArray withCount(QByteArray ape, quint32 count)
{
    return ape.replace(ape.size() - 16, 4, little(count, 4));
}

QByteArray mpegFrames(int count)
{
    return (QByteArray("\xFF\xFB\x90\x64", 4) + QByteArray(413, '\0')).repeated(count);
}

QByteArray riffChunk(const char* id, const QByteArray& body)
{
    return id + little(static_cast<quint64>(body.size()), 4) + body + QByteArray(body.size() % 2, '\0');
}

QByteArray aiffChunk(const char* id, const QByteArray& body)
{
    return id + big(static_cast<quint64>(body.size()), 4) + body + QByteArray(body.size() % 2, '\0');
}

QByteArray wave(int frames, const QByteArray& extra)
{
    const QByteArray format =
        little(1, 2) + little(1, 2) + little(8000, 4) + little(16000, 4) + little(2, 2) + little(16, 2);
    const QByteArray body =
        "WAVE" + riffChunk("fmt ", format) + riffChunk("data", QByteArray(2 * frames, '\0')) + extra;
    return riffChunk("RIFF", body);
}

QByteArray aiff(int frames, const QByteArray& extra)
{
    const QByteArray rate = QByteArray::fromHex("400bfa00000000000000"); // 8000
    const QByteArray common = big(1, 2) + big(static_cast<quint64>(frames), 4) + big(16, 2) + rate;
    return aiffChunk("FORM",
                     "AIFF" + aiffChunk("COMM", common) + aiffChunk("SSND", QByteArray(8 + 2 * frames, '\0')) + extra);
}

QByteArray info(const QByteArray& chunks)
{
    return riffChunk("LIST", "INFO" + chunks);
}

QByteArray flacBlock(int type, const QByteArray& body, bool isLast)
{
    return static_cast<char>(type | (isLast ? 0x80 : 0)) + big(static_cast<quint64>(body.size()), 3) + body;
}

QByteArray flacPicture(const QByteArray& picture)
{
    return big(3, 4) + big(9, 4) + "image/png" + big(0, 4) + QByteArray(16, '\0') +
           big(static_cast<quint64>(picture.size()), 4) + picture;
}

QByteArray comments(const QByteArray& vendor, const QByteArrayList& list)
{
    QByteArray body = little(quint64(vendor.size()), 4) + vendor + little(quint64(list.size()), 4);
    for (const QByteArray& comment : list)
        body += little(quint64(comment.size()), 4) + comment;
    return body;
}

QByteArray flac(quint64 samples, const QByteArrayList& list, const QByteArray& furtherBlock)
{
    const QByteArray streamInfo =
        QByteArray(10, '\0') + big(44100ull << 44 | 1ull << 41 | 15ull << 36 | samples, 8) + QByteArray(16, '\0');
    return "fLaC" + flacBlock(0, streamInfo) + furtherBlock + flacBlock(4, comments("test", list), true) +
           QByteArray(1000, 'x');
}

QByteArray atom(const char* type, const QByteArray& body)
{
    return big(static_cast<quint64>(body.size()) + 8, 4) + type + body;
}

QByteArray itemAtom(const char* type, quint32 dataType, const QByteArray& value)
{
    return atom(type, atom("data", big(dataType, 4) + big(0, 4) + value));
}

QByteArray metaAtom(const QByteArray& items, const QByteArray& behind)
{
    const QByteArray handler = big(0, 8) + "mdirappl" + QByteArray(9, '\0');
    return atom("meta", big(0, 4) + atom("hdlr", handler) + atom("ilst", items) + behind);
}

QByteArray freeformAtom(const char* mean, const char* name, const QByteArray& value)
{
    return atom("----", atom("mean", big(0, 4) + mean) + atom("name", big(0, 4) + name) +
                            atom("data", big(1, 4) + big(0, 4) + value));
}

QByteArray m4a(const QByteArray& items, const QByteArray& media)
{
    const QByteArray header = QByteArray(12, '\0') + big(1000, 4) + big(2000, 4); // flags and dates, scale, duration
    const QByteArray alac = atom("alac", big(0, 4) + big(4096, 4) + big(0, 1) + big(24, 1) + QByteArray(18, '\0'));
    const QByteArray entry = atom("alac", QByteArray(16, '\0') + big(2, 2) + big(16, 2) + QByteArray(8, '\0') + alac);
    const QByteArray table = atom("stbl", atom("stsd", big(0, 4) + big(1, 4) + entry));
    const QByteArray track =
        atom("trak",
             atom("mdia", atom("mdhd", header) + atom("hdlr", big(0, 8) + "soun" + big(0, 8)) + atom("minf", table)));
    return atom("ftyp", "M4A ") + atom("moov", track + atom("udta", metaAtom(items))) + atom("mdat", media);
}

} // namespace TagBytes
