#include "ui/inspector/InspectorModel.h"

#include <algorithm>
#include <vector>

namespace {

/// Judged by the extension, of which a track's format is the upper-case form.
bool isOneOf(const QString& format, std::initializer_list<QLatin1StringView> formats)
{
    return std::find(formats.begin(), formats.end(), format) != formats.end();
}

using Rows = std::vector<int>;
constexpr qsizetype kManyIDs = 1000; // from about here on a pass over the list beats looking up one by one

/// The places of those that are there, in the order of the list.
Rows rowsOf(const TrackList& tracks, const QSet<TrackID>& ids)
{
    Rows rows;
    rows.reserve(static_cast<size_t>(ids.size()));
    if (ids.size() >= kManyIDs) {
        for (int row = 0; row < tracks.size(); ++row) {
            if (ids.contains(tracks.at(row).id()))
                rows.push_back(row);
        }
        return rows;
    }
    for (const TrackID& id : ids) {
        if (const std::optional<int> row = tracks.indexOf(id))
            rows.push_back(*row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

/// A set without gaps stays the same shared value: selections may hold everything.
QSet<TrackID> present(const TrackList& tracks, const QSet<TrackID>& ids, const Rows& rows)
{
    if (static_cast<qsizetype>(rows.size()) == ids.size())
        return ids;
    QSet<TrackID> result;
    for (int row : rows)
        result.insert(tracks.at(row).id());
    return result;
}

} // namespace

bool InspectorModel::takesPicture(const Track& track)
{
    using Text = QLatin1StringView;
    return isOneOf(track.format(), {Text("MP3"), Text("FLAC"), Text("WAV"), Text("AIFF"), Text("AIF")});
}

bool InspectorModel::isWritable(const Track& track)
{
    return takesPicture(track) || track.format() == QLatin1StringView("M4A");
}

void InspectorModel::follow(const TrackList& tracks, const QSet<TrackID>& selection)
{
    const Rows selectedRows = rowsOf(tracks, selection);
    const Rows editedRows = m_edits.isEmpty() ? Rows() : rowsOf(tracks, m_ids);
    const QSet<TrackID> selected = present(tracks, selection, selectedRows);
    const QSet<TrackID> edited = m_edits.isEmpty() ? QSet<TrackID>() : present(tracks, m_ids, editedRows);
    if (edited.isEmpty())
        m_edits.clear();
    m_isPinned = !edited.isEmpty() && edited != selected;
    m_ids = edited.isEmpty() ? selected : edited;
    gather(tracks, edited.isEmpty() ? selectedRows : editedRows);
    const QHash<TagField, QString> edits = std::exchange(m_edits, {});
    for (auto each = edits.begin(); each != edits.end(); ++each)
        edit(each.key(), each.value());
    if (m_edits.isEmpty() && m_isPinned)
        follow(tracks, selection); // the files say by now what was typed
}

void InspectorModel::gather(const TrackList& tracks, const std::vector<int>& rows)
{
    m_values = {};
    m_mixed = {};
    m_covers.clear();
    m_totalLength = 0;
    m_single.reset();
    m_readOnly.clear();
    m_unwritten.clear();
    m_withoutPicture.clear();
    for (size_t i = 0; i < rows.size(); ++i)
        add(tracks.at(rows[i]), i == 0);
    if (rows.size() == 1)
        m_single = tracks.at(rows.front());
    else
        m_inventory.reset();
}

void InspectorModel::add(const Track& track, bool isFirst)
{
    const AudioTags& tags = track.tags();
    if (isFirst)
        m_values = tags;
    for (TagField field : TagFieldSet::list()) {
        const auto member = TagFieldSet::member(field);
        if (m_mixed.testFlag(field) || tags.*member == m_values.*member)
            continue;
        m_mixed |= field;
        (m_values.*member).clear();
    }
    m_totalLength += track.duration();
    if (track.editedFields())
        m_unwritten.insert(track.id());
    if (!takesPicture(track)) {
        m_withoutPicture.insert(track.id());
        if (!isWritable(track))
            m_readOnly.insert(track.id());
    }
    if (m_covers.size() == kCovers || track.artworkData().isNull())
        return;
    const bool isNew = std::none_of(m_covers.cbegin(), m_covers.cend(),
                                    [&](const Track& shown) { return shown.artworkData() == track.artworkData(); });
    if (isNew)
        m_covers.append(track);
}

void InspectorModel::edit(TagField field, const QString& text)
{
    if (!isMixed(field) && text == m_values.*TagFieldSet::member(field))
        m_edits.remove(field);
    else
        m_edits.insert(field, text);
}

QString InspectorModel::text(TagField field) const
{
    const auto edit = m_edits.constFind(field);
    return edit != m_edits.constEnd() ? *edit : m_values.*TagFieldSet::member(field);
}

QString InspectorModel::inFile(TagField field) const
{
    const bool isOpen = m_single && m_inventory && TagFieldSet::kNeverRead.testFlag(field);
    return isOpen && text(field).isEmpty() ? m_inventory->unread.*TagFieldSet::member(field) : QString();
}

bool InspectorModel::isUnwritable(TagField field) const
{
    return m_single && m_inventory && m_inventory->unwritable.testFlag(field);
}

TagFields InspectorModel::touched() const
{
    TagFields fields;
    for (auto each = m_edits.keyBegin(); each != m_edits.keyEnd(); ++each)
        fields |= *each;
    return fields;
}

AudioTags InspectorModel::edited() const
{
    AudioTags tags = m_values;
    for (auto each = m_edits.begin(); each != m_edits.end(); ++each)
        tags.*TagFieldSet::member(each.key()) = each.value();
    return tags;
}
