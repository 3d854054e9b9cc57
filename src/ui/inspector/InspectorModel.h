#pragma once

#include "core/library/workspace/TrackList.h"
#include "core/model/TagField.h"
#include "core/model/TagInventory.h"

#include <QHash>
#include <QSet>

#include <optional>
#include <vector>

/// What the inspector shows of some tracks and what was typed over it. Edits hold on to their tracks: while there are
/// any, another selection changes nothing. A value without widgets. Thread: main.
class InspectorModel {
public:
    static constexpr int kCovers = 3; ///< chosen: a stack of more looks the same

    /// Takes the tracks' present values over. While fields are touched the tracks stay those of the edits; edits whose
    /// last track has gone end.
    void follow(const TrackList& tracks, const QSet<TrackID>& selection);
    /// What a read of the single track's file found; nothing while that is not known.
    void setInventory(const std::optional<TagInventory>& inventory) { m_inventory = inventory; }
    /// As it was set last.
    const std::optional<TagInventory>& inventory() const { return m_inventory; }

    /// Types a text. The value that all tracks have already is no edit.
    void edit(TagField field, const QString& text);
    /// Takes back what was typed into a field.
    void revert(TagField field) { m_edits.remove(field); }
    /// Takes back all that was typed; the tracks follow the selection with the next follow().
    void revertAll() { m_edits.clear(); }

    /// What the field shows: the edit, else the common value, empty where the values differ.
    QString text(TagField field) const;
    /// Whether something else was typed than all tracks have.
    bool isTouched(TagField field) const { return m_edits.contains(field); }
    /// Whether the tracks differ in the field, whatever was typed.
    bool isMixed(TagField field) const { return m_mixed.testFlag(field); }
    /// The single file's own value of a field that the row leaves empty; empty otherwise.
    QString inFile(TagField field) const;
    /// Whether a plain save leaves the field out although the file has it.
    bool isUnwritable(TagField field) const;

    /// The fields that a save would write.
    TagFields touched() const;
    /// The edits; fields that were not touched have the common value.
    AudioTags edited() const;

    /// The tracks shown.
    const QSet<TrackID>& ids() const { return m_ids; }
    /// How many tracks are shown.
    int count() const { return static_cast<int>(m_ids.size()); }
    /// Those whose files can be written.
    QSet<TrackID> writableIDs() const { return m_readOnly.isEmpty() ? m_ids : m_ids - m_readOnly; }
    /// Those of them with edits that their files do not hold.
    const QSet<TrackID>& unwrittenIDs() const { return m_unwritten; }
    /// How many of the tracks have files that can be written.
    int writableCount() const { return static_cast<int>(m_ids.size() - m_readOnly.size()); }
    /// Those whose files can take a picture.
    QSet<TrackID> picturableIDs() const { return m_withoutPicture.isEmpty() ? m_ids : m_ids - m_withoutPicture; }
    /// Whether the file of at least one track can take a picture.
    bool takesPictures() const { return m_ids.size() > m_withoutPicture.size(); }
    /// Whether the tracks shown are those of unsaved edits, and no longer the selection.
    bool isPinned() const { return m_isPinned; }
    /// The track, if there is exactly one.
    const std::optional<Track>& single() const { return m_single; }
    /// One track per different cover in the order of the list, kCovers at most; a missing cover is none.
    const QList<Track>& covers() const { return m_covers; }
    /// How many were edited and their files do not have it yet.
    int unwrittenCount() const { return static_cast<int>(m_unwritten.size()); }
    double totalLength() const { return m_totalLength; } ///< seconds

    /// Whether the program writes tags into files of this kind.
    static bool isWritable(const Track& track);
    /// Whether a picture can be written as well.
    static bool takesPicture(const Track& track);

private:
    void gather(const TrackList& tracks, const std::vector<int>& rows);
    void add(const Track& track, bool isFirst);

    QSet<TrackID> m_ids;
    QSet<TrackID> m_readOnly;       ///< whose files cannot be written
    QSet<TrackID> m_unwritten;      ///< with edits that are not in their files
    QSet<TrackID> m_withoutPicture; ///< whose files can take no picture
    QHash<TagField, QString> m_edits;
    AudioTags m_values; ///< common ones
    TagFields m_mixed;
    std::optional<TagInventory> m_inventory;
    std::optional<Track> m_single;
    QList<Track> m_covers;
    double m_totalLength = 0;
    bool m_isPinned = false;
};
