#pragma once

#include "core/library/order/PlaylistBase.h"
#include "core/library/order/TrackSorter.h"

/// The playlist sorted within each of its folders. A folder is sorted again only when its rows, the field, the
/// direction or what is known beyond the tags differ from what it was sorted by. A value; no thread of its own.
class FolderSorts {
public:
    /// What the rows are sorted by.
    struct Key {
        TrackSortField field = TrackSortField::Original;
        TrackSortDirection direction = TrackSortDirection::Ascending;
        bool operator==(const Key&) const = default;
    };

    /// The rows in display order. \param base the rows in base order. \param sections the folders of \p base, which
    /// keep their places.
    const QList<Track>& update(const QList<Track>& base, const std::vector<PlaylistBase::FolderSection>& sections,
                               const Key& key, const TrackSorter::Inputs& inputs);
    /// What update() gave last, with what refresh() put there.
    const QList<Track>& rows() const { return m_rows; }

    /// Whether new values of rows may belong elsewhere: Same, they stay where they are; Owed, their folders have to
    /// be sorted again.
    enum class Placing { Same, Owed };
    /// Puts new values where the rows stand.
    /// \param baseRows which rows of \p base have new values
    /// \param placing Owed makes the next update() sort their folders again
    void refresh(const QList<Track>& base, const QList<int>& baseRows, Placing placing);
    /// Lets rows go; the others keep their order, and what is owed to them. Only where rows() are those of the base.
    /// \param baseRows ascending, as they stood. \param sections the folders as they are now.
    void remove(const QList<int>& baseRows, const std::vector<PlaylistBase::FolderSection>& sections);
    /// What is known beyond the tags has changed: the next update() sorts all folders.
    void forgetInputs() { m_areInputsKnown = false; }
    /// The same if the last sort went by ratings.
    void forgetPopularity() { m_areInputsKnown = m_areInputsKnown && m_key.field != TrackSortField::Rating; }
    /// The same if the last sort went by tempos, which ratings fall back to.
    void forgetBPM()
    {
        m_areInputsKnown =
            m_areInputsKnown && m_key.field != TrackSortField::BPM && m_key.field != TrackSortField::Rating;
    }
    /// Gives all rows up; the next update() sorts all folders.
    void clear();

    /// Folders sorted so far.
    int sortCount() const { return m_sortCount; }

private:
    using FolderSection = PlaylistBase::FolderSection;
    void resort(const QList<Track>& base, const TrackSorter::Inputs& inputs);
    void rebuild(const QList<Track>& base, const std::vector<FolderSection>& sections,
                 const TrackSorter::Inputs& inputs, const QHash<QString, int>& known);
    const FolderSection* sameSection(const QList<Track>& base, const FolderSection& section,
                                     const QHash<QString, int>& known) const;
    void sortSection(const QList<Track>& base, const FolderSection& section, const TrackSorter::Inputs& inputs);
    void place(const QList<Track>& base, const FolderSection& section);

    Key m_key;
    bool m_areInputsKnown = false;
    QList<Track> m_base; ///< with the values that the folders were sorted by
    std::vector<FolderSection> m_sections;
    std::vector<int> m_source; ///< row in base order of each row in display order
    std::vector<int> m_places; ///< the other way round
    QList<Track> m_rows;
    int m_sortCount = 0;
};
