#include "tags/keeping/TagEntry.h"

#include "tags/bytes/ByteReader.h"
#include "tags/fields/ItemCollector.h"
#include "tags/fields/MusicalKeyItem.h"
#include "tags/formats/ApeTag.h"
#include "tags/formats/Id3v2Fields.h"
#include "tags/formats/Mp4Items.h"
#include "tags/formats/RiffInfo.h"
#include "tags/formats/VorbisComment.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/FieldNames.h"
#include "tags/writing/Mp4Atoms.h"

#include <algorithm>

namespace TagEntries {

namespace {

using Kind = TagEntry::Kind;

TagEntry entryOf(TagField field)
{
    TagEntry entry;
    entry.kind = Kind::Field;
    entry.field = field;
    return entry;
}

TagEntry entryOf(Kind kind)
{
    TagEntry entry;
    entry.kind = kind;
    return entry;
}

/// The names that cleaning knows a field by; the artist is not cleaned.
CleanerFields cleanerFields(TagField field)
{
    switch (field) {
    case TagField::Title:
        return CleanerField::Title;
    case TagField::Artist:
        return {};
    case TagField::Album:
        return CleanerField::Album;
    case TagField::AlbumArtist:
        return CleanerField::AlbumArtist;
    case TagField::Genre:
        return CleanerField::Genre;
    case TagField::Year:
        return CleanerField::Year;
    case TagField::Track:
        return CleanerField::Track;
    case TagField::Comment:
        return CleanerField::Comment;
    case TagField::Tempo:
        return CleanerField::Tempo;
    case TagField::MusicalKey:
        return CleanerField::Key;
    }
    Q_UNREACHABLE();
}

struct NamedField {
    const char* name;
    TagField field;
};

template <std::size_t size>
std::optional<TagField> find(const NamedField (&names)[size], QByteArrayView name)
{
    const auto found = std::ranges::find_if(names, [&](const NamedField& named) { return name == named.name; });
    return found == std::end(names) ? std::nullopt : std::optional(found->field);
}

template <std::size_t size>
bool isAmong(const char* const (&names)[size], QByteArrayView name)
{
    return std::ranges::any_of(names, [&](const char* one) { return name == QByteArrayView(one); });
}

/// What the reader takes the item for; a blank one counts by its name.
std::optional<TagEntry> entryOf(MetadataItem item)
{
    TagEntry entry;
    entry.kind = Kind::Field;
    entry.isRead = true;
    entry.text = item.stringValue.value_or(QString());
    static constexpr TagField kFields[] = {TagField::Title, TagField::Artist, TagField::Album, TagField::Genre,
                                           TagField::Comment};
    if (item.commonKey == CommonKey::Artwork) {
        entry.kind = Kind::Picture;
    } else if (item.commonKey) {
        entry.field = kFields[static_cast<int>(*item.commonKey)];
    } else {
        item.stringValue = QStringLiteral("any");
        if (!MusicalKeyItem::value(item))
            return std::nullopt;
        entry.field = TagField::MusicalKey;
    }
    return entry;
}

/// The entry by its name, if the reader takes it for nothing; with the text that it reads.
TagEntry readEntry(ItemCollector& items, TagEntry byName)
{
    const std::vector<MetadataItem> found = items.take(true);
    if (found.empty())
        return byName;
    if (const std::optional<TagEntry> read = entryOf(found.front()))
        return *read;
    byName.text = found.front().stringValue.value_or(QString());
    return byName;
}

TagEntry byCommentKey(const QString& key)
{
    if (key.compare(QLatin1StringView("ARTIST"), Qt::CaseInsensitive) == 0)
        return entryOf(TagField::Artist);
    for (const TagField field : TagFieldSet::list()) {
        if (FieldNames::isCommentKey(key, cleanerFields(field)))
            return entryOf(field);
    }
    if (FieldNames::isCommentKey(key, CleanerField::Artwork))
        return entryOf(Kind::Picture);
    return entryOf(key.compare(QLatin1StringView("ENCODER"), Qt::CaseInsensitive) == 0 ? Kind::EncoderMark
                                                                                       : Kind::Other);
}

TagEntry byFrameID(QByteArrayView id)
{
    static constexpr const char* kMarks[] = {"TSSE", "TENC", "TLEN", "TSS", "TEN", "TLE"};
    if (id == "TPE1" || id == "TP1")
        return entryOf(TagField::Artist);
    for (const TagField field : TagFieldSet::list()) {
        // Comments of programs have the same name: the reader tells which is one.
        if (field != TagField::Comment && FieldNames::isId3Frame(id, cleanerFields(field)))
            return entryOf(field);
    }
    if (FieldNames::isId3Frame(id, CleanerField::Artwork))
        return entryOf(Kind::Picture);
    return entryOf(isAmong(kMarks, id) ? Kind::EncoderMark : Kind::Other);
}

QByteArray sized(QByteArrayView bytes)
{
    return ByteOrder::little32(static_cast<quint32>(bytes.size())) + bytes.toByteArray();
}

TagEntry ofFreeItem(const Mp4Atoms::Children& parts)
{
    constexpr qsizetype kVersionAndFlags = 4;
    const Mp4Atoms::Atom* const atom = parts.find("name");
    const QByteArray name = atom ? atom->body.toByteArray().mid(kVersionAndFlags).toUpper() : QByteArray();
    // The two that are written so where the item of their own cannot hold the text.
    static constexpr NamedField kFree[] = {{"BPM", TagField::Tempo}, {"TRACKNUMBER", TagField::Track}};
    const std::optional<TagField> field = find(kFree, name);
    return field ? entryOf(*field) : TagEntry();
}

/// Number of the track and of all, as text. Source: the layout of "trkn", 16 bits each behind 16 unused ones.
QString trackText(QByteArrayView value)
{
    ByteReader reader(value);
    reader.skip(2);
    const int track = reader.u16be();
    const int count = reader.remaining() >= 2 ? reader.u16be() : 0;
    if (reader.hasFailed() || (track == 0 && count == 0))
        return {};
    return count > 0 ? QStringLiteral("%1/%2").arg(track).arg(count) : QString::number(track);
}

/// A whole number of one to eight bytes.
QString numberText(QByteArrayView value)
{
    quint64 number = 0;
    for (const char byte : value.first(std::min<qsizetype>(8, value.size())))
        number = number << 8 | static_cast<quint8>(byte);
    return number == 0 ? QString() : QString::number(number);
}

} // namespace

TagEntry ofId3Frame(const QByteArray& id, QByteArrayView content, int majorVersion)
{
    static constexpr const char* kBesideYear[] = {"TDAT", "TIME", "TDA", "TIM"};
    ItemCollector items;
    if (Id3v2::isWanted(id))
        Id3v2::addField(id, content, majorVersion, items);
    TagEntry entry = readEntry(items, byFrameID(id));
    if (isAmong(kBesideYear, id))
        entry.text.clear(); // day and hour
    return entry;
}

TagEntry ofApeItem(QByteArrayView item)
{
    constexpr qsizetype kKeyOffset = 8;
    const QByteArray bytes = item.toByteArray();
    const QByteArray key = bytes.mid(kKeyOffset, std::max<qsizetype>(0, bytes.indexOf('\0', kKeyOffset) - kKeyOffset));
    // A tag of this item alone.
    const QByteArray footer = "APETAGEX" + ByteOrder::little32(2000) +
                              ByteOrder::little32(static_cast<quint32>(bytes.size() + 32)) + ByteOrder::little32(1) +
                              QByteArray(12, '\0');
    MemoryBytes tag(bytes + footer);
    ByteRange range = ByteRange::whole(tag);
    ItemCollector items;
    ApeTag::read(range, items);
    return readEntry(items, byCommentKey(QString::fromUtf8(key)));
}

TagEntry ofComment(QByteArrayView comment)
{
    const qsizetype equals = comment.indexOf('=');
    if (equals <= 0)
        return {};
    const TagEntry byName = byCommentKey(QString::fromUtf8(comment.first(equals)));
    if (byName.kind == Kind::Picture)
        return byName;
    ItemCollector items;
    VorbisComment::read(sized({}) + ByteOrder::little32(1) + sized(comment), items);
    return readEntry(items, byName);
}

TagEntry ofInfoChunk(QByteArrayView chunk)
{
    static constexpr NamedField kNames[] = {
        {"ICRD", TagField::Year}, {"ITRK", TagField::Track}, {"IPRT", TagField::Track}, {"IBPM", TagField::Tempo}};
    const QByteArrayView id = chunk.first(4);
    const std::optional<TagField> field = find(kNames, id);
    MemoryBytes list(chunk.toByteArray());
    ItemCollector items;
    RiffInfo::read(ByteRange::whole(list), items);
    return readEntry(items, field ? entryOf(*field) : id == "ISFT" ? entryOf(Kind::EncoderMark) : TagEntry());
}

TagEntry ofAiffChunk(QByteArrayView id)
{
    static constexpr NamedField kNames[] = {
        {"NAME", TagField::Title}, {"AUTH", TagField::Artist}, {"ANNO", TagField::Comment}};
    const std::optional<TagField> field = find(kNames, id);
    if (!field)
        return {};
    TagEntry entry = entryOf(*field);
    entry.isRead = true;
    return entry;
}

TagEntry ofMp4Item(QByteArrayView item)
{
    static constexpr NamedField kNames[] = {{"aART", TagField::AlbumArtist},
                                            {"\251day", TagField::Year},
                                            {"trkn", TagField::Track},
                                            {"tmpo", TagField::Tempo}};
    constexpr qsizetype kValueHeader = 8; // type, locale
    const QByteArrayView type = item.sliced(4, 4);
    const auto atoms = Mp4Atoms::children(item);
    const auto parts = atoms && !atoms->atoms.empty() ? Mp4Atoms::children(atoms->atoms.front().body) : std::nullopt;
    TagEntry byName;
    if (const std::optional<TagField> field = find(kNames, type))
        byName = entryOf(*field);
    else if (type == "covr")
        byName.kind = Kind::Picture;
    else if (type == "\251too")
        byName.kind = Kind::EncoderMark;
    else if (type == "----" && parts)
        byName = ofFreeItem(*parts);
    MemoryBytes bytes(item.toByteArray());
    ItemCollector items;
    Mp4Items::read(ByteRange::whole(bytes), items);
    TagEntry entry = readEntry(items, byName);
    if (type == "trkn" || type == "tmpo") {
        const Mp4Atoms::Atom* const data = parts ? parts->find("data") : nullptr;
        const QByteArray value = data ? data->body.toByteArray().mid(kValueHeader) : QByteArray();
        entry.text = type == "trkn" ? trackText(value) : numberText(value);
    }
    return entry;
}

TagEntry ofMp4UserText(QByteArrayView type)
{
    // Source: QuickTime File Format, "User Data Atoms"; 3GPP TS 26.244, section 8.
    static constexpr NamedField kNames[] = {
        {"\251nam", TagField::Title}, {"\251ART", TagField::Artist}, {"\251alb", TagField::Album},
        {"\251gen", TagField::Genre}, {"\251day", TagField::Year},   {"\251cmt", TagField::Comment},
        {"titl", TagField::Title},    {"perf", TagField::Artist},    {"albm", TagField::Album},
        {"gnre", TagField::Genre},    {"yrrc", TagField::Year},
    };
    const std::optional<TagField> field = find(kNames, type);
    return field ? entryOf(*field) : TagEntry();
}

} // namespace TagEntries
