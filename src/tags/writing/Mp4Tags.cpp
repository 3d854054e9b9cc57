#include "tags/writing/Mp4Tags.h"

#include "core/model/AudioTags.h"
#include "tags/writing/ByteOrder.h"
#include "tags/writing/FieldNames.h"
#include "tags/writing/Mp4Atoms.h"

#include <algorithm>

namespace Mp4Tags {

using ByteOrder::big32;
using Mp4Atoms::Atom;
using Mp4Atoms::atom;
using Mp4Atoms::Children;

namespace {

struct Field {
    const char* type;
    QString AudioTags::*value;
};
constexpr Field kFields[] = {
    {"\251nam", &AudioTags::title}, {"\251ART", &AudioTags::artist},  {"\251alb", &AudioTags::album},
    {"\251gen", &AudioTags::genre}, {"\251cmt", &AudioTags::comment},
};

struct CleanedItem {
    CleanerField field;
    const char* type;
};
/// Items by field; free ones go by the names of Vorbis comments.
constexpr CleanedItem kCleanedItems[] = {
    {CleanerField::Artwork, "covr"},     {CleanerField::Comment, "\251cmt"}, {CleanerField::Comment, "desc"},
    {CleanerField::Genre, "\251gen"},    {CleanerField::Genre, "gnre"},      {CleanerField::Album, "\251alb"},
    {CleanerField::AlbumArtist, "aART"}, {CleanerField::Year, "\251day"},    {CleanerField::Track, "trkn"},
    {CleanerField::Tempo, "tmpo"},       {CleanerField::Title, "\251nam"},
};

QByteArray nameOf(const Atom& item)
{
    constexpr qsizetype kVersionAndFlags = 4;
    const auto parts = Mp4Atoms::children(item.body);
    const Atom* name = parts ? parts->find("name") : nullptr;
    return name && name->body.size() > kVersionAndFlags ? name->body.sliced(kVersionAndFlags).toByteArray()
                                                        : QByteArray();
}

bool isChosen(const Atom& item, CleanerFields fields)
{
    if (item.type == QByteArrayView("----"))
        return FieldNames::isCommentKey(QString::fromUtf8(nameOf(item)), fields);
    return std::ranges::any_of(kCleanedItems, [&](const CleanedItem& cleaned) {
        return fields.testFlag(cleaned.field) && item.type == QByteArrayView(cleaned.type);
    });
}

QByteArray texts(const TagEdits& edits)
{
    return textItem("\251nam", edits.newTitle().value_or(QString())) +
           textItem("\251alb", edits.newAlbum().value_or(QString()));
}

/// Where cleaning stands: the texts are added once, to the first list.
struct Cleaning {
    TagEdits edits;
    bool isTextPending = true;

    QByteArray takeTexts() { return std::exchange(isTextPending, false) ? texts(edits) : QByteArray(); }
};

std::optional<QByteArray> filteredList(QByteArrayView list, Cleaning& cleaning)
{
    const auto items = Mp4Atoms::children(list);
    if (!items)
        return std::nullopt;
    QByteArray body;
    for (const Atom& item : items->atoms) {
        if (!isChosen(item, cleaning.edits.fields))
            body += item.whole;
    }
    return body + cleaning.takeTexts() + items->tail.toByteArray();
}

/// One level: the child of this type is made anew by \p change, all others stay.
template <typename Change>
std::optional<QByteArray> withChanged(QByteArrayView body, QByteArrayView type, const Change& change)
{
    const auto children = Mp4Atoms::children(body);
    if (!children)
        return std::nullopt;
    QByteArray result;
    for (const Atom& child : children->atoms) {
        if (child.type != type) {
            result += child.whole;
            continue;
        }
        const std::optional<QByteArray> changed = change(child.body);
        if (!changed)
            return std::nullopt;
        result += *changed == child.body ? child.whole.toByteArray() : atom(type, *changed);
    }
    return result + children->tail.toByteArray();
}

std::optional<QByteArray> filteredMeta(QByteArrayView meta, Cleaning& cleaning)
{
    const QByteArrayView header = meta.first(metaHeaderSize(meta));
    const auto list = [&](QByteArrayView body) { return filteredList(body, cleaning); };
    const auto children = withChanged(meta.sliced(header.size()), "ilst", list);
    return children ? std::optional(header.toByteArray() + *children) : std::nullopt;
}

/// User data without any tag, and with a new list of items.
std::optional<QByteArray> replacedUserData(QByteArrayView userData, const QByteArray& items)
{
    const auto children = Mp4Atoms::children(userData);
    if (!children)
        return std::nullopt;
    QByteArray body;
    for (const Atom& child : children->atoms) {
        if (child.type != QByteArrayView("meta") && !isOldText(child.type))
            body += child.whole;
    }
    return body + metaAtom(items) + children->tail.toByteArray();
}

/// The movie's body with a list in its first user data, or in new ones: there is no list yet.
std::optional<QByteArray> withFirstList(QByteArrayView movie, const QByteArray& list)
{
    const auto children = Mp4Atoms::children(movie);
    if (!children)
        return std::nullopt;
    QByteArray body;
    QByteArray pending = list;
    for (const Atom& child : children->atoms) {
        const bool isPlace = child.type == QByteArrayView("udta") && !pending.isEmpty();
        body +=
            isPlace ? atom("udta", std::exchange(pending, {}) + child.body.toByteArray()) : child.whole.toByteArray();
    }
    if (!pending.isEmpty())
        body += atom("udta", pending);
    return body + children->tail.toByteArray();
}

} // namespace

QByteArray items(const AudioTags& tags)
{
    QByteArray list;
    for (const Field& field : kFields)
        list += textItem(field.type, tags.*field.value);
    return list;
}

std::optional<QByteArray> replaced(QByteArrayView movie, const QByteArray& items)
{
    const auto children = Mp4Atoms::children(movie);
    if (!children)
        return std::nullopt;
    QByteArray body;
    QByteArray pending = items; // for the first user data
    for (const Atom& child : children->atoms) {
        if (child.type == QByteArrayView("udta")) {
            const auto userData = replacedUserData(child.body, std::exchange(pending, {}));
            if (!userData)
                return std::nullopt;
            if (!userData->isEmpty())
                body += atom("udta", *userData);
        } else if (child.type != QByteArrayView("meta")) {
            body += child.whole;
        }
    }
    if (!pending.isEmpty())
        body += atom("udta", metaAtom(pending));
    return body + children->tail.toByteArray();
}

bool hasNumberedKeys(QByteArrayView movie)
{
    const auto children = Mp4Atoms::children(movie);
    const Atom* const userData = children ? children->find("udta") : nullptr;
    const auto tags = userData ? Mp4Atoms::children(userData->body) : std::nullopt;
    const auto hasKeys = [](const std::optional<Children>& parent) {
        const Atom* const meta = parent ? parent->find("meta") : nullptr;
        const auto parts = meta ? Mp4Atoms::children(meta->body.sliced(metaHeaderSize(meta->body))) : std::nullopt;
        return parts && parts->find("keys");
    };
    return hasKeys(children) || hasKeys(tags);
}

std::optional<QByteArray> filtered(QByteArrayView movie, const TagEdits& edits)
{
    Cleaning cleaning{edits};
    const auto meta = [&](QByteArrayView body) { return filteredMeta(body, cleaning); };
    const auto userData = [&](QByteArrayView body) { return withChanged(body, "meta", meta); };
    const auto body = withChanged(movie, "udta", userData);
    if (!body || !cleaning.isTextPending || !edits.addsText())
        return body;
    return withFirstList(*body, metaAtom(texts(edits)));
}

QByteArray textItem(QByteArrayView type, const QString& text)
{
    constexpr quint32 kUtf8 = 1;
    return text.isEmpty() ? QByteArray()
                          : atom(type, atom("data", big32(kUtf8) + big32(0) /* locale */ + text.toUtf8()));
}

// Version, flags and a handler in front of the list. Source: QuickTime File Format, "Metadata Handler Atom".
QByteArray metaAtom(const QByteArray& items)
{
    const QByteArray handler = big32(0) + big32(0) + "mdirappl" + QByteArray(9, '\0');
    return items.isEmpty() ? QByteArray() : atom("meta", big32(0) + atom("hdlr", handler) + atom("ilst", items));
}

qsizetype metaHeaderSize(QByteArrayView meta)
{
    const bool isBare = meta.size() >= 8 && meta.sliced(4, 4) == QByteArrayView("hdlr");
    return std::min<qsizetype>(isBare ? 0 : 4, meta.size());
}

// Source: 3GPP TS 26.244, section 8.
bool isOldText(QByteArrayView type)
{
    static constexpr const char* kTexts[] = {"titl", "auth", "perf", "gnre", "albm", "yrrc", "dscp", "kywd"};
    return type.startsWith('\251') ||
           std::ranges::any_of(kTexts, [&](const char* text) { return type == QByteArrayView(text); });
}

} // namespace Mp4Tags
