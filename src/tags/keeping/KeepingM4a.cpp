#include "tags/keeping/KeepingPlanners.h"
#include "tags/keeping/Mp4NewItems.h"
#include "tags/keeping/TagEntry.h"
#include "tags/writing/M4aWriter.h"
#include "tags/writing/Mp4Atoms.h"
#include "tags/writing/Mp4Tags.h"
#include "tags/writing/WriteErrors.h"

#include <utility>

namespace KeepingPlanners {

namespace {

using Mp4Atoms::atom;

/// One file's change. The reader looks into the first user data of the movie, there into the first "meta" and there
/// into the first list; so the new items go there, and where one of the three is missing it is made.
class Change {
public:
    explicit Change(const KeepEdits& edits)
        : m_fields(edits.fields)
        , m_items(Mp4NewItems::items(edits.newTags()))
    {
    }

    std::optional<QByteArray> movie(QByteArrayView body)
    {
        const auto changed = rebuilt(body, "udta", [this](QByteArrayView old) { return userData(old); });
        const QByteArray items = changed ? takeItems() : QByteArray();
        return items.isEmpty() ? changed : insertedBeforeTail(*changed, atom("udta", Mp4Tags::metaAtom(items)));
    }

private:
    std::optional<QByteArray> userData(QByteArrayView body)
    {
        auto changed = rebuilt(body, "meta", [this](QByteArrayView old) { return meta(old); });
        const QByteArray items = changed ? takeItems() : QByteArray();
        if (!items.isEmpty())
            changed = insertedBeforeTail(*changed, Mp4Tags::metaAtom(items));
        return changed;
    }

    std::optional<QByteArray> meta(QByteArrayView body)
    {
        const QByteArrayView header = body.first(Mp4Tags::metaHeaderSize(body));
        const QByteArrayView rest = body.sliced(header.size());
        auto changed = rebuilt(rest, "ilst", [this](QByteArrayView old) { return list(old); });
        const QByteArray items = changed ? takeItems() : QByteArray();
        if (!items.isEmpty())
            changed = insertedBeforeTail(*changed, atom("ilst", items));
        return changed ? std::optional(header.toByteArray() + *changed) : std::nullopt;
    }

    std::optional<QByteArray> list(QByteArrayView body)
    {
        const auto items = Mp4Atoms::children(body);
        if (!items)
            return std::nullopt;
        QByteArray kept;
        for (const Mp4Atoms::Atom& item : items->atoms) {
            if (!TagEntries::ofMp4Item(item.whole).isField(m_fields))
                kept += item.whole;
        }
        return kept + takeItems() + items->tail.toByteArray();
    }

    /// The atom's body with each child of this type made anew and old texts of the chosen fields gone.
    template <typename MakeAnew>
    std::optional<QByteArray> rebuilt(QByteArrayView body, QByteArrayView type, const MakeAnew& makeAnew)
    {
        const auto children = Mp4Atoms::children(body);
        if (!children)
            return std::nullopt;
        QByteArray result;
        for (const Mp4Atoms::Atom& child : children->atoms) {
            if (child.type != type) {
                const bool isOld = type == "meta" && TagEntries::ofMp4UserText(child.type).isField(m_fields);
                result += isOld ? QByteArray() : child.whole.toByteArray();
                continue;
            }
            const std::optional<QByteArray> anew = makeAnew(child.body);
            if (!anew)
                return std::nullopt;
            result += *anew == child.body ? child.whole.toByteArray() : atom(type, *anew);
        }
        return result + children->tail.toByteArray();
    }

    static std::optional<QByteArray> insertedBeforeTail(const QByteArray& body, const QByteArray& added)
    {
        const auto children = Mp4Atoms::children(body);
        return children ? std::optional(body.chopped(children->tail.size()) + added + children->tail.toByteArray())
                        : std::nullopt;
    }

    QByteArray takeItems() { return std::exchange(m_items, {}); }

    const TagFields m_fields;
    QByteArray m_items;
};

} // namespace

RewritePlan planM4a(const RewriteSource& source, const KeepEdits& edits)
{
    return M4aWriter::planWith(source, [&](QByteArrayView movie) {
        if (Mp4Tags::hasNumberedKeys(movie))
            throw WriteError(WriteError::Case::rewriteFailed, QStringLiteral("m4a"));
        return Change(edits).movie(movie);
    });
}

} // namespace KeepingPlanners
