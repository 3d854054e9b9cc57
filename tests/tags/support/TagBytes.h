#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

/// Tags and containers byte by byte, so that tests say what stands in a file.
namespace TagBytes {

QByteArray big(quint64 value, int byteCount);
QByteArray little(quint64 value, int byteCount);
QByteArray syncsafe(quint32 value);
/// Bytes in which no block is like another.
QByteArray noise(qsizetype size);
/// UTF-16 with its mark, little-endian.
QByteArray utf16(const QString& text);

/// A frame of ID3v2.3, or of 2.4 with its other kind of size.
QByteArray frame(const char* id, const QByteArray& body, int version = 3, quint16 flags = 0);
/// A text frame in Latin-1 bytes.
QByteArray textFrame(const char* id, const QByteArray& text, int version = 3);
/// A comment or user-defined text frame in Latin-1 bytes.
QByteArray describedFrame(const char* id, const QByteArray& description, const QByteArray& text);
/// A frame of ID3v2.2.
QByteArray shortFrame(const char* id, const QByteArray& body);
QByteArray pictureFrame(const QByteArray& picture);
QByteArray id3v2(const QByteArray& frames, int version = 3, quint8 flags = 0);

struct Id3v1Fields {
    QByteArray title = {};
    QByteArray artist = {};
    QByteArray album = {};
    QByteArray comment = {};
    quint8 genre = 255;
};
QByteArray id3v1(const Id3v1Fields& fields);
/// An APEv2 tag of text items with header and footer. \param items "Key=value".
QByteArray ape(const QByteArrayList& items);
/// The tag with another size in its footer, or another number of items.
QByteArray withSize(QByteArray ape, quint32 size);
QByteArray withCount(QByteArray ape, quint32 count);

/// Silence: frames of 128 kbit/s, 44.1 kHz, 417 bytes and 1152 samples each.
QByteArray mpegFrames(int count);

QByteArray riffChunk(const char* id, const QByteArray& body);
QByteArray aiffChunk(const char* id, const QByteArray& body);
/// A file of 16-bit mono PCM at 8 kHz. \param extra chunks behind the data.
QByteArray wave(int frames, const QByteArray& extra = {});
QByteArray aiff(int frames, const QByteArray& extra = {});
/// The LIST chunk of INFO. \param chunks made by riffChunk.
QByteArray info(const QByteArray& chunks);

/// The body of a comment block.
QByteArray comments(const QByteArray& vendor, const QByteArrayList& list);
/// A FLAC file of metadata blocks without sound: 44.1 kHz, 16 bits.
QByteArray flac(quint64 samples, const QByteArrayList& list, const QByteArray& furtherBlock = {});
QByteArray flacBlock(int type, const QByteArray& body, bool isLast = false);
QByteArray flacPicture(const QByteArray& picture);

QByteArray atom(const char* type, const QByteArray& body);
/// A field of an M4A tag. \param type 1 for UTF-8.
QByteArray itemAtom(const char* type, quint32 dataType, const QByteArray& value);
/// The tag with the iTunes list.
QByteArray metaAtom(const QByteArray& items, const QByteArray& behind = {});
QByteArray freeformAtom(const char* mean, const char* name, const QByteArray& value);
/// A file with one ALAC track of two seconds. \param items made by itemAtom and freeformAtom.
QByteArray m4a(const QByteArray& items, const QByteArray& media = QByteArray(1000, 'x'));

} // namespace TagBytes
