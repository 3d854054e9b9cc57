#include "FuzzWriters.h"

namespace {

using Planner = std::function<RewritePlan(const RewriteSource&)>;

/// The new file, whose sound has to be the old one's.
QByteArray applied(const Planner& planner, const QByteArray& bytes)
{
    return withSource(bytes, [&](const RewriteSource& source) {
        const RewritePlan plan = planner(source);
        const QByteArray result = plan.toBytes(source);
        require(result.size() == plan.size());
        for (const SoundSpan& span : plan.sound()) {
            require(span.newOffset >= 0 && span.newOffset + span.length <= result.size());
            require(bytes.mid(span.oldOffset, span.length) == result.mid(span.newOffset, span.length));
        }
        return result;
    });
}

/// What has been written once is not refused the second time, and changes no more.
void check(const Planner& planner, const QByteArray& bytes)
{
    QByteArray once;
    if (isTaken([&] { once = applied(planner, bytes); }))
        require(applied(planner, once) == once);
}

AudioTags someTags()
{
    AudioTags tags;
    tags.title = QStringLiteral("Title");
    tags.comment = QStringLiteral("odd");
    tags.albumArtist = QStringLiteral("Various");
    return tags;
}

TagInventory inventoryOf(const Writer& writer, const QByteArray& bytes)
{
    TagInventory inventory;
    isTaken([&] { withSource(bytes, [&](const RewriteSource& source) { writer.takeInventory(source, inventory); }); });
    return inventory;
}

/// A save that keeps drops nothing that is no chosen field.
void checkKeeping(const Writer& writer, TagFields fields, const QByteArray& bytes)
{
    const KeepEdits edits{someTags(), fields};
    const Planner planner = [&](const RewriteSource& source) { return writer.keep(source, edits); };
    check(planner, bytes);
    check([&](const RewriteSource& source) { return writer.keep(source, {{}, fields}); }, bytes);
    check([&](const RewriteSource& source) { return writer.keep(source, {{}, fields, "picture"}); }, bytes);
    QByteArray kept;
    const auto keepAll = [&](const RewriteSource& source) { return writer.keep(source, {{}, TagFields()}); };
    if (isTaken([&] { kept = applied(keepAll, bytes); }))
        require(inventoryOf(writer, kept) == inventoryOf(writer, bytes));
}

} // namespace

/// The input is the file; its last bytes pick the fields that are cleaned.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto fields = CleanerFields::fromInt((data[size - 1] | data[size - 2] << 8) & 1023);
    const Writer writer = writerOf(bytes);
    check([&](const RewriteSource& source) { return writer.write(source, someTags()); }, bytes);
    check([&](const RewriteSource& source) { return writer.write(source, {}); }, bytes);
    const TagEdits edits{fields, QStringLiteral("New"), QStringLiteral("Album")};
    check([&](const RewriteSource& source) { return writer.clean(source, edits); }, bytes);
    check([&](const RewriteSource& source) { return writer.clean(source, edits.withoutTexts()); }, bytes);
    const auto kept = TagFields::fromInt(fields.toInt());
    checkKeeping(writer, kept, bytes);
    const Writer mp3{writer.write, writer.clean, &KeepingPlanners::planMp3, &Inventories::takeMp3};
    checkKeeping(mp3, kept, bytes);
    return 0;
}
