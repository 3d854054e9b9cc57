#include "tags/vault/MovieForm.h"

#include "tags/bytes/ByteReader.h"
#include "tags/vault/FormDigest.h"
#include "tags/writing/Mp4Atoms.h"
#include "tags/writing/Mp4Tags.h"

#include <algorithm>

namespace MovieForm {

namespace {

/// Deeper than the tables of chunk offsets: moov, trak, mdia, minf, stbl.
constexpr int kDeepestLevel = 4;

bool isOneOf(QByteArrayView type, std::initializer_list<const char*> types)
{
    return std::ranges::any_of(types, [&](const char* other) { return type == QByteArrayView(other); });
}

/// An offset as the index of a stretch and the place in it; of one outside the sound only that it is there.
void addOffset(FormDigest& digest, qint64 offset, const std::vector<FileAnatomy::Stretch>& sound)
{
    const auto behind = std::ranges::upper_bound(sound, offset, {}, &FileAnatomy::Stretch::offset);
    const bool isInside = behind != sound.begin() && offset < std::prev(behind)->end();
    digest.add(isInside ? qint64(behind - sound.begin()) : 0);
    digest.add(isInside ? offset - std::prev(behind)->offset : 0);
}

/// \param table "stco" or "co64": version and flags, count, offsets.
void addOffsets(FormDigest& digest, const Mp4Atoms::Atom& table, const std::vector<FileAnatomy::Stretch>& sound)
{
    const qsizetype entrySize = table.type == QByteArrayView("co64") ? 8 : 4;
    ByteReader reader(table.body);
    digest.add(reader.bytes(4));
    const qint64 count = std::min<qint64>(reader.u32be(), reader.remaining() / entrySize);
    digest.add(count);
    for (qint64 index = 0; index < count; ++index) {
        const quint64 offset = entrySize == 8 ? reader.u64be() : reader.u32be();
        addOffset(digest, static_cast<qint64>(offset & 0x7FFFFFFFFFFFFFFF), sound);
    }
    digest.add(reader.rest());
}

class Walk {
public:
    Walk(FormDigest& digest, const std::vector<FileAnatomy::Stretch>& sound)
        : m_digest(digest)
        , m_sound(sound)
    {
    }

    void addChildren(const Mp4Atoms::Children& children, int level)
    {
        for (const Mp4Atoms::Atom& atom : children.atoms)
            addAtom(atom, level);
        m_digest.add(-1); // the list ends
        m_digest.add(children.tail);
    }

private:
    void addAtom(const Mp4Atoms::Atom& atom, int level)
    {
        if (isOneOf(atom.type, {"free", "skip"}))
            return;
        const bool isParent = isOneOf(atom.type, {"trak", "mdia", "minf", "stbl", "udta"}) && level < kDeepestLevel;
        const auto children = isParent ? Mp4Atoms::children(atom.body) : std::nullopt;
        const bool isEmptyUserData = children && atom.type == QByteArrayView("udta") && children->tail.isEmpty() &&
                                     std::ranges::all_of(children->atoms, [](const auto& child) {
                                         return isOneOf(child.type, {"free", "skip"});
                                     });
        if (isEmptyUserData) // nothing but the tags' room: saving takes it away or makes it
            return;
        m_digest.add(atom.type);
        if (children)
            addChildren(*children, level + 1);
        else if (isOneOf(atom.type, {"stco", "co64"}))
            addOffsets(m_digest, atom, m_sound);
        else
            m_digest.add(atom.body);
    }

    FormDigest& m_digest;
    const std::vector<FileAnatomy::Stretch>& m_sound;
};

} // namespace

bool add(FormDigest& digest, QByteArrayView movie, const std::vector<FileAnatomy::Stretch>& sound)
{
    const std::optional<QByteArray> untagged = Mp4Tags::replaced(movie, {});
    const auto children = untagged ? Mp4Atoms::children(*untagged) : std::nullopt;
    if (!children)
        return false;
    Walk(digest, sound).addChildren(*children, 0);
    return true;
}

} // namespace MovieForm
