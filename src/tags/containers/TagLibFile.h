#pragma once

#include "tags/bytes/ByteSource.h"

#include <taglib/tfile.h>
#include <taglib/tiostream.h>

/// A range of bytes as the tag library wants to see it: read-only, and bounded like the range itself.
class TagLibStream final : public TagLib::IOStream {
public:
    /// \param range its source outlives the stream
    explicit TagLibStream(const ByteRange& range)
        : m_range(range)
    {
    }

    TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position origin) override;
    long tell() const override { return m_position; }
    long length() override { return m_range.size(); }
    void truncate(long) override {}

private:
    const ByteRange m_range;
    long m_position = 0;
};

/// A file of the tag library without any tags: enough for its readers of frame headers. Its own readers of whole files
/// are not used, because what they allocate and how deep they go is decided by the file.
class TagLibFile final : public TagLib::File {
public:
    /// \param stream outlives the file
    explicit TagLibFile(TagLibStream& stream)
        : TagLib::File(&stream)
    {
    }

    TagLib::Tag* tag() const override { return nullptr; }
    TagLib::AudioProperties* audioProperties() const override { return nullptr; }
    bool save() override { return false; }
};
