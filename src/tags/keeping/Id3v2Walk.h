#pragma once

#include "tags/formats/Id3v2Frames.h"

#include <QString>

#include <functional>

/// Goes through the frames of one ID3v2 tag as the reader does, but strictly: what the reader passes over is an error.
class Id3v2Walk {
public:
    /// \param file begins with the tag and may go on behind it; must outlive the walk.
    /// \param path for errors: WriteError (rewriteFailed, "ID3") for another version than 2.2 to 2.4 and for flags
    /// that have no meaning there, FileError (fileReadCorruptFile) for a broken size.
    Id3v2Walk(const ByteRange& file, const QString& path);

    /// 2, 3 or 4: the second number of ID3v2.x.
    int version() const { return m_version; }
    /// Of the whole tag with its header and footer.
    qint64 size() const { return m_size; }

    /// A frame in both forms, valid during the visit alone.
    struct Frame {
        Id3v2::Frame parts;
        QByteArray header;  ///< as it stands, with the id
        QByteArray content; ///< unpacked; empty where it cannot be read
    };
    /// Frames in order. What is left behind them must be zeros, else FileError (fileReadCorruptFile).
    void forEach(const std::function<void(const Frame&)>& visit) const;

    /// The frame as it goes into a tag of the same version without flags: what its size and flags say holds there.
    QByteArray kept(const Frame& frame) const;

private:
    [[noreturn]] void failCorrupt() const;
    void readHeader(const ByteRange& file);
    ByteRange framesIn(const ByteRange& body) const;
    void forEachIn(const ByteRange& frames, const std::function<void(const Frame&)>& visit) const;
    bool has(quint8 flag) const { return (m_flags & flag) != 0; }

    const QString m_path;
    int m_version = 0;
    quint8 m_flags = 0;
    qint64 m_size = 0;
    ByteRange m_body; ///< what the header's size counts
};
